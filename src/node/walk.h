// The walk: over a group and all below it, depth first, however deep.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"

namespace cfcore {

/// How the walk continues after a call of the visitor. Only `enter` may return `skip`: the walk
/// does not go into the group, and `leave` is not called for it.
enum class go { on, skip, stop };

/// Walks over `top` and all below it. Calls `enter` for each group, `leaf` for each other element,
/// and `leave` for each group that was entered, after what it holds. Gives `stop` if the visitor
/// did, and `skip` if it skipped `top`.
///
/// The walk needs neither recursion nor memory: each list ends on an anchor, whose `group` is the
/// owner of the list, and the walk continues after that group. The visitor must not change the
/// links.
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

} // namespace cfcore
