// Catalog insertion: a new element into the tree and into each catalog on the way.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "catalog/owner.h"
#include "node/ring.h"
#include "node/walk.h"

#include <cassert>

using namespace cf;

namespace {

/// An owner on the way down to the tree, and the one in the catalog above.
struct step {
  cfgroup *gc;
  const step *above; // NULL: the owner that was given
};

/// The references for what one call adds. They wait, each bearing its level in `group`, and are linked
/// when all of them are made: an exception of the manager leaves tree and catalogs as they were, but
/// for empty levels.
class insertion {
public:
  /// Files an instance, with all below it, in the catalogs from the `lowest` up.
  cfgroup *file(const step *lowest, cfgroup *inst) {
    for (const step *it = lowest; it; it = it->above) {
      cfgroup *ref = _cfcatgrp(it->gc, inst);
      wait(&ref->link);
      _cfcatelem(ref, inst);
      inst = ref;
    }
    return inst;
  }

  /// Files a parameter likewise.
  cfparam *file(const step *lowest, cfparam *par) {
    for (const step *it = lowest; it; it = it->above) {
      par = _cfcatpar(it->gc, par);
      wait(&par->link);
    }
    return par;
  }

  /// Links the references, and the element into its place in the tree.
  void finish(cfgroup *place, cfnode *elem) {
    putlast(place, elem);
    while (!isanchor(waiting.first())) {
      assert(waiting.first()->group);
      movelast(waiting.first()->group, waiting.first());
    }
  }

private:
  ring waiting;

  void wait(cfnode *ref) {
    cfgroup *level = ref->group;
    waiting.add(ref);
    ref->group = level;
  }
};

/// Visitor that files the contents of a group that is no instance itself, each in every catalog.
struct content_filer {
  insertion &refs;
  const step *lowest;

  go enter(cfgroup *grp) {
    if (grp->type != cf_grpinst)
      return go::on;
    refs.file(lowest, grp);
    return go::over;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param)
      refs.file(lowest, aspar(nd));
    return go::on;
  }
  go leave(cfgroup *) { return go::on; }
};

// What the call gives: the new reference in the uppermost catalog, or its owner if there is no such one.

cfparam *file(insertion &refs, const step *lowest, cfparam *elem) {
  return refs.file(lowest, elem);
}

cfgroup *file(insertion &refs, const step *lowest, cfgroup *elem) {
  if (elem->type == cf_grpinst)
    return refs.file(lowest, elem);
  content_filer visitor{refs, lowest};
  walk(elem, visitor);
  while (lowest->above)
    lowest = lowest->above;
  return lowest->gc;
}

/// Goes down to the tree and adds there, then in the catalogs on the way. All owners are found before
/// the element leaves its place: a climb may lead through it.
template <class Element> // NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
Element *insert(cfgroup *gc, cfgroup_t level, Element *elem, const step *above = nullptr) {
  gc = owner(gc, level);
  if (cfgroup *lower = standsfor(gc)) {
    const step here{gc, above};
    return insert(lower, level, elem, &here);
  }
  takeout(&elem->link);
  insertion refs;
  Element *result = above ? file(refs, above, elem) : elem;
  refs.finish(gc, &elem->link);
  return result;
}

} // namespace

cfgroup *cfcataddgrp(cfgroup *gc, cfgroup *elem) { return insert(gc, cf_grpcat, elem); }
cfparam *cfcataddpar(cfgroup *gc, cfparam *elem) { return insert(gc, cf_grpval, elem); }
