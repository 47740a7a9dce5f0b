// Ring: elements in no group that one operation holds, until it lets go of them or they are deleted.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"
#include "node/remove.h"

namespace cf {

/// A private ring. What is still on it at the end of its life is deleted: so an operation that an
/// exception ends leaves nothing behind.
class ring {
public:
  ring() { init(&anchor, cf_anchor, nullptr, nullptr); }
  ring(const ring &) = delete;
  ring &operator=(const ring &) = delete;
  ~ring() {
    removal gone;
    removeall(gone);
  }

  /// Moves an element to the end of the ring. Its `group` is NULL then.
  void add(cfnode *nd) { movebefore(&anchor, nd); }

  /// The first element, or the anchor.
  cfnode *first() { return anchor.next; }
  cfnode *end() { return &anchor; }

  /// Takes all elements off; they are in no list then.
  void letgo() {
    while (!isanchor(anchor.next))
      takeout(anchor.next);
  }

  /// Deletes all elements with what they hold, last first.
  void clear() {
    removal gone;
    removeall(gone);
    gone.finish();
  }

private:
  cfnode anchor;

  void removeall(removal &gone) noexcept {
    while (!isanchor(anchor.prev))
      gone.of(anchor.prev);
  }
};

} // namespace cf
