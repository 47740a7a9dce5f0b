// Catalog lookup: an instance or a parameter below one group, of a catalog or of a plain tree.
// SPDX-License-Identifier: MIT
#include "node/seek.h"

using namespace cf;

namespace {

// Each search stands apart, so that it saves the registers that it needs and no more: in one function a
// lookup in a small tree took a sixth more.

// A search for a parameter goes into the first level or block of the key that it meets; what stands
// behind that is not looked at.

cfparam *getkey(cfgroup *gc, const char *key) {
  for (;;) {
    cfnode *hit = seekkey(gc->elem.next, key);
    if (hit->type != cf_group)
      return ifpar(hit);
    gc = asgrp(hit);
  }
}

/// One that stands in the list itself comes before all that stand in levels and blocks.
[[gnu::noinline]] cfparam *getval(cfgroup *gc, const char *key, const char *val) {
  for (; gc; gc = ifgrp(seeklevel(gc->elem.next, key)))
    if (cfparam *hit = ifpar(seekval(gc->elem.next, key, val)))
      return hit;
  return nullptr;
}

/// The instance that a hit is or, if that is a level or a block, holds.
cfgroup *instance(cfnode *nd, const char *cat, const char *name) {
  cfgroup *hit = ifgrp(nd);
  while (hit && hit->type != cf_grpinst)
    hit = ifgrp(seekgrp(hit->elem.next, cat, name));
  return hit;
}

[[gnu::noinline]] cfgroup *getfirst(cfgroup *gc) {
  return instance(seekgrp(gc->elem.next, nullptr, nullptr), nullptr, nullptr);
}

[[gnu::noinline]] cfgroup *getname(cfgroup *gc, const char *name) {
  return instance(seekgrp(gc->elem.next, nullptr, name), nullptr, name);
}

/// Of a category without a name only its level is the answer.
[[gnu::noinline]] cfgroup *getcat(cfgroup *gc, const char *cat) {
  cfgroup *hit = ifgrp(seekgrp(gc->elem.next, cat, nullptr));
  return hit && hit->type == cf_grpcat ? hit : nullptr;
}

// On a catalog the three searches go down the levels, one list each. On a plain tree they stay in
// one list and narrow where the last one begins: a full match stands behind each partial one.
[[gnu::noinline]] cfgroup *getcatname(cfgroup *gc, const char *cat, const char *name) {
  cfgroup *first = ifgrp(seekgrp(gc->elem.next, cat, nullptr));
  if (!first)
    return nullptr;
  cfnode *it = first->type == cf_grpcat ? first->elem.next : &first->link;
  cfgroup *hit = ifgrp(seekgrp(it, nullptr, name));
  if (hit && hit != first && hit->type != cf_grpcat && !equal(hit->cat, cat))
    hit = ifgrp(seekgrp(&hit->link, cat, name));
  return hit ? instance(&hit->link, cat, name) : nullptr;
}

} // namespace

cfgroup *cfcatgetgrp(cfgroup *gc, const char *cat, const char *name) {
  if (given(cat))
    return given(name) ? getcatname(gc, cat, name) : getcat(gc, cat);
  return given(name) ? getname(gc, name) : getfirst(gc);
}

cfparam *cfcatgetpar(cfgroup *gc, const char *key, const char *val) {
  key = criterion(key);
  return val ? getval(gc, key, val) : getkey(gc, key);
}
