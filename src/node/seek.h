// Search along one list: its frame, and what hits. Inline, so that each use is a loop of its own
// that tests no more than the criteria it has.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"
#include "node/text.h"

namespace cf {

/// The criterion that a caller gave: an empty text is none.
inline const char *criterion(const char *text) { return given(text) ? text : nullptr; }

/// True if a text meets a criterion; NULL is none.
inline bool meets(const char *text, const char *wanted) { return !wanted || equal(text, wanted); }

/// The frame of all searches: the first node from `it` on that is a hit, else the anchor, which is asked
/// for last because a list has only one. So a hit looks at the type of a node before all else.
template <class Hit> cfnode *seek(cfnode *it, Hit hit) {
  while (!hit(it) && !isanchor(it))
    it = it->next;
  return it;
}

/// The first instance, block of instances or level from `it` on, by its texts.
inline cfnode *seekgrp(cfnode *it, const char *cat, const char *name) {
  return seek(it, [=](const cfnode *nd) {
    if (nd->type != cf_group)
      return false;
    const cfgroup *grp = asgrp(nd);
    return (grp->type == cf_grpcat || grp->type == cf_grpgrp || grp->type == cf_grpinst) &&
           meets(grp->cat, cat) && meets(grp->name, name);
  });
}

/// True for a block of parameters or a level of values with that key.
inline bool isparlevel(const cfnode *nd, const char *key) {
  if (nd->type != cf_group)
    return false;
  const cfgroup *grp = asgrp(nd);
  return (grp->type == cf_grpval || grp->type == cf_grppar) && meets(grp->name, key);
}

/// The first parameter, or block or level of them, from `it` on, by the key.
inline cfnode *seekkey(cfnode *it, const char *key) {
  return seek(it, [=](const cfnode *nd) {
    return nd->type == cf_param ? meets(aspar(nd)->key, key) : isparlevel(nd, key);
  });
}

/// The first block or level of parameters from `it` on, by the key.
inline cfnode *seeklevel(cfnode *it, const char *key) {
  return seek(it, [=](const cfnode *nd) { return isparlevel(nd, key); });
}

/// The first parameter itself from `it` on, by key and value.
inline cfnode *seekval(cfnode *it, const char *key, const char *val) {
  return seek(it, [=](const cfnode *nd) {
    return nd->type == cf_param && meets(aspar(nd)->key, key) && equal(aspar(nd)->val, val);
  });
}

} // namespace cf
