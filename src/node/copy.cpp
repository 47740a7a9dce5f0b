// Copies: an element with all it holds; a reference together with its target.
// SPDX-License-Identifier: MIT
#include "node/make.h"
#include "node/remove.h"
#include "node/walk.h"

#include <memory>

using namespace cf;

namespace {

void discard(cfnode *copy) noexcept;

/// Deletes the copied targets behind the references of a copy; they are in no list.
struct target_deleter {
  static go meet(cfnode *nd) {
    if (nd->ref)
      discard(nd->ref);
    return go::on;
  }
  go enter(cfgroup *grp) { return meet(&grp->link); }
  go leaf(cfnode *nd) { return meet(nd); }
  go leave(cfgroup *) { return go::on; }
};

/// Deletes a copy that could not be finished.
void discard(cfnode *copy) noexcept {
  target_deleter targets;
  if (cfgroup *grp = ifgrp(copy))
    walk(grp, targets);
  else
    targets.leaf(copy);
  removal().of(copy);
}

/// A copy in the making: an exception on the way leaves nothing of it.
struct discarder {
  void operator()(cfgroup *copy) const { discard(&copy->link); }
  void operator()(cfparam *copy) const { discard(&copy->link); }
};
template <class Element> using unfinished = std::unique_ptr<Element, discarder>;

/// Copies the record of a group, and its target's whole tree if it is a reference.
cfgroup *copygrp(const cfgroup *grp) {
  if (!grp->link.ref)
    return makegrp(grp->cat, grp->name, grp->type, grp->row);
  unfinished<cfgroup> target(cfdupgrp(asgrp(grp->link.ref)));
  cfgroup *copy = cfnewrefgrp(target.get());
  target.release();
  return copy;
}

/// Visitor that keeps a second cursor, in the copy, in step with the walk.
struct copier {
  cfgroup *at = nullptr;
  unfinished<cfgroup> root{};

  go enter(const cfgroup *grp) {
    cfgroup *copy = copygrp(grp);
    if (at)
      putlast(at, &copy->link);
    else
      root.reset(copy);
    at = copy;
    return go::on;
  }
  go leaf(const cfnode *nd) {
    cfnode *copy = nd->type == cf_param ? &cfduppar(aspar(nd))->link : &cfduprem(asrem(nd))->link;
    putlast(at, copy);
    return go::on;
  }
  go leave(const cfgroup *) {
    at = at->link.group;
    return go::on;
  }
};

} // namespace

cfgroup *cfdupgrp(const cfgroup *grp) {
  if (!grp)
    return nullptr;
  copier copy;
  walk(grp, copy);
  return copy.root.release();
}

cfremark *cfduprem(const cfremark *rem) { return rem ? makerem(rem->txt, rem->row) : nullptr; }

cfparam *cfduppar(const cfparam *par) {
  if (!par)
    return nullptr;
  if (par->link.ref) {
    unfinished<cfparam> target(cfduppar(aspar(par->link.ref)));
    cfparam *copy = cfnewrefpar(target.get());
    target.release();
    return copy;
  }
  unfinished<cfparam> copy(makepar(par->key, par->val, par->row));
  if (par->eval)
    cfevalpar(copy.get(), par->eval); // a refusal leaves a copy that is not evaluated
  return copy.release();
}

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
