// Default fail: message, then abort. Alone in its file, so that an application's own displaces it.
// SPDX-License-Identifier: MIT
#include "cf.h"

#include <cstdio>
#include <cstdlib>

__attribute__((weak)) void fail(const char *msg) {
  static_cast<void>(std::fprintf(stderr, "%s\n", msg)); // its own failure could be told nowhere
  std::abort();
}
