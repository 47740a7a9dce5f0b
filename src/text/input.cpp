// Input: how direct_input fills its buffer, and skips overlong lines.
// SPDX-License-Identifier: MIT
#include "text/input.h"

namespace cfcore {

void direct_input::drain() {
  char *newline = nullptr;
  do {
    newline = advance();
    terminate(lineend(newline));
  } while (newline == end && begin != end); // until the newline, or until nothing more is read
  if (newline == end)
    more = !std::feof(fd); // after an error the stream is read again, as by slot_input
}

/// Reads until the current line's newline is there. Gives it, or `end` if the stream ends before it
/// or the line fills the buffer.
char *direct_input::completeline() {
  for (;;) {
    const auto searched = end - begin;
    if (!refill())
      return end;
    if (char *newline = find(begin + searched); newline != end)
      return newline;
  }
}

/// Moves the current line to the front of the buffer and reads more after it. False if nothing
/// came: the stream has no more, or the line fills the buffer.
bool direct_input::refill() {
  if (!more)
    return false;
  const auto length = static_cast<size_t>(end - begin);
  const size_t room = capacity - length;
  std::memmove(buf, begin, length);
  const size_t got = std::fread(buf + length, 1, room, fd);
  more = got == room;
  begin = buf;
  end = buf + length + got;
  std::memset(end, '\n', line_margin);
  return got > 0;
}

} // namespace cfcore
