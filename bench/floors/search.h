// Search: a bare walk along a list that compares texts.
// SPDX-License-Identifier: MIT
#pragma once

#include "floors/records.h"

#include <strings.h>

namespace bench::floors {

/// True if two texts are equal without case. Comparing the first letters saves most of the calls.
inline bool same(const char *one, const char *two) {
  return ((*one ^ *two) & ~0x20) == 0 && strcasecmp(one, two) == 0;
}

/// The first group of a kind in a list whose text is equal to the one given.
inline const cfgroup *seek(const cfgroup *grp, cfgroup_t kind, const char *cfgroup::*field,
                           const char *text) {
  for (const cfnode *nd = grp->elem.next; nd != &grp->elem; nd = nd->next)
    if (nd->type == cf_group && asgrp(nd)->type == kind && same(asgrp(nd)->*field, text))
      return asgrp(nd);
  return nullptr;
}

} // namespace bench::floors
