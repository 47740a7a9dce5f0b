// Unlinked elements: those that an operation holds while they are in no group.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"
#include "node/remove.h"

namespace cfcore {

/// A list of elements that are in no group. The destructor deletes what is still in it, so that an
/// operation that ends by an exception leaks nothing.
class unlinked {
public:
  unlinked() { init(&anchor, cf_anchor, nullptr, nullptr); }
  unlinked(const unlinked &) = delete;
  unlinked &operator=(const unlinked &) = delete;
  ~unlinked() {
    deletion run;
    delete_each(run); // an exception of the manager is dropped
  }

  /// Moves an element to the end of the list. Its `group` becomes NULL.
  void add(cfnode *nd) { movebefore(&anchor, nd); }

  /// The first element, or the anchor.
  cfnode *first() { return anchor.next; }
  /// The anchor.
  cfnode *end() { return &anchor; }

  /// Takes all elements out; each is in no list then.
  void unlink_all() {
    while (!isanchor(anchor.next))
      takeout(anchor.next);
  }

  /// Deletes all elements with what they hold, last first.
  void delete_all() {
    deletion run;
    delete_each(run);
    run.finish();
  }

private:
  cfnode anchor;

  void delete_each(deletion &run) noexcept {
    while (!isanchor(anchor.prev))
      run.delete_element(anchor.prev);
  }
};

} // namespace cfcore
