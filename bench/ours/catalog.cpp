// Building a catalog, and editing through it.
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "operations.h"
#include "ours/trees.h"

namespace bench {
namespace {

template <auto build> Task building(const Shape &shape) {
  auto catalog = std::make_shared<cfgroup *>();
  return {.work = [=, tree = maketree(shape)] { *catalog = build(tree.get()); },
          .clear = [=] { cfdelgrp(*catalog); }};
}

/// A tree with its catalog.
struct Pair {
  Tree tree, catalog;
  explicit Pair(const Shape &shape) : tree(maketree(shape)), catalog(own(cfcatalog(tree.get()))) {}
};

cfgroup *owner(cfgroup *catalog, const Route &route) {
  for (const Element *grp : route.groups)
    catalog = cfcatgetgrp(catalog, grp->cat.c_str(), grp->name.c_str());
  return catalog ? catalog : (broken("a group is not found"), nullptr);
}

/// Replaces parameters.
Task setting(const Shape &shape) {
  return {.work =
              [&shape, pair = Pair(shape)] {
                for (const Route &route : shape.routes)
                  cfcatsetpar(owner(pair.catalog.get(), route),
                              cfnewpar(route.param->name.c_str(), route.param->text.c_str(), -1));
              },
          .units = shape.routes.size()};
}

/// Adds a group with one parameter and deletes it.
Task addinganddeleting(const Shape &shape) {
  return {.work =
              [&shape, pair = Pair(shape)] {
                for (const Route &route : shape.routes) {
                  cfgroup *grp = cfnewgrp("extra", "group", cf_grpinst, -1);
                  cfaddpar(grp, cfnewpar("key", "value", -1));
                  cfcatdelgrp(cfcataddgrp(owner(pair.catalog.get(), route), grp));
                }
              },
          .units = shape.routes.size()};
}

const bool added[] = {
    add({"Catalog", "cf", building<cfcatalog>, true}),
    add({"Catalog", "floor", building<floors::catalog>, true}),
    add({"EditSet", "cf", setting}),
    add({"EditAddDelete", "cf", addinganddeleting}),
};

} // namespace
} // namespace bench
