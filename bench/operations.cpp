// Operations: what is measured, and the list that benchmark, guard and memory count share.
// SPDX-License-Identifier: MIT
#include "operations.h"

namespace bench {

std::vector<Operation> &operations() {
  static std::vector<Operation> all;
  return all;
}

} // namespace bench
