// The default destination of messages: each is one line on standard error.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <cstdio>

namespace cfcore {

/// Writes a message and its newline in one piece, so that the lines of two threads or processes do
/// not mix. A message longer than the buffer takes several writes, under the lock of the stream.
__attribute__((format(printf, 1, 0))) inline void stderr_line(const char *fmt, va_list args) {
  // Failures are ignored: there is nowhere to report them.
  char line[1024];
  va_list again;
  va_copy(again, args);
  const int length = std::vsnprintf(line, sizeof line, fmt, args);
  flockfile(stderr);
  if (length >= 0 && static_cast<size_t>(length) < sizeof line) {
    line[length] = '\n';
    static_cast<void>(std::fwrite(line, 1, static_cast<size_t>(length) + 1, stderr));
  } else {
    static_cast<void>(std::vfprintf(stderr, fmt, again));
    static_cast<void>(std::fputc('\n', stderr));
  }
  funlockfile(stderr);
  va_end(again);
}

} // namespace cfcore
