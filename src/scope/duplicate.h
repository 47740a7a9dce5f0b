// Duplicates: whether an instance has a symbol twice.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/index.h"
#include "scope/scope.h"

namespace cfcore {

/// The duplicate check of one walk. The walk calls enter() and leave() for each owner.
class duplicates {
public:
  explicit duplicates(cfgroup *top) : search(enclosing(top)) {}

  void enter(cfgroup *owner) { search.enter(owner); }
  void leave(const cfgroup *owner) {
    if (owner->link.group)
      search.leave(enclosing(owner->link.group));
  }

  /// True if another element like this one precedes it in the list, blocks and levels of its owner.
  /// For an instance, call this after leave().
  bool isrepeated(cfparam *par);
  bool isrepeated(cfgroup *grp);

private:
  searches search;

  static cfgroup *enclosing(cfgroup *grp) {
    while (!isowner(grp) && grp->link.group)
      grp = grp->link.group;
    return grp;
  }
};

} // namespace cfcore
