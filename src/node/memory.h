// Memory: the manager in force, through which every block comes and goes.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cf {

/// The manager in force. One for the process; an element does not record which manager made it.
extern struct ::cfmmgr _cfmmgr;

inline void *allocate(size_t size) { return _cfmmgr.cfmalloc(size); }
inline void release(void *block) { _cfmmgr.cffree(block); }

/// For destructors: an exception of the manager must not meet another on its way.
inline void release_quietly(void *block) noexcept {
  try {
    release(block);
  } catch (...) { // NOLINT(bugprone-empty-catch): the block counts as released
  }
}

} // namespace cf
