// Default fail: a line to standard error, then abort. It is alone in its file, so that the linker
// leaves it out when a program defines fail itself.
// SPDX-License-Identifier: MIT
#include "cf.h"

#include <cstdio>
#include <cstdlib>

__attribute__((weak)) void fail(const char *msg) {
  static_cast<void>(std::fprintf(stderr, "%s\n", msg)); // there is nowhere to report a failure
  std::abort();
}
