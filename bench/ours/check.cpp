// Checking against definitions: which may occur often, which once, and which are evaluated.
// SPDX-License-Identifier: MIT
#include "definitions.h"
#include "floors/floors.h"
#include "operations.h"
#include "ours/trees.h"

namespace bench {
namespace {

void parse(cfgroup *top, cfscope *(*scopedef)(const char *)) {
  cfparser parser{};
  parser.scopedef = scopedef;
  if (!cfparse(&parser, top, "shape"))
    broken("a shape does not check");
}

template <auto check, cfscope *(*scopedef)(const char *)> Task checking(const Shape &shape) {
  return {.work = [tree = maketree(shape)] { check(tree.get(), scopedef); }};
}

/// What the last round evaluated is evaluated anew.
template <auto check> Task evaluating(const Shape &shape) {
  return {.work = [tree = maketree(shape)] {
    otherevaluators();
    check(tree.get(), evaluated);
  }};
}

const bool added[] = {
    add({"Check", "cf", checking<parse, multiple>, true}),
    add({"Check", "floor", checking<floors::check, multiple>, true}),
    add({"CheckOnce", "cf", checking<parse, single>, true}),
    add({"CheckOnce", "floor", checking<floors::check, single>, true}),
    add({"CheckEvaluate", "cf", evaluating<parse>, true}),
    add({"CheckEvaluate", "floor", evaluating<floors::check>, true}),
};

} // namespace
} // namespace bench
