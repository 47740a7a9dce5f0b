// world: the trees and catalogs that a program of calls works on, and which of them are true.
// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz.h"

#include <cstdint>
#include <vector>

namespace fuzz {

/// The input, one byte for each choice; zeros behind its end.
class program {
public:
  program(const uint8_t *data, size_t size) : at(data), end(data + size) {}
  bool more() const { return at != end; }
  size_t choose(size_t count) {
    size_t choice = more() ? *at++ : 0;
    if (count > 256 && more())
      choice = choice << 8 | *at++;
    return choice % count;
  }

private:
  const uint8_t *at;
  const uint8_t *end;
};

/// An element, told from a later one at the same address.
struct handle {
  cfnode *nd;
  unsigned long serial;

  explicit handle(cfnode *node) : nd(node), serial(born(node)) {} ///< NULL is never alive
  bool alive() const { return serial && born(nd) == serial; }
};

/// Elements in no list, with all below them, and a stack of catalogs over one of them.
///
/// A storey is 0 for what is in a tree and n for what is in the n-th catalog of the stack.
class world {
public:
  explicit world(program &choices) : in(choices) {}
  world(const world &) = delete;
  world &operator=(const world &) = delete;

  enum class reach { all, trees, free }; ///< all nodes, those of trees, those that no catalog knows

  /// A node that matches, or NULL if there is none.
  template <class Match> cfnode *pick(reach where, Match match) {
    std::vector<cfnode *> found = nodes(where);
    std::erase_if(found, [&](const cfnode *nd) { return !match(nd); });
    return pick_of(found);
  }
  cfnode *pick(reach where) { return pick_of(nodes(where)); }
  cfgroup *pick_group(reach where); ///< may be NULL, as the next
  cfnode *pick_elem(cfnode_t type); ///< of a tree, in most cases one that no catalog knows

  void involve(cfnode *nd); ///< what may be in no list behind the call
  void stack(cfgroup *catalog);
  size_t storeys() const { return catalogs.size(); }
  cfgroup *catalog(size_t storey) const { return asgroup(catalogs[storey - 1].root); }
  size_t storey(const cfnode *nd) const;

  void
  edit(const cfnode *place); ///< the call works on the list of a node: what is above is not told
  void edit_through(size_t storey); ///< the call works through a catalog: those above are not told
  void untrue(size_t storey);       ///< catalogs up to this one keep no order of their own any more
  bool irregular() const; ///< a block holds, or is, more than one element with a reference

  void settle(); ///< behind a call: forgets what died, deletes what is not true any more, checks
  void end();    ///< deletes everything, catalogs last

private:
  struct stacked {
    handle root;
    bool filed;
  };

  program &in;
  std::vector<handle> roots;
  std::vector<stacked> catalogs;
  std::vector<handle> involved;
  size_t spoilt = SIZE_MAX; // storey of the lowest catalog that the call leaves untrue

  static cfgroup *asgroup(const handle &root) { return cfgrp(root.nd); }
  std::vector<cfnode *> nodes(reach where) const;
  cfnode *pick_of(const std::vector<cfnode *> &nodes);
  bool catalogued(const cfnode *nd) const;
  void check() const;
};

} // namespace fuzz
