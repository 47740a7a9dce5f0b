// scratch: a working directory that is gone, with all in it, when the program leaves it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

class scratch_folder {
public:
  scratch_folder() : former(std::filesystem::current_path()) {
    std::string pattern = std::filesystem::temp_directory_path() / "cf.XXXXXX";
    if (!mkdtemp(pattern.data()))
      std::abort();
    folder = pattern;
    std::filesystem::current_path(folder);
  }
  scratch_folder(const scratch_folder &) = delete;
  scratch_folder &operator=(const scratch_folder &) = delete;
  ~scratch_folder() {
    std::filesystem::current_path(former);
    std::filesystem::remove_all(folder);
  }

private:
  std::filesystem::path former, folder;
};
