// Catalog insertion: a new element into the tree and into each catalog on the way.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "catalog/owner.h"
#include "node/remove.h"
#include "node/walk.h"

using namespace cf;

namespace {

/// New references that wait to be linked until all of them are made: an exception of the manager
/// then leaves tree and catalogs as they were, but for empty levels. A reference that waits already
/// bears its level in `group`.
class staging {
public:
  staging() { init(&ring, cf_anchor, nullptr, nullptr); }
  staging(const staging &) = delete;
  staging &operator=(const staging &) = delete;
  ~staging() {
    while (!isanchor(ring.prev))
      removal().of(ring.prev);
  }

  void add(cfgroup *level, cfnode *nd) {
    putbefore(&ring, nd);
    nd->group = level;
  }
  void commit() {
    while (!isanchor(ring.next))
      movelast(ring.next->group, ring.next);
  }

private:
  cfnode ring;
};

/// The owner in the catalog under that of `gc`, or NULL if the tree comes next.
cfgroup *lowerowner(const cfgroup *gc, cfgroup_t level) {
  cfgroup *lower = owner(standsfor(gc), level);
  return standsfor(lower) ? lower : nullptr;
}

/// The group of the tree at the end of the owner's references.
cfgroup *treegroup(cfgroup *gc, cfgroup_t level) {
  while (cfgroup *lower = standsfor(gc))
    gc = owner(lower, level);
  return gc;
}

/// Files an instance, with all below it, in the catalogs from the lowest up to that of the owner
/// `gc`.
cfgroup *fileinst(staging &refs, cfgroup *gc, cfgroup *inst, cfgroup_t level) {
  if (cfgroup *lower = lowerowner(gc, level))
    inst = fileinst(refs, lower, inst, level);
  cfgroup *name = namelevel(gc, inst);
  cfgroup *ref = cfnewrefgrp(inst);
  refs.add(name, &ref->link);
  _cfcatelem(ref, inst);
  return ref;
}

/// Files a parameter likewise.
cfparam *filepar(staging &refs, cfgroup *gc, cfparam *par, cfgroup_t level) {
  if (cfgroup *lower = lowerowner(gc, level))
    par = filepar(refs, lower, par, level);
  cfgroup *value = valuelevel(gc, par);
  cfparam *ref = cfnewrefpar(par);
  refs.add(value, &ref->link);
  return ref;
}

/// Visitor that files the contents of a group that is no instance itself, each in every catalog.
struct content_filer {
  staging &refs;
  cfgroup *gc;

  go enter(cfgroup *grp) {
    if (grp->type != cf_grpinst)
      return go::on;
    fileinst(refs, gc, grp, cf_grpcat);
    return go::over;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param)
      filepar(refs, gc, aspar(nd), cf_grpcat);
    return go::on;
  }
  go leave(cfgroup *) { return go::on; }
};

} // namespace

cfgroup *cfcataddgrp(cfgroup *gc, cfgroup *elem) {
  gc = owner(gc, cf_grpcat);
  cfgroup *result = elem;
  staging refs;
  if (standsfor(gc)) {
    if (elem->type == cf_grpinst) {
      result = fileinst(refs, gc, elem, cf_grpcat);
    } else {
      content_filer visitor{refs, gc};
      walk(elem, visitor);
      result = gc;
    }
  }
  movelast(treegroup(gc, cf_grpcat), &elem->link);
  refs.commit();
  return result;
}

cfparam *cfcataddpar(cfgroup *gc, cfparam *elem) {
  gc = owner(gc, cf_grpval);
  staging refs;
  cfparam *result = standsfor(gc) ? filepar(refs, gc, elem, cf_grpval) : elem;
  movelast(treegroup(gc, cf_grpval), &elem->link);
  refs.commit();
  return result;
}
