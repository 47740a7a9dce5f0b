// Blocks: they bind remarks to the element on the next line.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cfcore {

/// Moves each run of remarks on consecutive lines into a block, and binds the block to a group or
/// parameter on the next line by a second block around both. `top` is the root of a tree that was
/// just read. Elements are moved, never copied.
void makeblocks(cfgroup *top);

} // namespace cfcore
