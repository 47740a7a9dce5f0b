// Arena: memory from large blocks, given back all at once.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace bench::arena {

void *take(std::size_t size);
inline void giveback(void *) {} // all at once, by reset()
void reset();                   // the blocks are kept for the next round

} // namespace bench::arena
