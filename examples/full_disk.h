// full_disk: a disk that is full, for trying what happens then.
// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <cstdio>
#include <sys/resource.h>

/// While it lives no file of the process grows past a few bytes.
class full_disk {
public:
  full_disk() {
    std::fflush(stdout);           // what was written before gets out
    std::signal(SIGXFSZ, SIG_IGN); // a write shall fail, and not kill
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
