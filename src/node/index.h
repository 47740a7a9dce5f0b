// Index: the searches of an operation that looks up many texts in the same lists.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/seek.h"

#include <cstddef>
#include <cstdint>

namespace cfcore {

/// A list of at most this many elements gets no index. Tests set it to 0: every list gets one.
extern ptrdiff_t index_threshold;

/// The searches of one operation. They find what seekkey() and seekgrp() find.
///
/// Plain search for each of n elements of a list takes n² steps. So a list gets an index, from
/// texts to the first element that has them, once plain searches have cost as much as the index
/// will. The index grows with the searches: each goes on where the last one ended and adds what it
/// passes. Between searches, elements may be added at the end of a list; nothing else may change.
///
/// A search is for an *owner*, the group whose elements are looked up. It goes through the list of
/// the owner and those of its blocks and levels. The indexes of these lists are released together.
class searches {
public:
  explicit searches(cfgroup *first) : grp(first) {}
  searches(const searches &) = delete;
  searches &operator=(const searches &) = delete;
  ~searches();

  /// The searches that follow are for `inner`, which was not searched before.
  void enter(cfgroup *inner) {
    grp = inner;
    current = nullptr;
    uncounted = index_threshold;
  }
  /// The searches that follow are for `outer` again; there are no more for the present owner.
  void leave(cfgroup *outer) {
    grp = outer;
    uncounted = -1; // else each group in `outer` would give it more uncounted searches
    if (innermost)
      leave_index();
  }

  cfgroup *owner() const { return grp; }

  /// As seekkey() from the first element of `list`.
  cfnode *key(cfgroup *list, const char *text) {
    return take_uncounted() ? seekkey(list->elem.next, text) : long_key(list, text);
  }

  /// As seekgrp() from the first element of `list`.
  cfnode *group(cfgroup *list, const char *cat, const char *name) {
    return take_uncounted() ? seekgrp(list->elem.next, cat, name) : long_group(list, cat, name);
  }

  /// As seekgrp() from `it` on, an element of `list`. An index is not used, but may be begun.
  cfnode *group_from(cfgroup *list, cfnode *it, const char *cat, const char *name) {
    return take_uncounted() ? seekgrp(it, cat, name) : long_group_from(list, it, cat, name);
  }

  /// As group(), if `list` has an index and no level precedes the result; else NULL.
  cfnode *group_without_levels(cfgroup *list, const char *cat, const char *name) {
    return current ? indexed_group_without_levels(list, cat, name) : nullptr;
  }

  /// The first element like `nd` in the list of the owner and in its blocks and levels. `nd` is a
  /// parameter without a key, or an instance without a name; then its category counts too.
  cfnode *nameless(const cfnode *nd);

private:
  /// What a search compares: by_cat is for groups without regard to the name, by_likeness for
  /// nameless().
  enum search_kind : uint32_t { by_key, by_name, by_cat, by_likeness };

  struct label;
  class hasher;
  class table;
  class index;

  cfgroup *grp;               // the owner
  index *current = nullptr;   // of the owner; NULL if it has none
  index *innermost = nullptr; // the last one made; each names the one that was made before it
  hasher *hash = nullptr;     // made with the first index
  ptrdiff_t uncounted = index_threshold; // see take_uncounted()
  ptrdiff_t passed = 0; // elements that long searches passed over, less the cost of the indexes

  /// Takes one of the uncounted searches of the owner; false if none is left. Its first searches
  /// are plain and not counted: they are so few that all of them together take time in proportion
  /// to its elements. So short lists cost no more.
  bool take_uncounted() { return --uncounted >= 0; }

  cfnode *long_key(cfgroup *list, const char *text);
  cfnode *long_group(cfgroup *list, const char *cat, const char *name);
  cfnode *long_group_from(cfgroup *list, cfnode *it, const char *cat, const char *name);
  cfnode *indexed_group_without_levels(cfgroup *list, const char *cat, const char *name);
  void passed_over(ptrdiff_t n, cfgroup *list, search_kind by);
  void release_innermost() noexcept;
  void leave_index() noexcept;
};

} // namespace cfcore
