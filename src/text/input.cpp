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
  end = buf + left + got;
  if (got < room)
    more = false;
  return got > 0;
}

/// The line end of what begins at `begin`, reading on as far as a line may reach; NULL if none came.
char *block_input::newline() {
  char *from = begin;
  for (;;) {
    const auto length = static_cast<size_t>(end - from);
    if (auto *found = static_cast<char *>(std::memchr(from, '\n', length)))
      return found;
    const auto seen = end - begin;
    if (static_cast<size_t>(seen) >= line_limit || !refill())
      return nullptr;
    from = begin + seen;
  }
}

fetched block_input::next() {
  *after = held;
  begin = after;
  char *last = newline();
  const auto length = static_cast<size_t>((last ? last : end) - begin);
  ended = last;
  after = last ? last + 1 : end;
  held = *after;
  *after = '\0';
  if (length >= line_limit) {
    begin[line_limit] = '\0';
    return fetched::overflow;
  }
  // As with fgets(), what a failing stream gave of a line is no line.
  if (!last && (length == 0 || (!failed && std::ferror(fd))))
    return fetched::end;
  return fetched::line;
}

void block_input::drain() {
  while (!ended) { // the line goes on behind what was read
    begin = end;
    const bool came = refill();
    after = begin;
    held = '\0';
    if (!came)
      return;
    auto *last = static_cast<char *>(std::memchr(begin, '\n', static_cast<size_t>(end - begin)));
    ended = last;
    after = last ? last + 1 : end;
    held = *after;
  }
}

} // namespace cf
