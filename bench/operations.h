// Operations: what is measured, and the list that benchmark, guard and memory count share.
// SPDX-License-Identifier: MIT
#pragma once

#include "shapes.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One operation on one shape, ready to run as often as wanted. Only `work` is measured.
struct Task {
  std::function<void()> work;
  std::function<void()> prepare = {}; // makes what each call of `work` uses up
  std::function<void()> clear = {};   // deletes what `work` made
  std::size_t units = 0;              // look-ups or edits in `work`; 0: one for each element
};

struct Operation {
  std::string name;
  std::string library; // "cf", "floor", or a peer
  std::function<Task(const Shape &)> make;
  bool scales = false; // also measured on the shapes scale:N
};

std::vector<Operation> &operations();

/// For static registration.
inline bool add(Operation operation) {
  operations().push_back(std::move(operation));
  return true;
}

} // namespace bench
