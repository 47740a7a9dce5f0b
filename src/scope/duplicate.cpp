// Duplicates: whether a symbol stands twice in one instance.
// SPDX-License-Identifier: MIT
#include "scope/duplicate.h"

#include "node/text.h"
#include "node/walk.h"

namespace cf {
namespace {

/// The group in whose list an element counts: blocks and catalog levels are passed over.
cfgroup *enclosing(cfgroup *grp) {
  while (grp->type != cf_grpinst && grp->type != cf_grptop && grp->link.group)
    grp = grp->link.group;
  return grp;
}

bool isnameless(const cfgroup *grp) { return grp->type == cf_grpinst && !*grp->name; }

/// Visitor that stops on the first element like one whose name or key is empty. To the lookups an
/// empty text is none, so they cannot tell.
struct nameless_search {
  const cfgroup *owner;
  const cfnode *wanted;
  const cfnode *found = nullptr;

  bool islike(const cfnode *nd) const {
    if (nd->type != wanted->type)
      return false;
    if (nd->type == cf_param)
      return !*aspar(nd)->key;
    return isnameless(asgrp(nd)) && equal(asgrp(nd)->cat, asgrp(wanted)->cat);
  }
  go meet(const cfnode *nd) {
    if (!islike(nd))
      return go::on;
    found = nd;
    return go::stop;
  }
  go enter(const cfgroup *grp) {
    if (grp == owner || grp->type != cf_grpinst)
      return go::on;
    return meet(&grp->link) == go::stop ? go::stop : go::over;
  }
  go leaf(const cfnode *nd) { return meet(nd); }
  go leave(const cfgroup *) { return go::on; }
};

bool isfirstnameless(const cfgroup *owner, const cfnode *nd) {
  nameless_search search{owner, nd};
  walk(owner, search);
  return search.found == nd;
}

} // namespace

bool isrepeated(cfparam *par) {
  if (!par->link.group)
    return false;
  cfgroup *owner = enclosing(par->link.group);
  if (!*par->key)
    return !isfirstnameless(owner, &par->link);
  return cfcatgetpar(owner, par->key, nullptr) != par;
}

bool isrepeated(cfgroup *grp) {
  if (!grp->link.group)
    return false;
  cfgroup *owner = enclosing(grp->link.group);
  if (!*grp->name)
    return !isfirstnameless(owner, &grp->link);
  return cfcatgetgrp(owner, grp->cat, grp->name) != grp;
}

} // namespace cf
