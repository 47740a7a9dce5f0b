// Memory: the current manager, which allocates and releases every block.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cfcore {

/// The current manager, one for the process. No element records which manager made it.
extern struct ::cfmmgr _cfmmgr;

inline void *allocate(size_t size) { return _cfmmgr.cfmalloc(size); }
inline void release(void *block) { _cfmmgr.cffree(block); }

/// For destructors, which may run while another exception is thrown: drops the manager's exception.
inline void release_quietly(void *block) noexcept {
  try {
    release(block);
  } catch (...) { // NOLINT(bugprone-empty-catch): the block counts as released
  }
}

} // namespace cfcore
