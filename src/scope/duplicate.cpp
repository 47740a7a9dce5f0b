// Duplicates: whether an instance has a symbol twice.
// SPDX-License-Identifier: MIT
#include "scope/duplicate.h"

#include "catalog/lookup.h"

namespace cfcore {

// In the lookups an empty text means any text. So nameless() searches for an element with
// an empty key or name.

bool duplicates::isrepeated(cfparam *par) {
  if (!*par->key)
    return search.nameless(&par->link) != &par->link;
  return getkey(search, search.owner(), par->key) != par;
}

bool duplicates::isrepeated(cfgroup *grp) {
  if (!grp->link.group)
    return false; // the top of the walk
  if (!*grp->name)
    return search.nameless(&grp->link) != &grp->link;
  if (!*grp->cat)
    return getname(search, search.owner(), grp->name) != grp;
  return getcatname(search, search.owner(), grp->cat, grp->name) != grp;
}

} // namespace cfcore
