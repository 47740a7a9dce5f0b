// Owners: the catalog root and the references to instances, under which everything is filed.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"

namespace cf {

/// The climb: from a level of kind `level` up to the group that it lies under.
inline cfgroup *owner(cfgroup *gc, cfgroup_t level) {
  while (gc->type == level && gc->link.group)
    gc = gc->link.group;
  return gc;
}

/// The group that `gc` stands for, one step down; NULL if `gc` is no reference.
inline cfgroup *standsfor(const cfgroup *gc) { return ifgrp(gc->link.ref); }

} // namespace cf
