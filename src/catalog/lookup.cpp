// Catalog lookup: an instance or a parameter below one group, of a catalog or of a plain tree.
// SPDX-License-Identifier: MIT
#include "catalog/lookup.h"

using namespace cfcore;

namespace {

/// The search of a single lookup.
struct plain_search {
  static cfnode *key(cfgroup *list, const char *key) { return seekkey(list->elem.next, key); }
  static cfnode *group(cfgroup *list, const char *cat, const char *name) {
    return seekgrp(list->elem.next, cat, name);
  }
  static cfnode *group_from(cfgroup *, cfnode *it, const char *cat, const char *name) {
    return seekgrp(it, cat, name);
  }
  static cfnode *group_without_levels(cfgroup *, const char *, const char *) { return nullptr; }
};

/// The level of a category; an instance of it is no answer.
cfgroup *getcat(cfgroup *gc, const char *cat) {
  cfgroup *hit = ifgrp(seekgrp(gc->elem.next, cat, nullptr));
  return hit && hit->type == cf_grpcat ? hit : nullptr;
}

/// A parameter in the list itself comes before those in levels and blocks.
cfparam *getval(cfgroup *gc, const char *key, const char *val) {
  for (; gc; gc = ifgrp(seeklevel(gc->elem.next, key)))
    if (cfparam *hit = ifpar(seekval(gc->elem.next, key, val)))
      return hit;
  return nullptr;
}

} // namespace

cfgroup *cfcatgetgrp(cfgroup *gc, const char *cat, const char *name) {
  const plain_search search;
  if (given(cat))
    return given(name) ? getcatname(search, gc, cat, name) : getcat(gc, cat);
  return getname(search, gc, criterion(name));
}

cfparam *cfcatgetpar(cfgroup *gc, const char *key, const char *val) {
  key = criterion(key);
  return val ? getval(gc, key, val) : getkey(plain_search(), gc, key);
}
