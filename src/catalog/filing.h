// Filing: the reference to an element, and the levels that it needs.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/index.h"

namespace cfcore {

/// A new reference, which is in no list yet, and the level that it is to be linked into.
template <class Element> struct filing {
  Element *ref;
  cfgroup *level;
};

// Each makes a reference to an element, and the levels that are missing for it under the owner of
// the search. What a group holds is not filed.
filing<cfgroup> _cfcatgrp(searches &search, cfgroup *grp);
filing<cfparam> _cfcatpar(searches &search, cfparam *par);

/// Files all instances and parameters below `grp` under the owner `gc`.
void _cfcatelem(cfgroup *gc, cfgroup *grp);

} // namespace cfcore
