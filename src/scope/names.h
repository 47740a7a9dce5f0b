// Scope strings during a check: kept along the walk, or asked of the application's function.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"
#include "scope/scope.h"
#include "scope/textbuf.h"

namespace cf {

using genscope_t = unsigned int (*)(char *scbf, cfnode *nd);

/// Asks a genscope slot for the scope string of an element, by its two calls.
const char *askscope(textbuf &buf, genscope_t genscope, cfnode *nd);

/// Asks for each name.
class asked_names {
public:
  explicit asked_names(const cfparser *parser) : genscope(parser->genscope) {}
  void enter(const cfgroup *) {}
  void leave(const cfgroup *) {}
  const char *of(cfparam *par) { return askscope(buf, genscope, &par->link); }
  const char *of(cfgroup *grp) { return askscope(buf, genscope, &grp->link); }

private:
  genscope_t genscope;
  textbuf buf;
};

/// Keeps the prefix of the group that the walk is in, as the default genscope would make it, so
/// that a name costs its own part only: made anew for each element, from the root and twice, the
/// strings are most of a check, and their cost grows with the nesting.
///
/// The buffer is a stack of prefixes, outermost first. Below a group without category the prefix is
/// prolonged; a category or a top group begins a new one, behind the place where the former begins.
class kept_names {
public:
  explicit kept_names(const cfparser *parser);
  void enter(const cfgroup *grp);
  void leave(const cfgroup *grp); ///< to be called before of() for the group itself
  const char *of(const cfparam *par);
  const char *of(const cfgroup *grp);

private:
  textbuf buf;
  size_t begin = 0; // of the prefix
  size_t end;       // of the prefix, where names are written

  /// Writes a text at `at`. Gives the place of its terminator.
  size_t put(size_t at, const char *text) {
    const size_t size = std::strlen(text) + 1;
    std::memcpy(buf.reserve(at + size, at) + at, text, size);
    return at + size - 1;
  }
};

} // namespace cf
