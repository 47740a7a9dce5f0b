// manager: two managers of memory: one that counts and caps, one that gives from an arena.
// SPDX-License-Identifier: MIT
#include "tree.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory_resource>
#include <new>

namespace {

//! [in_force]
/// Puts a manager in force while it lives. A block is released by the manager then in force, and
/// not by the one that gave it: trees that were made meanwhile have to go first.
class in_force {
public:
  explicit in_force(const struct cfmmgr &manager) : former(cfmmgr(&manager)) {}
  in_force(const in_force &) = delete;
  in_force &operator=(const in_force &) = delete;
  ~in_force() { cfmmgr(&former); }

private:
  struct cfmmgr former;
};
//! [in_force]

//! [capped]
/// What the library holds, and the most that it may hold.
struct {
  size_t blocks = 0, bytes = 0, cap = 0;
} held;

struct alignas(std::max_align_t) header { // ahead of each block
  size_t size;
};

void *givecounted(size_t size) {
  if (size > held.cap - held.bytes)
    throw std::bad_alloc();
  auto *block = static_cast<header *>(std::malloc(sizeof(header) + size));
  if (!block)
    throw std::bad_alloc();
  block->size = size;
  held.blocks += 1;
  held.bytes += size;
  return block + 1;
}

void takecounted(void *block) {
  header *counted = static_cast<header *>(block) - 1;
  held.blocks -= 1;
  held.bytes -= counted->size;
  std::free(counted);
}

/// Reads a file into as much memory as `cap` bytes.
void readcapped(FILE *file, size_t cap) {
  held.cap = cap;
  const in_force manager({givecounted, takecounted});
  cflexer lex{};
  try {
    cflex(&lex, file, "tour.conf");
    std::printf("read with a cap of %zu bytes: %ld lines\n", cap, lex.nrow - 1);
  } catch (const std::bad_alloc &) {
    std::printf("read with a cap of %zu bytes: no memory in line %ld\n", cap, lex.nrow);
  }
  const tree top(lex.top); // a whole tree as far as it came, and ours
  std::printf("  %zu blocks live\n", held.blocks);
}
//! [capped]

//! [arena]
std::pmr::monotonic_buffer_resource *arena;

/// Reads a file into an arena and drops all of it at once: nothing is deleted one by one.
void readarena(FILE *file) {
  std::pmr::monotonic_buffer_resource memory;
  arena = &memory;
  const in_force manager({[](size_t size) { return arena->allocate(size); }, [](void *) {}});
  cflexer lex{};
  if (cflex(&lex, file, "tour.conf"))
    if (cfgroup *beta = cfcatgetgrp(cfcatalog(lex.top), "host", "beta"))
      std::printf("read into an arena: beta answers on port %s\n",
                  cfstr(cfcatgetpar(beta, "port", nullptr)));
}
//! [arena]

} // namespace

int main() {
  const stream file(std::fopen("tour.conf", "r"));
  if (!file)
    return 1;
  for (const size_t cap : {10000u, 1000u, 0u}) {
    readcapped(file.get(), cap);
    std::rewind(file.get());
  }
  readarena(file.get());
  return held.blocks == 0 && held.bytes == 0 ? 0 : 1;
}
