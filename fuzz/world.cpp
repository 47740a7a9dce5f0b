// world: the trees and catalogs that a program of calls works on, and which of them are true.
// SPDX-License-Identifier: MIT
#include "world.h"

#include "aim.h"
#include "invariants.h"

#include <algorithm>

namespace fuzz {
namespace {

const cfnode *top(const cfnode *nd) {
  while (nd->group)
    nd = &nd->group->link;
  return nd;
}

template <class Visit> void each(cfnode *nd, Visit visit) {
  visit(nd);
  if (cfgroup *grp = group(nd))
    for (cfnode *it = grp->elem.next; it != &grp->elem; it = it->next)
      each(it, visit);
}

bool isblock(const cfgroup *grp) { return grp->type == cf_grpgrp || grp->type == cf_grppar; }

/// Instances and parameters in a group, those in instances not counted.
size_t contents(const cfgroup *grp) {
  size_t count = 0;
  for (cfnode *it = grp->elem.next; it != &grp->elem; it = it->next)
    if (it->type == cf_param || (group(it) && group(it)->type == cf_grpinst))
      ++count;
    else if (group(it))
      count += contents(group(it));
  return count;
}

/// True if a block holds a group that is neither bound nor a run, and may be a catalog's source.
bool nested(const cfgroup *grp) {
  for (cfnode *it = grp->elem.next; it != &grp->elem; it = it->next)
    if (const cfgroup *sub = group(it); sub && sub->type != cf_grpinst && sub->type != cf_grprem)
      return true;
  return false;
}

} // namespace

std::vector<cfnode *> world::nodes(reach where) const {
  std::vector<cfnode *> found;
  const auto add = [&](cfnode *nd) { found.push_back(nd); };
  if (where == reach::all)
    for (const stacked &catalog : catalogs)
      each(catalog.root.nd, add);
  for (const handle &root : roots)
    if (where != reach::free || !catalogued(root.nd))
      each(root.nd, add);
  return found;
}

cfnode *world::pick_of(const std::vector<cfnode *> &nodes) {
  cfnode *picked = nodes.empty() ? nullptr : nodes[in.choose(nodes.size())];
  involve(picked);
  return picked;
}

cfgroup *world::pick_group(reach where) {
  return group(pick(where, [](const cfnode *nd) { return nd->type == cf_group; }));
}

cfnode *world::pick_elem(cfnode_t type) {
  return pick(in.choose(8) ? reach::free : reach::trees,
              [=](const cfnode *nd) { return nd->type == type; });
}

void world::involve(cfnode *nd) {
  if (nd)
    involved.emplace_back(nd);
}

void world::stack(cfgroup *root) {
  catalogs.push_back({handle(&root->link), catalogs.empty() || catalogs.back().filed});
}

size_t world::storey(const cfnode *nd) const {
  size_t storey = catalogs.size();
  while (storey > 0 && catalogs[storey - 1].root.nd != top(nd))
    --storey;
  return storey;
}

bool world::catalogued(const cfnode *nd) const {
  return !catalogs.empty() && top(nd) == top(catalogs[0].root.nd->ref);
}

void world::edit(const cfnode *place) {
  if (const size_t in_catalog = storey(place))
    spoilt = std::min(spoilt, in_catalog);
  else if (catalogued(place))
    spoilt = 1;
}

void world::edit_through(size_t storey) { spoilt = std::min(spoilt, storey + 1); }

void world::untrue(size_t storey) {
  for (size_t i = 0; i < storey; ++i)
    catalogs[i].filed = false;
}

bool world::irregular() const {
  bool found = false;
  for (const stacked &catalog : catalogs)
    each(catalog.root.nd, [&](cfnode *nd) { found |= group(nd) && isblock(group(nd)); });
  for (const handle &root : roots)
    each(root.nd, [&](cfnode *nd) {
      found |= group(nd) && isblock(group(nd)) && (contents(group(nd)) > 1 || nested(group(nd)));
    });
  return found;
}

void world::settle() {
  while (!catalogs.empty() && (catalogs.size() >= spoilt || !catalogs.back().root.alive())) {
    if (catalogs.back().root.alive())
      cfdelgrp(asgroup(catalogs.back().root));
    catalogs.pop_back();
  }
  spoilt = SIZE_MAX;
  roots.insert(roots.end(), involved.begin(), involved.end());
  involved.clear();
  std::vector<handle> free;
  for (const handle &root : roots)
    if (root.alive() && !root.nd->group && storey(root.nd) == 0 &&
        std::none_of(free.begin(), free.end(), [&](const handle &it) { return it.nd == root.nd; }))
      free.push_back(root);
  roots.swap(free);
  check();
  if (roots.empty())
    roots.emplace_back(&cfnewgrp(nullptr, nullptr, cf_grptop, -1)->link);
}

void world::check() const {
  size_t blocks = 0;
  for (const handle &root : roots)
    blocks += check_tree(root.nd);
  for (const stacked &catalog : catalogs) {
    blocks += check_tree(catalog.root.nd);
    check_catalog(asgroup(catalog.root), catalog.filed);
  }
  need(blocks == live(), "each live block is reached from somewhere");
}

void world::end() {
  for (const handle &root : roots)
    cfdelnd(root.nd);
  for (const stacked &catalog : catalogs)
    cfdelgrp(asgroup(catalog.root));
  need(live() == 0, "nothing is left");
}

} // namespace fuzz
