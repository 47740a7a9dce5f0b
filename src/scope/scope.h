// Scope strings: where in the application's schema an element stands.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstddef>

namespace cf {

/// The default of the genscope slots. With NULL `scbf` it gives the bytes that the scope string of
/// `nd` needs, terminator included; with a buffer of that size it writes it too. An anchor gives 0.
unsigned int genscope(char *scbf, cfnode *nd);

/// Writes the prefix of `grp`: what its contents get in front of their own part. Gives its length
/// without terminator; `sbf` NULL only asks.
size_t _grpscope(char *sbf, const cfgroup *grp);

} // namespace cf
