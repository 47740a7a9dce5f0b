// Reading from a stream that is open: the library compared with its floors.
// SPDX-License-Identifier: MIT
#include "arena.h"
#include "floors/floors.h"
#include "operations.h"
#include "ours/trees.h"

namespace bench {
namespace {

template <auto read> Task reading(const Shape &shape) {
  Stream stream = openinput(shape);
  auto tree = std::make_shared<cfgroup *>();
  return {.work = [=] { *tree = read(stream.get()); },
          .prepare = [=] { std::rewind(stream.get()); },
          .clear = [=] { cfdelgrp(*tree); }};
}

/// Reads with the arena as the library's manager.
cfgroup *readarena(std::FILE *fd) {
  static constexpr struct cfmmgr manager = {arena::take, arena::giveback};
  const struct cfmmgr before = cfmmgr(&manager);
  cfgroup *top = readtree(fd);
  cfmmgr(&before);
  return top;
}

template <auto read> Task readingarena(const Shape &shape) {
  Task task = reading<read>(shape);
  task.clear = arena::reset;
  return task;
}

Task takinglines(const Shape &shape) {
  Stream stream = openinput(shape);
  return {.work = [=] { floors::readlines(stream.get()); },
          .prepare = [=] { std::rewind(stream.get()); }};
}

/// Reading as a user does it, for comparison with other libraries: each round opens a stream.
template <auto read, auto reset> Task whole(const Shape &shape, Stream (*open)(const Shape &)) {
  auto tree = std::make_shared<cfgroup *>();
  return {.work = [=, &shape] { *tree = read(open(shape).get()); }, .clear = [=] { reset(*tree); }};
}

Stream openmemory(const Shape &shape) {
  const std::string &text = input(shape, Syntax::cf).text;
  return {fmemopen(const_cast<char *>(text.data()), text.size(), "r"), Close()};
}

void resetarena(cfgroup *) { arena::reset(); }

template <auto read, auto reset> Task fromfile(const Shape &shape) {
  return whole<read, reset>(shape, openinput);
}
template <auto read, auto reset> Task frommemory(const Shape &shape) {
  return whole<read, reset>(shape, openmemory);
}

const bool added[] = {
    add({"Read", "cf", reading<readtree>, true}),
    add({"Read", "floor", reading<floors::read>, true}),
    add({"ReadArena", "cf", readingarena<readarena>, true}),
    add({"ReadArena", "floor", readingarena<floors::readarena>, true}),
    add({"ReadFile", "cf", fromfile<readtree, cfdelgrp>}),
    add({"ReadFile", "cf-arena", fromfile<readarena, resetarena>}),
    add({"ReadMemory", "cf", frommemory<readtree, cfdelgrp>, true}),
    add({"ReadMemory", "cf-arena", frommemory<readarena, resetarena>, true}),
    add({"Lines", "floor", takinglines, true}),
};

} // namespace
} // namespace bench
