// Copies: an element with all it holds, and a reference together with its target.
// SPDX-License-Identifier: MIT
#include "node/make.h"
#include "node/unlinked.h"
#include "node/walk.h"

#include <cassert>

using namespace cfcore;

namespace {

// NOLINTBEGIN(misc-no-recursion): one frame for each step along link.ref

/// Copies one element. A group is copied by a walk, whose visitor this is; `parent` is the copy of
/// the group that the walk is in. The list `made` holds the copy and the copies of targets.
class copier {
public:
  explicit copier(unlinked &list) : made(list) {}

  cfgroup *copy(const cfgroup *grp) {
    walk(grp, *this);
    return top;
  }
  cfparam *copy(const cfparam *par) {
    cfparam *dup = record(par);
    made.add(&dup->link);
    evaluate(dup, par);
    return dup;
  }

  go enter(const cfgroup *grp) {
    cfgroup *dup = record(grp);
    if (parent) {
      putlast(parent, &dup->link);
    } else {
      made.add(&dup->link);
      top = dup;
    }
    parent = dup;
    return go::on;
  }
  go leaf(const cfnode *nd) {
    assert(parent);
    if (nd->type == cf_param) {
      cfparam *dup = record(aspar(nd));
      putlast(parent, &dup->link);
      evaluate(dup, aspar(nd));
    } else {
      const cfremark *rem = asrem(nd);
      putlast(parent, &makerem(rem->txt, rem->row)->link);
    }
    return go::on;
  }
  go leave(const cfgroup *) {
    assert(parent);
    parent = parent->link.group;
    return go::on;
  }

private:
  unlinked &made;
  cfgroup *top = nullptr;
  cfgroup *parent = nullptr;

  /// Copies the record of a group. A reference gets a copy of its target with all it holds.
  cfgroup *record(const cfgroup *grp) {
    return grp->link.ref ? cfnewrefgrp(copier(made).copy(asgrp(grp->link.ref)))
                         : makegrp(grp->cat, grp->name, grp->type, grp->row);
  }
  /// Copies a parameter without its value. A reference gets a copy of its target.
  cfparam *record(const cfparam *par) {
    return par->link.ref ? cfnewrefpar(copier(made).copy(aspar(par->link.ref)))
                         : makepar(par->key, par->val, par->row);
  }

  /// Gives the copy of an evaluated plain parameter a value of its own. If the evaluator refuses,
  /// the copy is not evaluated.
  static void evaluate(cfparam *dup, const cfparam *par) {
    if (par->eval && !par->link.ref)
      cfevalpar(dup, par->eval);
  }
};

// NOLINTEND(misc-no-recursion)

template <class Element> Element *duplicate(const Element *elem) {
  if (!elem)
    return nullptr;
  unlinked made;
  Element *dup = copier(made).copy(elem);
  made.unlink_all();
  return dup;
}

} // namespace

cfgroup *cfdupgrp(const cfgroup *grp) { return duplicate(grp); }
cfparam *cfduppar(const cfparam *par) { return duplicate(par); }
cfremark *cfduprem(const cfremark *rem) { return rem ? makerem(rem->txt, rem->row) : nullptr; }

cfnode *cfdupnd(const cfnode *nd) {
  if (!nd)
    return nullptr;
  switch (nd->type) {
  case cf_group: return &cfdupgrp(asgrp(nd))->link;
  case cf_remark: return &cfduprem(asrem(nd))->link;
  case cf_param: return &cfduppar(aspar(nd))->link;
  default: return nullptr;
  }
}
