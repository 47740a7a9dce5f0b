// Input: the lines of a stream, in large pieces.
// SPDX-License-Identifier: MIT
#include "text/input.h"

#include <cstring>

namespace cf {

/// Moves what is left to the front and reads behind it. False if nothing came.
bool block_input::refill() {
  const auto left = static_cast<size_t>(end - begin);
  std::memmove(buf, begin, left);
  begin = buf;
  const size_t room = block - left;
  const size_t got = more ? std::fread(buf + left, 1, room, fd) : 0;
  more = got == room;
  end = buf + left + got;
  *end = '\0';
  return got > 0;
}

/// Finds where the line that begins at `begin` ends, reading on as far as a line may reach. Gives its
/// length without the line end.
size_t block_input::findend() {
  const char *found = nullptr;
  size_t seen = 0;
  do {
    const auto there = static_cast<size_t>(end - begin);
    found = static_cast<const char *>(std::memchr(begin + seen, '\n', there - seen));
    seen = there;
  } while (!found && seen < line_limit && refill());
  ended = found;
  const size_t length = found ? static_cast<size_t>(found - begin) : seen;
  after = begin + length + ended;
  held = *after;
  return length;
}

fetched block_input::next() {
  *after = held;
  begin = after;
  const size_t length = findend();
  if (length >= line_limit) {
    begin[line_limit] = '\0';
    return fetched::overflow;
  }
  *after = '\0';
  // As with fgets(), what a failing stream gave of a line is no line.
  if (!ended && (length == 0 || !std::feof(fd)))
    return fetched::end;
  return fetched::line;
}

void block_input::drain() {
  while (!ended && begin != end) { // the line goes on behind what was read
    begin = end;
    findend();
  }
}

} // namespace cf
