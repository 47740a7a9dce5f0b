// Printing to a stream.
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "operations.h"
#include "ours/trees.h"

namespace bench {
namespace {

void print(std::FILE *fd, cfgroup *top) {
  cfprinter prn{};
  if (!cfprint(fd, &prn, top, "sink"))
    broken("a tree does not print");
}

template <auto print> Task printing(const Shape &shape) {
  return {.work = [tree = maketree(shape), sink = opensink()] { print(sink.get(), tree.get()); }};
}

const bool added[] = {
    add({"Print", "cf", printing<print>, true}),
    add({"Print", "floor", printing<floors::print>, true}),
};

} // namespace
} // namespace bench
