// full_disk: a disk that is full, for examples that save.
// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <iostream>
#include <sys/resource.h>

/// During its lifetime no file of the process can grow beyond a few bytes.
class full_disk {
public:
  full_disk() {
    std::cout.flush();             // standard output may be a file too
    std::signal(SIGXFSZ, SIG_IGN); // a write fails instead of ending the process
    getrlimit(RLIMIT_FSIZE, &former);
    const rlimit tiny{16, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tiny);
  }
  full_disk(const full_disk &) = delete;
  full_disk &operator=(const full_disk &) = delete;
  ~full_disk() { setrlimit(RLIMIT_FSIZE, &former); }

private:
  rlimit former{};
};
