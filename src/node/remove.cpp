// Deletion: elements with all they own, last child first, children before their group.
// SPDX-License-Identifier: MIT
#include "node/remove.h"

#include "node/link.h"
#include "node/memory.h"
#include "value/buffer.h"

namespace cf {
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
  if (nd->type == cf_param && owns_value(aspar(nd)) && !nd->ref)
    giveback(const_cast<void *>(aspar(nd)->vval));
  giveback(nd);
}

/// Goes down to the last leaf, removes it, and climbs out of what ran empty. What stands ahead is known
/// before an element goes, so that no step waits for the links that the one before wrote.
void removal::below(cfgroup *top) noexcept {
  cfgroup *grp = top;
  cfnode *it = grp->elem.prev;
  for (;;) {
    if (it->type == cf_group) {
      grp = asgrp(it);
      it = grp->elem.prev;
      continue;
    }
    if (isanchor(it)) {
      if (grp == top)
        return;
      it = &grp->link;
      grp = it->group;
    }
    cfnode *ahead = it->prev;
    ahead->next = &grp->elem;
    grp->elem.prev = ahead;
    one(it);
    it = ahead;
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
