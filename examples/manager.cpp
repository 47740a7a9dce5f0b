// manager: two memory managers: one counts and has a limit, one takes memory from an arena.
// SPDX-License-Identifier: MIT
#include <cf.h>

#include <cstddef>
#include <cstdlib>
#include <memory_resource>
#include <new>

namespace {

//! [installed]
/// Installs a manager for its lifetime. A block is released by the manager that is installed then,
/// not by the one that it came from: delete trees before this object.
class installed {
public:
  explicit installed(const struct cfmmgr &manager) : former(cfmmgr(&manager)) {}
  installed(const installed &) = delete;
  installed &operator=(const installed &) = delete;
  ~installed() { cfmmgr(&former); }

private:
  struct cfmmgr former;
};
//! [installed]

//! [limited]
/// What the library has allocated, and the most that it may allocate.
struct {
  size_t blocks = 0, bytes = 0, limit = 0;
} held;

struct alignas(std::max_align_t) header { // in front of each block
  size_t size;
};

void *allocate(size_t size) {
  if (size > held.limit - held.bytes)
    throw std::bad_alloc();
  auto *block = static_cast<header *>(std::malloc(sizeof(header) + size));
  if (!block)
    throw std::bad_alloc();
  block->size = size;
  held.blocks += 1;
  held.bytes += size;
  return block + 1;
}

void release(void *block) {
  header *counted = static_cast<header *>(block) - 1;
  held.blocks -= 1;
  held.bytes -= counted->size;
  std::free(counted);
}

/// Reads a file into at most `limit` bytes of memory.
void readlimited(FILE *file, size_t limit) {
  held.limit = limit;
  const installed manager({allocate, release});
  cflexer lex{};
  try {
    cflex(&lex, file, "tour.conf");
    std::printf("read with a limit of %zu bytes: %ld lines\n", limit, lex.nrow - 1);
  } catch (const std::bad_alloc &) {
    std::printf("read with a limit of %zu bytes: no memory in line %ld\n", limit, lex.nrow);
  }
  std::printf("  %zu blocks in use\n", held.blocks);
  cfdelgrp(lex.top); // what was read so far is a whole tree
}
//! [limited]

//! [arena]
std::pmr::monotonic_buffer_resource *arena;

/// Reads a file into an arena and releases all of it at once, without deleting each element.
void readarena(FILE *file) {
  std::pmr::monotonic_buffer_resource memory;
  arena = &memory;
  const installed manager({[](size_t size) { return arena->allocate(size); }, [](void *) {}});
  cflexer lex{};
  if (cflex(&lex, file, "tour.conf"))
    if (cfgroup *beta = cfcatgetgrp(cfcatalog(lex.top), "host", "beta"))
      std::printf("read into an arena: beta answers on port %s\n",
                  cfstr(cfcatgetpar(beta, "port", nullptr)));
}
//! [arena]

} // namespace

int main() {
  FILE *file = std::fopen("tour.conf", "r");
  if (!file)
    return 1;
  for (const size_t limit : {10000u, 1000u, 0u}) {
    readlimited(file, limit);
    std::rewind(file);
  }
  readarena(file);
  std::fclose(file);
  return held.blocks == 0 && held.bytes == 0 ? 0 : 1;
}
