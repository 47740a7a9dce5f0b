// aim: where a call through a catalog ends up, told before it is made.
// SPDX-License-Identifier: MIT
#include "aim.h"

#include "fuzz.h"

namespace fuzz {

cfgroup *group(cfnode *nd) { return nd ? cfgrp(nd) : nullptr; }
cfparam *param(cfnode *nd) { return nd ? cfpar(nd) : nullptr; }

bool above(const cfnode *nd, const cfnode *place) {
  while (place != nd && place->group)
    place = &place->group->link;
  return place == nd;
}

cfnode *target(cfnode *nd) {
  while (nd->ref)
    nd = nd->ref;
  return nd;
}

cfgroup *owner(cfgroup *gc, const cfnode *elem) {
  const cfgroup_t level = elem->type == cf_param ? cf_grpval : cf_grpcat;
  while (gc->type == level && gc->link.group)
    gc = gc->link.group;
  return gc;
}

cfgroup *place(cfgroup *gc, const cfnode *elem) {
  gc = owner(gc, elem);
  while (gc->link.ref)
    gc = owner(group(gc->link.ref), elem);
  return gc;
}

cfnode *hit(cfgroup *gc, cfnode *elem) {
  gc = owner(gc, elem);
  if (const cfparam *par = param(elem)) {
    cfparam *found = *par->key ? cfcatgetpar(gc, par->key, nullptr) : nullptr;
    return found ? &found->link : nullptr;
  }
  const cfgroup *grp = group(elem);
  cfgroup *found = *grp->name ? cfcatgetgrp(gc, grp->cat, grp->name) : nullptr;
  return found ? &found->link : nullptr;
}

bool alike(cfnode *one, cfnode *other) {
  if (const cfparam *par = param(one))
    return same(par->key, param(other)->key);
  const cfgroup *grp = group(one);
  const cfgroup *against = group(other);
  return grp->type == against->type && same(grp->cat, against->cat) &&
         same(grp->name, against->name);
}

cfnode *binder(const cfnode *nd) {
  cfgroup *in = nd->group;
  if (!in)
    return nullptr;
  const bool inst =
      nd->type == cf_group && reinterpret_cast<const cfgroup *>(nd)->type == cf_grpinst;
  const bool bound = (in->type == cf_grppar && nd->type == cf_param) ||
                     (in->type == cf_grprem && nd->type == cf_remark) ||
                     (in->type == cf_grpgrp && inst);
  return bound ? &in->link : nullptr;
}

bool exchangeable(const cfnode *nd, cfnode *cnd) {
  return !above(nd, target(cnd)) || (cnd->ref && nd == target(cnd));
}

} // namespace fuzz
