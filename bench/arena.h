// Arena: memory from large blocks, given back all at once.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace bench::arena {

/// Returns memory of a size of up to 1 MiB, aligned as by malloc().
void *take(std::size_t size);
/// Does nothing: memory is given back by reset() only.
inline void giveback(void *) {}
/// Takes all memory back. The large blocks are kept for the next round.
void reset();

} // namespace bench::arena
