// Catalog insertion: a new element into the tree and into each catalog on the way.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "catalog/owner.h"
#include "node/ring.h"
#include "node/walk.h"

#include <cassert>

using namespace cf;

namespace {

/// The references for what one call adds. They wait, each bearing its level in `group`, and are linked
/// when all of them are made: an exception of the manager leaves tree and catalogs as they were, but
/// for empty levels.
class insertion {
public:
  /// `climbed` is the kind of level that leads to its owner. The way down to the tree goes before the
  /// element is taken out: it may climb through the element.
  insertion(cfgroup_t climbed, cfgroup *gc, cfnode *elem) : level(climbed), place(gc), added(elem) {
    while (standsfor(place))
      place = below(place);
    takeout(added);
  }

  /// Files an instance, with all below it, in the catalogs from the lowest up to that of `gc`.
  cfgroup *file(cfgroup *gc, cfgroup *inst) { // NOLINT(misc-no-recursion): a step for each link.ref
    if (cfgroup *lower = below(gc); standsfor(lower))
      inst = file(lower, inst);
    cfgroup *ref = _cfcatgrp(gc, inst);
    wait(&ref->link);
    _cfcatelem(ref, inst);
    return ref;
  }

  /// Files a parameter likewise.
  cfparam *file(cfgroup *gc, cfparam *par) { // NOLINT(misc-no-recursion): a step for each link.ref
    if (cfgroup *lower = below(gc); standsfor(lower))
      par = file(lower, par);
    cfparam *ref = _cfcatpar(gc, par);
    wait(&ref->link);
    return ref;
  }

  /// Links the references, and the element into the tree.
  void finish() {
    putlast(place, added);
    while (!isanchor(waiting.first())) {
      assert(waiting.first()->group);
      movelast(waiting.first()->group, waiting.first());
    }
  }

private:
  cfgroup_t level;
  cfgroup *place; // in the tree
  cfnode *added;
  ring waiting;

  /// The owner in the catalog under that of `gc`, or the group of the tree.
  cfgroup *below(cfgroup *gc) const { return owner(asgrp(gc->link.ref), level); }

  void wait(cfnode *ref) {
    cfgroup *within = ref->group;
    waiting.add(ref);
    ref->group = within;
  }
};

/// Visitor that files the contents of a group that is no instance itself, each in every catalog.
struct content_filer {
  insertion &refs;
  cfgroup *gc;

  go enter(cfgroup *grp) {
    if (grp->type != cf_grpinst)
      return go::on;
    refs.file(gc, grp);
    return go::over;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param)
      refs.file(gc, aspar(nd));
    return go::on;
  }
  go leave(cfgroup *) { return go::on; }
};

cfgroup *file(insertion &refs, cfgroup *gc, cfgroup *elem) {
  if (elem->type == cf_grpinst)
    return refs.file(gc, elem);
  content_filer visitor{refs, gc};
  walk(elem, visitor);
  return gc;
}

} // namespace

cfgroup *cfcataddgrp(cfgroup *gc, cfgroup *elem) {
  gc = owner(gc, cf_grpcat);
  insertion refs(cf_grpcat, gc, &elem->link);
  cfgroup *result = standsfor(gc) ? file(refs, gc, elem) : elem;
  refs.finish();
  return result;
}

cfparam *cfcataddpar(cfgroup *gc, cfparam *elem) {
  gc = owner(gc, cf_grpval);
  insertion refs(cf_grpval, gc, &elem->link);
  cfparam *result = standsfor(gc) ? refs.file(gc, elem) : elem;
  refs.finish();
  return result;
}
