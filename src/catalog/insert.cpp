// Catalog insertion: a new element into the tree and into each catalog on the way.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "catalog/owner.h"
#include "node/unlinked.h"
#include "node/walk.h"

#include <cassert>

using namespace cfcore;

namespace {

struct step;

template <class Element> // NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
Element *insert(cfgroup *gc, cfgroup_t kind, Element *elem, step *above = nullptr);

} // namespace

cfgroup *cfcataddgrp(cfgroup *gc, cfgroup *elem) { return insert(gc, cf_grpcat, elem); }
cfparam *cfcataddpar(cfgroup *gc, cfparam *elem) { return insert(gc, cf_grpval, elem); }

namespace {

/// One owner of the chain that leads from the given one, from target to target, down to the tree.
struct step {
  searches search; // for this owner
  step *above;     // the owner in the catalog above; NULL: this is the given one
};

/// The references for what one call adds. They wait in a list of their own, each with its level in
/// `group`, and are linked when all of them are made. So when the manager throws, the tree and the
/// catalogs are as they were, except for empty levels.
class insertion {
public:
  /// Files an instance, with all below it, under each owner from the `lowest` up. Gives the
  /// reference in the uppermost catalog.
  cfgroup *file(step *lowest, cfgroup *inst) {
    for (step *it = lowest; it; it = it->above) {
      cfgroup *ref = wait(_cfcatgrp(it->search, inst));
      _cfcatelem(ref, inst);
      inst = ref;
    }
    return inst;
  }

  /// As the function above, for a parameter.
  cfparam *file(step *lowest, cfparam *par) {
    for (step *it = lowest; it; it = it->above)
      par = wait(_cfcatpar(it->search, par));
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
  unlinked waiting;

  template <class Element> Element *wait(const filing<Element> &made) {
    waiting.add(&made.ref->link);
    made.ref->link.group = made.level;
    return made.ref;
  }
};

/// Visitor that files the contents of a group that is no instance itself, each in every catalog.
struct content_filer {
  insertion &refs;
  step *lowest;

  go enter(cfgroup *grp) {
    if (grp->type != cf_grpinst)
      return go::on;
    refs.file(lowest, grp);
    return go::skip;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param)
      refs.file(lowest, aspar(nd));
    return go::on;
  }
  go leave(cfgroup *) { return go::on; }
};

/// Files what is inserted. Gives the result of the call: the new reference in the uppermost
/// catalog, or the owner there if the element is no instance.
cfgroup *file_all(insertion &refs, step *lowest, cfgroup *elem) {
  if (elem->type == cf_grpinst)
    return refs.file(lowest, elem);
  content_filer visitor{refs, lowest};
  walk(elem, visitor);
  while (lowest->above)
    lowest = lowest->above;
  return lowest->search.owner();
}

cfparam *file_all(insertion &refs, step *lowest, cfparam *elem) { return refs.file(lowest, elem); }

/// Goes down to the tree, adds the element there, and files it in the catalogs on the way. All
/// owners are found before the element leaves its place: the way to an owner may lead through it.
template <class Element> // NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
Element *insert(cfgroup *gc, cfgroup_t kind, Element *elem, step *above) {
  gc = owner(gc, kind);
  if (cfgroup *lower = target(gc)) {
    step here{searches(gc), above};
    return insert(lower, kind, elem, &here);
  }
  takeout(&elem->link);
  insertion refs;
  Element *result = above ? file_all(refs, above, elem) : elem;
  refs.finish(gc, &elem->link);
  return result;
}

} // namespace
