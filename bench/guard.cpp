// The guard's program: one operation, run once where callgrind counts.
// Use: cf_guard OPERATION SHAPE [LIBRARY], of the library itself or of "floor"; without arguments
// it lists the operations.
// SPDX-License-Identifier: MIT
#include "operations.h"

#include <alloca.h>
#include <cstdint>
#include <cstdio>

/// Callgrind counts in here alone.
extern "C" [[gnu::noinline]] void guarded(const std::function<void()> &work) { work(); }

namespace {

void round(const bench::Task &task, void (*run)(const std::function<void()> &)) {
  if (task.prepare)
    task.prepare();
  run(task.work);
  if (task.clear)
    task.clear();
}

/// A round before the one that counts: calls into libraries are bound, memory is there.
void count(const bench::Operation &operation, const bench::Shape &shape) {
  const bench::Task task = operation.make(shape);
  round(task, [](const std::function<void()> &work) { work(); });
  round(task, guarded);
  std::printf("units: %zu\n", task.units ? task.units : shape.elements);
}

} // namespace

int main(int argc, char **argv) {
  // strlen executes more instructions near the end of a page, and the size of the environment moves
  // the stack. So from here on the stack begins at a page.
  const auto frame = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  static void *volatile unused = alloca(frame % 4096);
  static_cast<void>(unused);
  const bool listing = argc < 3;
  const char *library = argc > 3 ? argv[3] : "cf";
  for (const bench::Operation &operation : bench::operations()) {
    if (operation.library != library)
      continue;
    if (listing)
      std::puts(operation.name.c_str());
    else if (operation.name == argv[1])
      count(operation, bench::shape(argv[2]));
  }
}
