// Copies: an element with all it holds; a reference together with its target.
// SPDX-License-Identifier: MIT
#include "node/make.h"
#include "node/ring.h"
#include "node/walk.h"

#include <cassert>

using namespace cf;

namespace {

// NOLINTBEGIN(misc-no-recursion): a step for each link.ref

/// One operation of copying. The copies that are in no list, the result and those of targets, are held
/// on a ring: an exception on the way leaves nothing of them.
class copying {
public:
  cfgroup *of(const cfgroup *grp);
  cfparam *of(const cfparam *par);
  void done() { made.letgo(); }

  /// Copies the record of a group, and its target with all that holds if it is a reference.
  cfgroup *record(const cfgroup *grp) {
    return grp->link.ref ? cfnewrefgrp(of(asgrp(grp->link.ref)))
                         : makegrp(grp->cat, grp->name, grp->type, grp->row);
  }
  /// Copies a parameter without its value, and its target with it if it is a reference.
  cfparam *record(const cfparam *par) {
    return par->link.ref ? cfnewrefpar(of(aspar(par->link.ref)))
                         : makepar(par->key, par->val, par->row);
  }

private:
  ring made;
};

/// Gives the copy of a plain parameter a value of its own, if the parameter has one. A refusal leaves a
/// copy that is not evaluated.
void evaluate(cfparam *copy, const cfparam *par) {
  if (par->eval && !par->link.ref)
    cfevalpar(copy, par->eval);
}

/// Visitor that keeps a second cursor, in the copy, in step with the walk.
struct copier {
  copying &copies;
  ring &made;
  cfgroup *root = nullptr;
  cfgroup *at = nullptr;

  go enter(const cfgroup *grp) {
    cfgroup *copy = copies.record(grp);
    if (at)
      putlast(at, &copy->link);
    else
      made.add(&(root = copy)->link);
    at = copy;
    return go::on;
  }
  go leaf(const cfnode *nd) {
    assert(at);
    if (nd->type == cf_param) {
      cfparam *copy = copies.record(aspar(nd));
      putlast(at, &copy->link);
      evaluate(copy, aspar(nd));
    } else {
      const cfremark *rem = asrem(nd);
      putlast(at, &makerem(rem->txt, rem->row)->link);
    }
    return go::on;
  }
  go leave(const cfgroup *) {
    assert(at);
    at = at->link.group;
    return go::on;
  }
};

cfgroup *copying::of(const cfgroup *grp) {
  copier visitor{*this, made};
  walk(grp, visitor);
  return visitor.root;
}

cfparam *copying::of(const cfparam *par) {
  cfparam *copy = record(par);
  made.add(&copy->link);
  evaluate(copy, par);
  return copy;
}

// NOLINTEND(misc-no-recursion)

template <class Element> Element *copyof(const Element *elem) {
  if (!elem)
    return nullptr;
  copying copies;
  Element *copy = copies.of(elem);
  copies.done();
  return copy;
}

} // namespace

cfgroup *cfdupgrp(const cfgroup *grp) { return copyof(grp); }
cfparam *cfduppar(const cfparam *par) { return copyof(par); }
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
