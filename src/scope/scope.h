// Scope strings: where in the application's schema an element is.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstddef>

namespace cfcore {

/// True for a group that has its own symbols and its own prefix; all others are passed through.
inline bool isowner(const cfgroup *grp) {
  return grp->type == cf_grpinst || grp->type == cf_grptop;
}

/// The default of the genscope slots. Gives the bytes that the scope string of `nd` needs, with its
/// terminator, and writes it unless `scbf` is NULL. A remark has that of its group. An anchor has
/// none and gives 0.
unsigned int genscope(char *scbf, cfnode *nd);

/// Gives the length of the prefix with which the scope strings of the elements in `grp` begin, and
/// writes it, with a terminator, unless `sbf` is NULL. Unlike genscope(), it does *not* count the
/// terminator: its place is where the string goes on. NULL has the prefix of the top.
size_t _grpscope(char *sbf, const cfgroup *grp);

} // namespace cfcore
