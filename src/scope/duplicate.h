// Duplicates: whether a symbol stands twice in one instance.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cf {

// True if the like of an element stands ahead of it in the instance that encloses it.
bool isrepeated(cfparam *par);
bool isrepeated(cfgroup *grp);

} // namespace cf
