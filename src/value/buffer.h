// The value buffer: the 16 bytes behind the record of a plain parameter, for values that fit.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/memory.h"

#include <cstdint>

namespace cf {

inline constexpr size_t value_buffer_size = 16;

// Values in the buffer are as aligned as the block, at least where pointers have 64 bits.
static_assert(sizeof(void *) < 8 || sizeof(cfparam) % 16 == 0);

inline void *value_buffer(cfparam *par) { return par + 1; }

/// True if the value of a plain parameter is a block of its own, which ends with the value.
inline bool owns_value(cfparam *par) {
  return par->vval && par->vval != par->val && par->vval != value_buffer(par);
}

/// Takes the value away from a plain parameter, then releases it if it is a block.
inline void drop_value(cfparam *par) {
  void *block = owns_value(par) ? const_cast<void *>(par->vval) : nullptr;
  par->vval = nullptr;
  par->eval = nullptr;
  if (block)
    release(block);
}

} // namespace cf
