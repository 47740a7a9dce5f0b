// Catalog lookup, by a search that the caller chooses: see cfcatgetgrp() and cfcatgetpar().
//
// A search has key(), group(), group_from() and group_without_levels() of the class `searches`.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/seek.h"

namespace cfcore {

// A search for a parameter goes into the first level or block of the key that it meets; what
// follows that is not searched.

template <class Search> cfparam *getkey(Search &&search, cfgroup *gc, const char *key) {
  for (;;) {
    cfnode *hit = search.key(gc, key);
    if (hit->type != cf_group)
      return ifpar(hit);
    gc = asgrp(hit);
  }
}

/// The instance that a hit is or, if that is a level or a block, holds.
template <class Search>
cfgroup *instance(Search &&search, cfnode *nd, const char *cat, const char *name) {
  cfgroup *hit = ifgrp(nd);
  while (hit && hit->type != cf_grpinst)
    hit = ifgrp(search.group(hit, cat, name));
  return hit;
}

/// The first instance of a name; of any name if that is NULL.
template <class Search> cfgroup *getname(Search &&search, cfgroup *gc, const char *name) {
  return instance(search, search.group(gc, nullptr, name), nullptr, name);
}

// On a catalog the three searches go down the levels, one list each. On a plain tree they stay in
// one list, and each begins where the last one ended: no full match precedes a match of one text.
// Without levels in the list only the full match matters.
template <class Search>
cfgroup *getcatname(Search &&search, cfgroup *gc, const char *cat, const char *name) {
  if (cfnode *hit = search.group_without_levels(gc, cat, name))
    return instance(search, hit, cat, name);
  cfgroup *first = ifgrp(search.group(gc, cat, nullptr));
  if (!first)
    return nullptr;
  cfgroup *hit =
      ifgrp(first->type == cf_grpcat ? search.group(first, nullptr, name)
                                     : search.group_from(gc, &first->link, nullptr, name));
  if (hit && hit != first && hit->type != cf_grpcat && !equal(hit->cat, cat))
    hit = ifgrp(search.group_from(gc, &hit->link, cat, name));
  return hit ? instance(search, &hit->link, cat, name) : nullptr;
}

} // namespace cfcore
