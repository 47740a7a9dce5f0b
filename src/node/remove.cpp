// Deletion: elements with all they own, last child first, children before their group.
// SPDX-License-Identifier: MIT
#include "node/link.h"
#include "node/memory.h"
#include "value/buffer.h"

using namespace cf;

namespace {

/// Releases a leaf that is still linked, or a group that holds nothing any more. It leaves its list
/// before its block goes, so that what remains is a whole tree at every step.
void removeone(cfnode *nd) {
  // A reference's value is its target's.
  if (nd->type == cf_param && !nd->ref && owns_value(aspar(nd)))
    drop_value(aspar(nd));
  takeout(nd);
  release(nd);
}

/// Removes all below `top`: goes down to the last leaf, removes, and climbs out of what ran empty.
void removebelow(cfgroup *top) {
  cfgroup *grp = top;
  for (;;) {
    cfnode *last = grp->elem.prev;
    if (last->type == cf_group) {
      grp = asgrp(last);
    } else if (!isanchor(last)) {
      removeone(last);
    } else if (grp != top) {
      cfgroup *up = grp->link.group;
      removeone(&grp->link);
      grp = up;
    } else {
      return;
    }
  }
}

} // namespace

void cfdelnd(cfnode *nd) {
  if (!nd || isanchor(nd))
    return;
  if (nd->type == cf_group)
    removebelow(asgrp(nd));
  removeone(nd);
}

void cfdelgrp(cfgroup *elem) { cfdelnd(elem ? &elem->link : nullptr); }
void cfdelrem(cfremark *elem) { cfdelnd(elem ? &elem->link : nullptr); }
void cfdelpar(cfparam *elem) { cfdelnd(elem ? &elem->link : nullptr); }

cfgroup *cfclrgrp(cfgroup *grp) {
  if (grp)
    removebelow(grp);
  return grp;
}
