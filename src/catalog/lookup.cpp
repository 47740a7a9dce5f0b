// Catalog lookup: an instance or a parameter below one group, of a catalog or of a plain tree.
// SPDX-License-Identifier: MIT
#include "node/link.h"
#include "node/text.h"

using namespace cf;

namespace {

/// Where to search on from a hit: in a level's own list, else in the same list.
cfnode *within(cfgroup *hit) { return hit->type == cf_grpcat ? hit->elem.next : &hit->link; }

} // namespace

// On a catalog the three searches go down the levels, one list each. On a plain tree they stay in
// one list and narrow where the last one begins: a full match stands behind each partial one.
cfgroup *cfcatgetgrp(cfgroup *gc, const char *cat, const char *name) {
  cfnode *it = gc->elem.next;
  if (given(cat)) {
    cfgroup *hit = ifgrp(cfseekgrp(it, cat, nullptr));
    if (!hit)
      return nullptr;
    if (!given(name))
      return hit->type == cf_grpcat ? hit : nullptr;
    it = within(hit);
  }
  cfgroup *hit = ifgrp(cfseekgrp(it, nullptr, name));
  if (!hit)
    return nullptr;
  it = within(hit);
  while ((hit = ifgrp(cfseekgrp(it, cat, name))) && hit->type != cf_grpinst)
    it = hit->elem.next; // a block, or a level of an empty name
  return hit;
}

cfparam *cfcatgetpar(cfgroup *gc, const char *key, const char *val) {
  for (;;) {
    cfnode *it = gc->elem.next;
    if (val)
      if (cfparam *hit = cfpar(cfseekpar(it, key, val)))
        return hit;
    it = cfseekpar(it, key, nullptr);
    while (val && it->type == cf_param) // its value is another
      it = cfseekpar(it->next, key, nullptr);
    if (it->type != cf_group)
      return cfpar(it);
    gc = asgrp(it); // a level or a block: what stands behind it is not looked at
  }
}
