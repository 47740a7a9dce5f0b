// The depth: reads groups that are nested in each other and releases them. The process ends with
// status 0 if the library survives that, with SIGABRT if it refuses the text, and with SIGSEGV if
// it runs out of stack. Use: cf_bench_depth LIBRARY DEPTH; without arguments it lists the
// libraries.
// SPDX-License-Identifier: MIT
#include "operations.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view ours = "cf-arena";       // reads as cf does
constexpr std::string_view no_nesting = "inih";     // its sections do not nest
constexpr std::string_view declared = "libconfuse"; // the program declares each level

bool nests(const bench::Operation &operation) {
  return operation.name == "ReadMemory" && operation.library != ours &&
         operation.library != no_nesting && operation.library != declared;
}

void read(const bench::Operation &operation, const char *depth) {
  const bench::Shape &shape = bench::shape(std::string("chain:") + depth);
  const bench::Task task = operation.make(shape);
  task.work();
  task.clear();
}

} // namespace

int main(int argc, char **argv) {
  for (const bench::Operation &operation : bench::operations())
    if (nests(operation)) {
      if (argc < 3)
        std::puts(operation.library.c_str());
      else if (operation.library == argv[1])
        read(operation, argv[2]);
    }
}
