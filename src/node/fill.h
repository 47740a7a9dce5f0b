// Slots: what stands in for one that the application left NULL.
// SPDX-License-Identifier: MIT
#pragma once

namespace cf {

template <class Slot> void fill(Slot &slot, Slot dfl) {
  if (!slot)
    slot = dfl;
}

} // namespace cf
