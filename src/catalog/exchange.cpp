// Catalog exchange: a new element in the place of an old one, in the tree and in each catalog.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "catalog/owner.h"
#include "node/ring.h"
#include "node/text.h"

using namespace cf;

namespace {

/// Makes a reference show the element at the end of its chain.
void show(cfnode *ref, cfnode *nd) {
  switch (ref->type) {
  case cf_group: {
    cfgroup *to = asgrp(ref);
    const cfgroup *from = asgrp(nd);
    to->row = from->row;
    to->cat = from->cat;
    to->name = from->name;
    to->type = from->type;
    break;
  }
  case cf_remark: {
    cfremark *to = asrem(ref);
    to->row = asrem(nd)->row;
    to->txt = asrem(nd)->txt;
    break;
  }
  case cf_param: {
    cfparam *to = aspar(ref);
    const cfparam *from = aspar(nd);
    to->row = from->row;
    to->key = from->key;
    to->val = from->val;
    to->eval = from->eval;
    to->vval = from->vval;
    break;
  }
  case cf_anchor: break;
  }
}

/// Files what is below the target of each reference group from `lowest` up to `ref`.
void refile(cfnode *lowest, cfnode *ref) { // NOLINT(misc-no-recursion): a step for each link.ref
  if (ref != lowest)
    refile(lowest, ref->ref);
  _cfcatelem(asgrp(ref), asgrp(ref->ref));
}

/// Moves all that a group holds to a ring.
void empty(cfgroup *grp, ring &dying) {
  while (!isanchor(grp->elem.next))
    dying.add(grp->elem.next);
}

} // namespace

cfnode *cfcatxcgnd(cfnode *cnd, cfnode *nd) {
  if (cnd->ref && cnd->type != nd->type)
    return nullptr;
  cfnode *lowest = nullptr; // the reference next to the tree
  cfnode *old = cnd;
  for (; old->ref; old = old->ref)
    lowest = old;
  const bool isgroup = cnd->type == cf_group;

  // All links are turned before anything is released, and all is released before anything is made:
  // whenever the manager leaves, nothing that is linked leads to what is gone. On the ring the old
  // element comes last, and so goes first.
  ring dying;
  if (lowest)
    lowest->ref = nd;
  for (cfnode *ref = cnd; lowest && ref != nd; ref = ref->ref) {
    show(ref, nd);
    if (isgroup)
      empty(asgrp(ref), dying);
  }
  if (old != nd)
    dying.add(cfxcgnd(old, nd));
  dying.clear();
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
