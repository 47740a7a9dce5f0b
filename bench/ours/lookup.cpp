// Looking up: from the root to the typed value of a parameter.
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "operations.h"
#include "ours/trees.h"

namespace bench {
namespace {

/// Goes all routes of a shape from `root` with the two searches given.
template <auto getgrp, auto getpar, class Root> void follow(const Shape &shape, const Root &root) {
  for (const Route &route : shape.routes) {
    decltype(getgrp(root.get(), "", "")) grp = root.get();
    for (const Element *step : route.groups)
      grp = getgrp(grp, step->cat.c_str(), step->name.c_str());
    if (cfint(getpar(grp, route.param->name.c_str())) != route.value)
      broken("another value is found");
  }
}

cfparam *getpar(cfgroup *grp, const char *key) { return cfcatgetpar(grp, key, nullptr); }

/// A tree in which the integers are evaluated.
Tree evaluatedtree(const Shape &shape) {
  Tree tree = maketree(shape);
  for (const Route &route : shape.routes) {
    cfgroup *grp = tree.get();
    for (const Element *step : route.groups)
      grp = cfcatgetgrp(grp, step->cat.c_str(), step->name.c_str());
    cfevalpar(getpar(grp, route.param->name.c_str()), cfevint);
  }
  return tree;
}

template <auto getgrp, auto getpar> Task intree(const Shape &shape) {
  return {.work = [&shape, tree = evaluatedtree(shape)] { follow<getgrp, getpar>(shape, tree); },
          .units = shape.routes.size()};
}

template <auto getgrp, auto getpar> Task incatalog(const Shape &shape) {
  Tree tree = evaluatedtree(shape);
  return {
      .work = [&shape, tree,
               catalog = own(cfcatalog(tree.get()))] { follow<getgrp, getpar>(shape, catalog); },
      .units = shape.routes.size()};
}

const bool added[] = {
    add({"LookupCatalog", "cf", incatalog<cfcatgetgrp, getpar>}),
    add({"LookupCatalog", "floor", incatalog<floors::findgrp, floors::findpar>}),
    add({"LookupTree", "cf", intree<cfcatgetgrp, getpar>}),
    add({"LookupTree", "floor", intree<floors::treegrp, floors::treepar>}),
};

} // namespace
} // namespace bench
