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
  std::memset(end, '\n', line_margin);
  return got > 0;
}

/// Reads on for the end of a line; gives the end of what was read if there is none, or no room for it.
char *block_input::readon() {
  for (;;) {
    const auto seen = end - begin;
    if (!refill())
      return end;
    if (char *found = seek(begin + seen); found != end)
      return found;
  }
}

void block_input::drain() {
  while (!ended && begin != end) { // the line goes on behind what was read
    gobehind();
    findend();
  }
  if (!ended)
    more = !std::feof(fd); // as with fgets(), a stream that recovers is read on
}

} // namespace cf
