// Scope strings of the elements that a walk meets.
//
// On the direct path, with the default `genscope`, the names keep the prefix of the group that the
// walk is in. If each string were made from the root, an element would cost the more the deeper it
// is. On the slot path, the function of the application makes each string.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"
#include "scope/textbuf.h"

#include <cstring>

namespace cfcore {

/// The names of the direct path.
///
/// The buffer is a stack of prefixes, outermost first. The prefix of a group without category
/// continues that of its parent; a category, a top group or another walk begins a new one after it.
class direct_names {
public:
  /// Begins a walk of elements that `holder` holds, which may be NULL. The walk before it, if there
  /// is one, goes on after end().
  void begin(const cfgroup *holder);
  void end() { pop(); }

  // The walk calls these for each owner.
  void enter(const cfgroup *grp);
  void leave(const cfgroup *grp);

  /// The scope string of an element that the group entered last holds, until the next call.
  const char *name(const cfparam *par);
  const char *name(const cfgroup *grp);

private:
  textbuf buf;
  size_t first = 0; // where the prefix begins
  size_t last = 0;  // where it ends, and names continue it

  void push();
  void pop();

  /// Writes a text at `at`. Gives the place of its terminator.
  size_t put(size_t at, const char *text) {
    const size_t size = std::strlen(text) + 1;
    std::memcpy(buf.reserve(at + size, at) + at, text, size);
    return at + size - 1;
  }
};

/// The names of the slot path.
class slot_names {
public:
  using genscope_t = unsigned int (*)(char *scbf, cfnode *nd);

  explicit slot_names(genscope_t function) : genscope(function) {}
  void begin(const cfgroup *) {}
  void end() {}
  void enter(const cfgroup *) {}
  void leave(const cfgroup *) {}
  const char *name(const cfparam *par) { return name(&par->link); }
  const char *name(const cfgroup *grp) { return name(&grp->link); }

private:
  genscope_t genscope;
  textbuf buf;

  const char *name(const cfnode *nd);
};

} // namespace cfcore
