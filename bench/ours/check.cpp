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

/// Reads, checks and catalogues: then the library is as ready for look-ups as peers are that make
/// maps of their groups while they read.
Task loading(const Shape &shape) {
  struct Loaded {
    Tree tree, catalog;
  };
  auto loaded = std::make_shared<Loaded>();
  return {.work =
              [=, &in = input(shape, Syntax::cf)] {
                const Stream stream(
                    fmemopen(const_cast<char *>(in.text.data()), in.text.size(), "r"), Close());
                loaded->tree = own(readtree(stream.get()));
                parse(loaded->tree.get(), single);
                loaded->catalog = own(cfcatalog(loaded->tree.get()));
              },
          .clear =
              [=] {
                loaded->catalog.reset();
                loaded->tree.reset();
              }};
}

const bool added[] = {
    add({"Load", "cf", loading}),
    add({"Check", "cf", checking<parse, multiple>, true}),
    add({"Check", "floor", checking<floors::check, multiple>, true}),
    add({"CheckOnce", "cf", checking<parse, single>, true}),
    add({"CheckOnce", "floor", checking<floors::check, single>, true}),
    add({"CheckEvaluate", "cf", evaluating<parse>, true}),
    add({"CheckEvaluate", "floor", evaluating<floors::check>, true}),
};

} // namespace
} // namespace bench
