// Filing: where the reference to an element goes, with the levels that it needs.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cf {

/// The name level for an instance under the owner `gc`, made if there is none, with its category
/// level.
cfgroup *namelevel(cfgroup *gc, const cfgroup *grp);

/// The value level for a parameter under the owner `gc`, made if there is none.
cfgroup *valuelevel(cfgroup *gc, const cfparam *par);

/// Files all instances and parameters below `grp` under the owner `gc`.
void _cfcatelem(cfgroup *gc, cfgroup *grp);

} // namespace cf
