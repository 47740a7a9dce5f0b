// Catalog lookup, as for cfcatgetgrp() and cfcatgetpar(), by a search that the caller chooses.
//
// The parameter Search of the templates is the class `searches` or another one with its functions
// key(), group(), group_from() and group_without_levels().
// SPDX-License-Identifier: MIT
#pragma once

#include "node/seek.h"

namespace cfcore {

/// The first parameter of a key; of any key if that is NULL. The search goes into the first level
/// or block of the key that it meets, and does not look at what follows that.
template <class Search> cfparam *getkey(Search &&search, cfgroup *gc, const char *key) {
  for (;;) {
    cfnode *hit = search.key(gc, key);
    if (hit->type != cf_group)
      return ifpar(hit);
    gc = asgrp(hit);
  }
}

/// The instance that was sought: the hit itself or, if that is a level or a block, one in it.
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

/// The first instance of a category and a name, by three searches: for the category, for the name
/// and for both. In a catalog these go down from list to list: to the category level, to the name
/// level and to the instance. In a plain tree all three go along one list, and each begins at the
/// hit of the last one. They miss nothing, as a match of both texts is also a match of each.
///
/// If no level precedes the first match of both texts, one search for both has the same result.
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
