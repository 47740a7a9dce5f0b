// Verification: a floor counts only if it does the same as the library.
// SPDX-License-Identifier: MIT
#pragma once

#include "shapes.h"

namespace bench {

/// Ends the program with a message if a floor's result on a shape is not the library's.
void verify(const Shape &shape);

} // namespace bench
