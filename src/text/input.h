// Input: the lines of a stream, one at a time, as they are or in large pieces.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstring>

namespace cf {

/// Bytes of a line with its line end that can be read.
inline constexpr size_t line_limit = 4095;

/// Bytes from the terminator of a line on that can be read, for looks at several at once.
inline constexpr size_t line_margin = 8;

enum class fetched { line, overflow, end };

/// Takes a line with each call and leaves the stream behind it, for slots that look at the stream.
class line_input {
public:
  explicit line_input(std::FILE *stream) : fd(stream) {}
  const char *row() const { return buf; }

  fetched next() {
    buf[line_limit] = 1; // fgets() writes here only if it fills the buffer
    if (!std::fgets(buf, sizeof buf, fd))
      return fetched::end;
    if (buf[line_limit] == '\0' && buf[line_limit - 1] != '\n' && !std::feof(fd))
      return fetched::overflow;
    return fetched::line;
  }

  /// Reads on to the end of a line that overflowed.
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

/// Takes blocks and splits them: the same lines without the cost of a call for each, which is a quarter
/// of reading. The stream is ahead of the line, which has a margin. What each line needs stands inline,
/// and only what a block needs apart.
class block_input {
public:
  explicit block_input(std::FILE *stream) : fd(stream) {}
  const char *row() const { return begin; }

  fetched next() {
    gobehind();
    const auto length = static_cast<size_t>(findend() - begin);
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
  void drain();

private:
  static constexpr size_t block = 16384;

  std::FILE *fd;
  bool more = true;   // the stream may have more
  bool ended = false; // the line has its line end
  char held = '\n';   // the byte behind the line, where its terminator stands
  char buf[block + line_margin];
  char *begin = buf; // of the line
  char *after = buf; // behind the line
  char *end = buf;   // of what was read; a line end stands there, so that each search finds one,
                     // but while the last line's terminator takes its place, until gobehind()

  bool refill();
  char *readon();

  void gobehind() {
    *after = held;
    begin = after;
  }

  char *seek(char *from) {
    return static_cast<char *>(std::memchr(from, '\n', static_cast<size_t>(end + 1 - from)));
  }

  /// Finds where the line ends, without its line end. The first byte, which was put back just now, is
  /// looked at alone: a search by larger pieces would wait for it to reach the cache, a tenth of reading.
  char *findend() {
    char *found = *begin == '\n' ? begin : seek(begin + 1);
    if (found == end)
      found = readon();
    ended = found != end;
    after = found + ended;
    held = *after;
    return found;
  }
};

} // namespace cf
