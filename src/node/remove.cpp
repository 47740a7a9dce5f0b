// Deletion: elements with all they own, last child first, children before their group.
// SPDX-License-Identifier: MIT
#include "node/remove.h"

#include "node/link.h"
#include "node/memory.h"
#include "node/value_buffer.h"

namespace cfcore {
namespace {

/// Takes the last element out of a group. The links of the element itself are not cleared, as it is
/// released next.
void droplast(cfgroup *grp, const cfnode *last) {
  last->prev->next = &grp->elem;
  grp->elem.prev = last->prev;
}

} // namespace

void deletion::release_block(void *block) noexcept {
  try {
    release(block);
  } catch (...) {
    if (!thrown)
      thrown = std::current_exception();
  }
}

/// Releases an element that holds nothing and is in no list any more: so what is still linked is a
/// complete tree whenever the manager is called.
void deletion::release_element(cfnode *nd) noexcept {
  // The value of a reference belongs to its target.
  if (nd->type == cf_param && !nd->ref && owns_value(aspar(nd)))
    release_block(const_cast<void *>(aspar(nd)->vval));
  release_block(nd);
}

/// Removes the last child until none is left. Goes down into a last child that is a group first,
/// and removes the group when it is empty.
void deletion::delete_contents(cfgroup *top) noexcept {
  cfgroup *grp = top;
  for (;;) {
    cfnode *last = grp->elem.prev;
    if (last->type == cf_group) {
      grp = asgrp(last);
      continue;
    }
    if (isanchor(last)) {
      if (grp == top)
        return;
      last = &grp->link;
      grp = last->group;
    }
    droplast(grp, last);
    release_element(last);
  }
}

void deletion::delete_element(cfnode *nd) noexcept {
  if (nd->type == cf_group)
    delete_contents(asgrp(nd));
  takeout(nd);
  release_element(nd);
}

} // namespace cfcore

using namespace cfcore;

void cfdelnd(cfnode *nd) {
  if (!nd || isanchor(nd))
    return;
  deletion run;
  run.delete_element(nd);
  run.finish();
}

void cfdelgrp(cfgroup *elem) { cfdelnd(elem ? &elem->link : nullptr); }
void cfdelrem(cfremark *elem) { cfdelnd(elem ? &elem->link : nullptr); }
void cfdelpar(cfparam *elem) { cfdelnd(elem ? &elem->link : nullptr); }

cfgroup *cfclrgrp(cfgroup *grp) {
  if (!grp)
    return nullptr;
  deletion run;
  run.delete_contents(grp);
  run.finish();
  return grp;
}
