// Default wmsg: a line to standard error. It is alone in its file, so that the linker leaves it out
// when a program defines wmsg itself.
// SPDX-License-Identifier: MIT
#include "platform/stderr_line.h"

#include "cf.h"

__attribute__((weak)) void wmsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  cfcore::stderr_line(fmt, args);
  va_end(args);
}
