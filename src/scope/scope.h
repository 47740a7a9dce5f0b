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
/// terminator, and writes it unless `scbf` is NULL. An anchor has none and gives 0.
unsigned int genscope(char *scbf, cfnode *nd);

/// Writes the prefix of `grp`, which scope strings of what it holds begin with, unless `sbf` is
/// NULL. Gives its length *without* the terminator, unlike genscope(): that is where the string
/// goes on.
size_t _grpscope(char *sbf, const cfgroup *grp);

} // namespace cfcore
