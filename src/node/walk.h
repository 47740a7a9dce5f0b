// The walk: over a group and all below it, depth first, whatever the depth.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"

namespace cf {

/// What a visitor wants next. `over` is for `enter` alone: leave out what the group holds.
enum class go { on, over, stop };

/// Walks `top` and all below it and tells the visitor: `enter` a group, meet a `leaf`, `leave` a
/// group that was entered. Gives `stop` if the visitor stopped it.
///
/// No recursion and no memory: a ring ends on an anchor that names its owner, so the walk climbs by
/// the anchor's group and goes on behind it. The visitor must not move what it has not left.
// NOLINTNEXTLINE(misc-no-recursion): a visitor may walk what a reference leads to
template <class Group, class Visitor> go walk(Group *top, Visitor &visitor) {
  if (go way = visitor.enter(top); way != go::on)
    return way;
  auto *nd = top->elem.next;
  for (;;) {
    if (isanchor(nd)) {
      Group *grp = nd->group;
      if (visitor.leave(grp) == go::stop)
        return go::stop;
      if (grp == top)
        return go::on;
      nd = grp->link.next;
    } else if (nd->type == cf_group) {
      Group *grp = asgrp(nd);
      const go way = visitor.enter(grp);
      if (way == go::stop)
        return go::stop;
      nd = way == go::on ? grp->elem.next : nd->next;
    } else {
      if (visitor.leaf(nd) == go::stop)
        return go::stop;
      nd = nd->next;
    }
  }
}

} // namespace cf
