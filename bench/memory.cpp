// The memory count: heap bytes and allocations that one element costs after reading, by malloc().
// SPDX-License-Identifier: MIT
#include "operations.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <malloc.h>

// The allocator of glibc under its internal names. The functions at the end of this file have its
// public names, which the program and all libraries call.
extern "C" {
void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);
void *__libc_memalign(std::size_t, std::size_t);
void __libc_free(void *);
}

namespace {

long bytes = 0;       // in live blocks, as malloc_usable_size() reports
long allocations = 0; // made so far, released or not

void *counted(void *block) {
  bytes += static_cast<long>(malloc_usable_size(block));
  ++allocations;
  return block;
}

void uncount(void *block) { bytes -= static_cast<long>(malloc_usable_size(block)); }

void count(const bench::Operation &operation, const char *name) {
  const bench::Shape &shape = bench::shape(name);
  const bench::Task task = operation.make(shape);
  task.work(); // so that what a library sets up once is not counted
  task.clear();
  const long bytes_before = bytes;
  const long allocations_before = allocations;
  task.work();
  const double elements = static_cast<double>(shape.elements);
  std::printf("%s %s %.2f %.3f\n", operation.library.c_str(), name,
              static_cast<double>(bytes - bytes_before) / elements,
              static_cast<double>(allocations - allocations_before) / elements);
  task.clear();
}

} // namespace

extern "C" {

void *malloc(std::size_t size) { return counted(__libc_malloc(size)); }
void *calloc(std::size_t number, std::size_t size) { return counted(__libc_calloc(number, size)); }
void *realloc(void *block, std::size_t size) {
  uncount(block);
  return counted(__libc_realloc(block, size));
}
void *memalign(std::size_t alignment, std::size_t size) {
  return counted(__libc_memalign(alignment, size));
}
void *aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
int posix_memalign(void **block, std::size_t alignment, std::size_t size) {
  *block = memalign(alignment, size);
  return *block ? 0 : ENOMEM;
}
void free(void *block) {
  uncount(block);
  __libc_free(block);
}

} // extern "C"

int main() {
  for (const bench::Operation &operation : bench::operations())
    if (operation.name == "ReadMemory" && operation.library != "cf-arena")
      for (const char *shape : {"typical", "wide", "deep"})
        count(operation, shape);
}
