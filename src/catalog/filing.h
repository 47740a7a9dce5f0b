// Filing: the reference to an element, and the levels that it needs.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cf {

// Each makes a reference to be filed under the owner `gc`, with the levels that are missing. It is in
// no list yet, but its `group` names the level that it is to be linked into.
cfgroup *_cfcatgrp(cfgroup *gc, cfgroup *grp); ///< to an instance, without what it holds
cfparam *_cfcatpar(cfgroup *gc, cfparam *par); ///< to a parameter

/// Files all instances and parameters below `grp` under the owner `gc`.
void _cfcatelem(cfgroup *gc, cfgroup *grp);

} // namespace cf
