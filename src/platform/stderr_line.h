// Where the default messages end up: standard error, a line each.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <cstdio>

namespace cf {

__attribute__((format(printf, 1, 0))) inline void stderr_line(const char *fmt, va_list args) {
  // A failure of standard error could be told nowhere.
  static_cast<void>(std::vfprintf(stderr, fmt, args));
  static_cast<void>(std::fputc('\n', stderr));
}

} // namespace cf
