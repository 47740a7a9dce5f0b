// Default wmsg: a line to standard error. Alone in its file, so that an application's displaces it.
// SPDX-License-Identifier: MIT
#include "platform/stderr_line.h"

#include "cf.h"

__attribute__((weak)) void wmsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  cf::stderr_line(fmt, args);
  va_end(args);
}
