// Filing: the reference to an element, and the levels that it needs.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/index.h"

namespace cfcore {

/// A new reference, which is in no list yet, and the level that it is to be linked into.
template <class Element> struct filed {
  Element *ref;
  cfgroup *level;
};

// Each makes a reference to be filed under the owner of the search, and the levels that are
// missing.
filed<cfgroup> _cfcatgrp(searches &search, cfgroup *grp); ///< without what `grp` holds
filed<cfparam> _cfcatpar(searches &search, cfparam *par);

/// Files all instances and parameters below `grp` under the owner `gc`.
void _cfcatelem(cfgroup *gc, cfgroup *grp);

} // namespace cfcore
