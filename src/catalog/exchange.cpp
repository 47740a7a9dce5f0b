// Catalog exchange: a new element in the place of an old one, in the tree and in each catalog on
// the way. SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "catalog/owner.h"
#include "node/remove.h"
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

/// Calls `what` for each reference group from `lowest` up to `ref`.
template <class What> void upward(cfnode *lowest, cfnode *ref, What what) {
  if (ref != lowest)
    upward(lowest, ref->ref, what);
  what(asgrp(ref));
}

} // namespace

cfnode *cfcatxcgnd(cfnode *cnd, cfnode *nd) {
  if (cnd->ref && cnd->type != nd->type)
    return nullptr;
  cfnode *lowest = nullptr; // the reference next to the tree
  cfnode *old = cnd;
  for (; old->ref; old = old->ref)
    lowest = old;

  // The references turn before the old element goes, and what was filed goes before anything is
  // made: no exception on the way leaves a reference to what is gone.
  removal gone;
  if (lowest)
    lowest->ref = nd;
  for (cfnode *ref = cnd; lowest && ref != nd; ref = ref->ref)
    show(ref, nd);
  if (old != nd)
    gone.of(cfxcgnd(old, nd));
  const bool files = lowest && cnd->type == cf_group;
  if (files)
    upward(lowest, cnd, [&](cfgroup *ref) { gone.below(ref); });
  gone.finish();
  if (files)
    upward(lowest, cnd, [](cfgroup *ref) { _cfcatelem(ref, asgrp(ref->link.ref)); });
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
