// Writer: gathers texts in a buffer on their way to a stream.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstring>
#include <string_view>

namespace cfcore {

/// Gathers texts and writes them in few large pieces, the last of them in flush(). After a failed
/// write it writes nothing more.
class writer {
public:
  explicit writer(std::FILE *stream) : fd(stream) {}

  void put(std::string_view text) {
    total += text.size();
    if (text.size() > sizeof buf - used) {
      flush();
      if (text.size() > sizeof buf)
        return write(text);
    }
    std::memcpy(buf + used, text.data(), text.size());
    used += text.size();
  }

  void blanks(size_t count) {
    static constexpr std::string_view run = "                                "
                                            "                                ";
    for (; count > run.size(); count -= run.size())
      put(run);
    put(run.substr(0, count));
  }

  /// Writes what was gathered. False if this or an earlier write failed.
  bool flush() {
    write({buf, used});
    used = 0;
    return good;
  }

  bool ok() const { return good; }
  size_t count() const { return total; } ///< bytes put so far, written or not

private:
  std::FILE *fd;
  bool good = true;
  size_t used = 0;
  size_t total = 0;
  char buf[4096];

  /// fwrite() may return the full count although the stream failed to flush its own buffer; then
  /// only the stream's error indicator shows the failure. If it was set before, it shows nothing.
  void write(std::string_view text) {
    if (!good || text.empty())
      return;
    const bool failed_before = std::ferror(fd);
    good = std::fwrite(text.data(), 1, text.size(), fd) == text.size() &&
           (failed_before || !std::ferror(fd));
  }
};

} // namespace cfcore
