// Transient text: in the object while it fits, else in a block of the memory manager.
// SPDX-License-Identifier: MIT
#include "scope/textbuf.h"

#include <algorithm>
#include <cstring>

namespace cfcore {

void textbuf::grow(size_t size, size_t kept) {
  size = std::max(size, 2 * room);
  char *larger = static_cast<char *>(allocate(size));
  std::memcpy(larger, data, kept);
  char *former = data;
  data = larger;
  room = size;
  if (former != fixed)
    release(former);
}

} // namespace cfcore
