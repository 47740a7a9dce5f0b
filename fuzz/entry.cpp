// entry: where the fuzzer calls the target.
// SPDX-License-Identifier: MIT
#include "oracles.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::TARGET({reinterpret_cast<const char *>(data), size});
  return 0;
}
