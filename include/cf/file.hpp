/// @file file.hpp
/// @brief Files: opened, read whole, written, and named.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_FILE_HPP
#define CF_FILE_HPP

#include "calls.hpp"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cf::detail {

/// An open file.
class file {
public:
  explicit file(int descriptor) : fd(descriptor) {}
  file(const file &) = delete;
  file &operator=(const file &) = delete;
  ~file() { close(); }

  bool is_open() const { return fd >= 0; }
  int descriptor() const { return fd; }
  /// Closes the file. False if that fails, as a delayed write may.
  bool close() { return fd < 0 || ::close(std::exchange(fd, -1)) == 0; }

  /// Reads to the end. Gives 0 or the cause of a failure as in errno; EFBIG: more than `most`
  /// bytes.
  int read(std::size_t most, std::string &text) {
    struct stat about {};
    const bool sized = fstat(fd, &about) == 0 && about.st_size > 0;
    std::size_t size = 0;
    text.resize(sized ? std::min(static_cast<std::size_t>(about.st_size), most) + 1 : 4096);
    while (const ssize_t got = ::read(fd, text.data() + size, text.size() - size)) {
      if (got < 0 && errno != EINTR)
        return errno;
      size += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
      if (size > most)
        return EFBIG;
      if (size == text.size())
        text.resize(2 * size);
    }
    text.resize(size);
    return 0;
  }

  /// Writes all of a text. False if that fails.
  bool write(std::string_view text) {
    while (!text.empty()) {
      const ssize_t done = ::write(fd, text.data(), text.size());
      if (done < 0 && errno != EINTR)
        return false;
      text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(done, 0)));
    }
    return true;
  }

private:
  int fd;
};

/// Reads a whole file, as file::read().
inline int load_file(const std::string &path, std::size_t most, std::string &text) {
  if (path.find('\0') != path.npos)
    return EINVAL; // the system would open the file named by the part before it
  file source(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return source.is_open() ? source.read(most, text) : errno;
}

inline void release_text(char *text) noexcept { std::free(text); }

/// The path of the file itself, where symbolic links lead.
inline std::string resolved(const std::string &path) {
  const owned<char, release_text> real(realpath(path.c_str(), nullptr));
  return real ? real.get() : path;
}

/// A path that is valid in every working directory.
inline std::string absolute(const std::string &path) {
  char folder[PATH_MAX];
  if (path.starts_with('/') || !getcwd(folder, sizeof folder))
    return path;
  return joined({folder, "/", path});
}

} // namespace cf::detail

#endif
