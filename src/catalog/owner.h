// Owners: the catalog root and the references to instances, under which all elements are filed.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"

namespace cfcore {

/// The nearest group from `gc` upward that is not of `kind`, the kind of a level, or the uppermost
/// group.
inline cfgroup *owner(cfgroup *gc, cfgroup_t kind) {
  while (gc->type == kind && gc->link.group)
    gc = gc->link.group;
  return gc;
}

/// The target of a reference group; NULL for a group that is no reference.
inline cfgroup *target(const cfgroup *gc) { return ifgrp(gc->link.ref); }

} // namespace cfcore
