// Invariants: what holds of every tree and of every catalog between two calls.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstddef>

namespace fuzz {

/// Rings, parents, texts and values of an element and all below it; gives their blocks of memory.
size_t check_tree(const cfnode *root);

/// A catalog over its source: one reference for each element, under the right owner, in the order of
/// the source. `filed`: it holds nothing else, and every element stands where its texts belong.
void check_catalog(cfgroup *root, bool filed);

} // namespace fuzz
