// Input: the lines of a stream, one at a time. node/slots.h describes the direct and the slot path.
// SPDX-License-Identifier: MIT
#pragma once

#include <cassert>
#include <cstdio>
#include <cstring>

namespace cfcore {

/// The longest line that can be read, in bytes with its newline.
inline constexpr size_t line_limit = 4095;

/// So many bytes may be read from the terminator of a direct_input's line on. A loop over the line
/// can then read several bytes at once.
inline constexpr size_t line_margin = 8;

/// What next() of an input found.
enum class fetched {
  line,     ///< row() is the line
  overflow, ///< a line above the limit; row() is its beginning
  end       ///< no line is left
};

/// Input of the direct path: reads many lines at once and terminates each of them where it is in
/// the buffer. It gives the same lines as slot_input, without a call of the C library for each.
class direct_input {
public:
  explicit direct_input(std::FILE *stream) : fd(stream), more(!std::feof(stream)) {
    std::memset(buf, '\n', line_margin);
    terminate(buf);
  }

  /// The current line, with its newline and a terminator. Valid until the next call.
  const char *row() const { return begin; }

  /// Goes to the next line.
  fetched next() {
    char *newline = advance();
    if (static_cast<size_t>(newline - begin) >= line_limit) {
      terminate(begin + line_limit);
      return fetched::overflow;
    }
    terminate(lineend(newline));
    // At the end of the file a line may lack its newline. If a read error cuts a line off, what was
    // read of it is dropped.
    if (newline == end && (begin == end || !std::feof(fd)))
      return fetched::end;
    return fetched::line;
  }

  /// Skips the rest of a line that overflowed.
  void drain();

private:
  static constexpr size_t capacity = 16384;

  // The buffer between two calls:
  //
  //   buf              begin               after            end
  //   | lines returned | current line ...\n | bytes to come | \n * line_margin |
  //                                         ^
  //                                         '\0', in place of the byte in `held`
  //
  // The newlines from `end` on let every search find one. If `after` is `end`, the terminator takes
  // the place of the first of them until advance() puts it back.
  std::FILE *fd;
  bool more;         // the stream may have more: it met neither its end nor an error
  char held = '\n';  // the byte that belongs at `after`
  char *begin = buf; // the current line
  char *after = buf; // the byte after the current line
  char *end = buf;   // the end of what was read
  char buf[capacity + line_margin];

  void terminate(char *at) {
    after = at;
    held = *at;
    *at = '\0';
  }

  /// The byte after the line that ends with `newline`, which is `end` if the line has none.
  char *lineend(char *newline) const { return newline == end ? end : newline + 1; }

  /// The first newline from `from` on, or `end` if none was read.
  char *find(char *from) const {
    return static_cast<char *>(std::memchr(from, '\n', static_cast<size_t>(end + 1 - from)));
  }

  /// Begins a line at `after`. Gives its newline, or `end` if the buffer or the stream ends before
  /// it.
  char *advance() {
    assert(buf <= begin && begin <= after && after <= end && end <= buf + capacity);
    assert(*after == '\0' && (after < end || held == '\n'));
    *after = held;
    begin = after;
    // The first byte was stored just now, and a search by larger pieces would wait until that store
    // reaches the cache. So it is compared alone, and the search begins after it.
    char *newline = *begin == '\n' ? begin : find(begin + 1);
    return newline != end ? newline : completeline();
  }

  char *completeline();
  bool refill();
};

/// Input of the slot path: reads one line with each call, as slots may use the stream themselves.
class slot_input {
public:
  explicit slot_input(std::FILE *stream) : fd(stream) {}

  const char *row() const { return buf; }

  fetched next() {
    buf[line_limit] = 1; // fgets() writes here only if it fills the buffer
    if (!std::fgets(buf, sizeof buf, fd))
      return fetched::end;
    if (buf[line_limit] == '\0' && buf[line_limit - 1] != '\n' && !std::feof(fd))
      return fetched::overflow;
    return fetched::line;
  }

  void drain() {
    int c = 0;
    do
      c = std::fgetc(fd);
    while (c >= 0 && c != '\n');
  }

private:
  std::FILE *fd;
  char buf[line_limit + 1];
};

} // namespace cfcore
