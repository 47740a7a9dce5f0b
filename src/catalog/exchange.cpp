// Catalog exchange: a new element in the place of an old one, in the tree and in each catalog.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "catalog/owner.h"
#include "node/make.h"
#include "node/text.h"
#include "node/unlinked.h"

using namespace cfcore;

namespace {

/// Copies to a reference what it shares with its targets, of which `elem` is one.
void update(cfnode *ref, const cfnode *elem) {
  switch (ref->type) {
  case cf_group: return refer(asgrp(ref), asgrp(elem));
  case cf_remark: return refer(asrem(ref), asrem(elem));
  case cf_param: return refer(aspar(ref), aspar(elem));
  case cf_anchor: return;
  }
}

/// Files what is below the target of each reference group from `lowest` up to `ref`.
void refile(cfnode *lowest, cfnode *ref) { // NOLINT(misc-no-recursion): a step for each link.ref
  if (ref != lowest)
    refile(lowest, ref->ref);
  _cfcatelem(asgrp(ref), asgrp(ref->ref));
}

/// Moves all elements of a group to `removed`.
void empty(cfgroup *grp, unlinked &removed) {
  while (!isanchor(grp->elem.next))
    removed.add(grp->elem.next);
}

} // namespace

cfnode *cfcatxcgnd(cfnode *cnd, cfnode *nd) {
  if (cnd->ref && cnd->type != nd->type)
    return nullptr;
  cfnode *lowest = nullptr; // the last reference before `old`; NULL if `cnd` is `old`
  cfnode *old = cnd;
  for (; old->ref && old != nd; old = old->ref) // `nd` may itself be a reference of the chain
    lowest = old;
  const bool isgroup = cnd->type == cf_group;

  // First all links are changed, then the old elements are released, and then the new references
  // are made. So no link leads to a released element when the manager throws or jumps out. The old
  // target is removed last and therefore released first.
  unlinked removed;
  if (lowest)
    lowest->ref = nd;
  for (cfnode *ref = cnd; lowest && ref != nd; ref = ref->ref) {
    update(ref, nd);
    if (isgroup)
      empty(asgrp(ref), removed);
  }
  if (old != nd)
    removed.add(cfxcgnd(old, nd));
  removed.delete_all();
  if (lowest && isgroup)
    refile(lowest, cnd);
  return lowest ? cnd : nd;
}

cfgroup *cfcatsetgrp(cfgroup *gc, cfgroup *elem) {
  gc = owner(gc, cf_grpcat);
  cfgroup *cgrp = given(elem->name) ? cfcatgetgrp(gc, elem->cat, elem->name) : nullptr;
  return cgrp ? cfgrp(cfcatxcgnd(&cgrp->link, &elem->link)) : cfcataddgrp(gc, elem);
}

cfparam *cfcatsetpar(cfgroup *gc, cfparam *elem) {
  gc = owner(gc, cf_grpval);
  cfparam *cpar = given(elem->key) ? cfcatgetpar(gc, elem->key, nullptr) : nullptr;
  return cpar ? cfpar(cfcatxcgnd(&cpar->link, &elem->link)) : cfcataddpar(gc, elem);
}
