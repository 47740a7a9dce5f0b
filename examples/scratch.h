// scratch: a temporary working directory with a copy of one file, for examples that save.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

/// The working directory for its lifetime. Afterwards the directory is deleted, with all its files.
class scratch_copy {
public:
  explicit scratch_copy(const std::string &fname) : former(std::filesystem::current_path()) {
    std::string pattern = std::filesystem::temp_directory_path() / "cf.XXXXXX";
    if (!mkdtemp(pattern.data()))
      std::abort();
    folder = pattern;
    std::filesystem::copy_file(fname, folder / fname);
    std::filesystem::current_path(folder);
  }
  scratch_copy(const scratch_copy &) = delete;
  scratch_copy &operator=(const scratch_copy &) = delete;
  ~scratch_copy() {
    std::filesystem::current_path(former);
    std::filesystem::remove_all(folder);
  }

private:
  std::filesystem::path former, folder;
};
