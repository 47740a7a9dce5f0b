// Deletion: elements with all they own, last child first, children before their group.
// SPDX-License-Identifier: MIT
#include "node/remove.h"

#include "node/link.h"
#include "node/memory.h"
#include "value/buffer.h"

namespace cf {
namespace {

/// Takes the last element of a group out; its own links go with it.
void droplast(cfgroup *grp, const cfnode *last) {
  last->prev->next = &grp->elem;
  grp->elem.prev = last->prev;
}

} // namespace

void removal::giveback(void *block) noexcept {
  try {
    release(block);
  } catch (...) {
    if (!thrown)
      thrown = std::current_exception();
  }
}

/// Releases a leaf, or a group that holds nothing any more. It has left its list before its block
/// goes, so that what remains is a whole tree at every step.
void removal::one(cfnode *nd) noexcept {
  // A reference's value is its target's.
  if (nd->type == cf_param && !nd->ref && owns_value(aspar(nd)))
    giveback(const_cast<void *>(aspar(nd)->vval));
  giveback(nd);
}

/// Goes down to the last leaf, removes it, and climbs out of what ran empty.
void removal::below(cfgroup *top) noexcept {
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
    one(last);
  }
}

void removal::of(cfnode *nd) noexcept {
  if (nd->type == cf_group)
    below(asgrp(nd));
  takeout(nd);
  one(nd);
}

} // namespace cf

using namespace cf;

void cfdelnd(cfnode *nd) {
  if (!nd || isanchor(nd))
    return;
  removal gone;
  gone.of(nd);
  gone.finish();
}

void cfdelgrp(cfgroup *elem) { cfdelnd(elem ? &elem->link : nullptr); }
void cfdelrem(cfremark *elem) { cfdelnd(elem ? &elem->link : nullptr); }
void cfdelpar(cfparam *elem) { cfdelnd(elem ? &elem->link : nullptr); }

cfgroup *cfclrgrp(cfgroup *grp) {
  if (!grp)
    return nullptr;
  removal gone;
  gone.below(grp);
  gone.finish();
  return grp;
}
