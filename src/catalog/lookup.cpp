// Catalog lookup: an instance or a parameter below one group, of a catalog or of a plain tree.
// SPDX-License-Identifier: MIT
#include "node/seek.h"

using namespace cf;

namespace {

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
cfparam *getval(cfgroup *gc, const char *key, const char *val) {
  for (; gc; gc = ifgrp(seeklevel(gc->elem.next, key)))
    if (cfparam *hit = ifpar(seekval(gc->elem.next, key, val)))
      return hit;
  return nullptr;
}

} // namespace

// On a catalog the three searches go down the levels, one list each. On a plain tree they stay in
// one list and narrow where the last one begins: a full match stands behind each partial one.
cfgroup *cfcatgetgrp(cfgroup *gc, const char *cat, const char *name) {
  cat = criterion(cat);
  name = criterion(name);
  cfnode *it = gc->elem.next;
  if (cat) {
    cfgroup *hit = ifgrp(seekgrp(it, cat, nullptr));
    if (!hit)
      return nullptr;
    if (!name)
      return hit->type == cf_grpcat ? hit : nullptr;
    it = hit->type == cf_grpcat ? hit->elem.next : &hit->link;
  }
  cfgroup *hit = ifgrp(seekgrp(it, nullptr, name));
  if (hit && hit->type != cf_grpcat && !meets(hit->cat, cat))
    hit = ifgrp(seekgrp(&hit->link, cat, name));
  while (hit && hit->type != cf_grpinst) // a level or a block
    hit = ifgrp(seekgrp(hit->elem.next, cat, name));
  return hit;
}

cfparam *cfcatgetpar(cfgroup *gc, const char *key, const char *val) {
  key = criterion(key);
  return val ? getval(gc, key, val) : getkey(gc, key);
}
