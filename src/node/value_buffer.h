// The value buffer: the 16 bytes after the record of a plain parameter, for values that fit.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cfcore {

inline constexpr size_t value_buffer_size = 16;

// So the buffer has the alignment of malloc() where pointers have 64 bits. Where they have 32 bits,
// it is aligned to 8 bytes.
static_assert(sizeof(void *) < 8 || sizeof(cfparam) % 16 == 0);

inline void *value_buffer(cfparam *par) { return par + 1; }

/// True if the value of a plain parameter is a block of its own, which is released with the value.
inline bool owns_value(cfparam *par) {
  return par->vval && par->vval != par->val && par->vval != value_buffer(par);
}

} // namespace cfcore
