// Blocks: what binds remarks to the element on the next line.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cf {

/// Gathers the remarks of a tree that was read into blocks, one for each run on consecutive lines,
/// and binds a block to the group or parameter directly below it. Elements are moved, never copied.
void makeblocks(cfgroup *top);

} // namespace cf
