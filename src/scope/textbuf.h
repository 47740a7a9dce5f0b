// Transient text: in the object while it fits, else in a block of the memory manager.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/memory.h"

#include <cstddef>

namespace cfcore {

/// A buffer that grows. Whoever asks for room says how much of the present text is still needed.
class textbuf {
public:
  textbuf() = default;
  textbuf(const textbuf &) = delete;
  textbuf &operator=(const textbuf &) = delete;
  ~textbuf() {
    if (data != fixed)
      release_quietly(data);
  }

  /// Makes room for `size` bytes and keeps the first `kept`. The text may move.
  char *reserve(size_t size, size_t kept = 0) {
    if (size > room)
      grow(size, kept);
    return data;
  }
  char *text() { return data; }

private:
  size_t room = sizeof fixed;
  char *data = fixed;
  char fixed[1024];

  /// Not inline: it is rare, and each user of reserve() would save registers for it.
  void grow(size_t size, size_t kept);
};

} // namespace cfcore
