// Deletion: elements with all they own, last child first, children before their group.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <exception>

namespace cfcore {

/// One deletion. It is completed even if the manager throws: the first exception is kept, and
/// finish() throws it. Without finish() the exception is dropped.
class deletion {
public:
  void delete_element(cfnode *nd) noexcept;    ///< with all it holds
  void delete_contents(cfgroup *top) noexcept; ///< all that is in a group
  void finish() {
    if (thrown)
      std::rethrow_exception(thrown);
  }

private:
  std::exception_ptr thrown;

  void release_element(cfnode *nd) noexcept;
  void release_block(void *block) noexcept;
};

} // namespace cfcore
