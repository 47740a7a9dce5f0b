// Copying, comparing, deleting a tree.
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "operations.h"
#include "ours/trees.h"

namespace bench {
namespace {

template <auto copy> Task copying(const Shape &shape) {
  auto made = std::make_shared<cfgroup *>();
  return {.work = [=, tree = maketree(shape)] { *made = copy(tree.get()); },
          .clear = [=] { cfdelgrp(*made); }};
}

bool equal(const cfgroup *one, const cfgroup *two) {
  cfdiff diff{};
  cfdiffdfl(&diff)->opt = cf_diffrem;
  return cfdiffnd(&diff, &one->link, &two->link) == 0;
}

template <auto equal> Task comparing(const Shape &shape) {
  return {.work = [one = maketree(shape), two = maketree(shape)] {
    if (!equal(one.get(), two.get()))
      broken("a tree differs from its copy");
  }};
}

template <auto remove> Task deleting(const Shape &shape) {
  auto tree = std::make_shared<cfgroup *>();
  return {.work = [=] { remove(*tree); },
          .prepare =
              [=, stream = openinput(shape)] {
                std::rewind(stream.get());
                *tree = readtree(stream.get());
              }};
}

const bool added[] = {
    add({"Copy", "cf", copying<cfdupgrp>, true}),
    add({"Copy", "floor", copying<floors::copy>, true}),
    add({"Compare", "cf", comparing<equal>, true}),
    add({"Compare", "floor", comparing<floors::equal>, true}),
    add({"Delete", "cf", deleting<cfdelgrp>, true}),
    add({"Delete", "floor", deleting<floors::remove>, true}),
};

} // namespace
} // namespace bench
