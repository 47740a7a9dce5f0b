// Deletion: elements with all they own, last child first, children before their group.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <exception>

namespace cf {

/// One deletion, which always comes to its end: an exception of the manager is kept on the way and
/// leaves at finish(), or is dropped where another is on its way already.
class removal {
public:
  void of(cfnode *nd) noexcept;      ///< an element with all it holds
  void below(cfgroup *top) noexcept; ///< all that a group holds
  void finish() {
    if (thrown)
      std::rethrow_exception(thrown);
  }

private:
  std::exception_ptr thrown;

  void one(cfnode *nd) noexcept;
  void giveback(void *block) noexcept;
};

} // namespace cf
