// Search along one list: the loop, and what counts as a hit. Inline, so that each use becomes a
// loop of its own with only the tests that it needs.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"
#include "node/text.h"

namespace cfcore {

/// The criterion that a caller gave, or NULL if it gave NULL or the empty text.
inline const char *criterion(const char *text) { return given(text) ? text : nullptr; }

/// True if a text meets a criterion, which may be NULL for none.
inline bool meets(const char *text, const char *wanted) { return !wanted || equal(text, wanted); }

/// The first node from `it` on that is a hit, or the anchor. `hit` is called for the anchor too and
/// must refuse it.
template <class Hit> cfnode *seek(cfnode *it, Hit hit) {
  while (!hit(it) && !isanchor(it))
    it = it->next;
  return it;
}

/// Hit of a search for groups: an instance, a block that holds one, or a level of instances, by its
/// texts.
struct group_hit {
  const char *cat;
  const char *name;

  bool operator()(const cfnode *nd) const {
    if (nd->type != cf_group)
      return false;
    const cfgroup *grp = asgrp(nd);
    return (grp->type == cf_grpcat || grp->type == cf_grpgrp || grp->type == cf_grpinst) &&
           meets(grp->cat, cat) && meets(grp->name, name);
  }
};

/// Hit of a search for a block or level of parameters, by the key.
struct level_hit {
  const char *key;

  bool operator()(const cfnode *nd) const {
    if (nd->type != cf_group)
      return false;
    const cfgroup *grp = asgrp(nd);
    return (grp->type == cf_grpval || grp->type == cf_grppar) && meets(grp->name, key);
  }
};

/// Hit of a search for a parameter, or block or level of them, by the key.
struct key_hit {
  const char *key;

  bool operator()(const cfnode *nd) const {
    return nd->type == cf_param ? meets(aspar(nd)->key, key) : level_hit{key}(nd);
  }
};

/// Hit of a search for a parameter itself, by key and value.
struct value_hit {
  const char *key;
  const char *val;

  bool operator()(const cfnode *nd) const {
    return nd->type == cf_param && meets(aspar(nd)->key, key) && equal(aspar(nd)->val, val);
  }
};

// The searches: the first hit from `it` on, else the anchor. Any text meets a criterion of NULL;
// only the value must not be NULL.

inline cfnode *seekgrp(cfnode *it, const char *cat, const char *name) {
  return seek(it, group_hit{cat, name});
}
inline cfnode *seekkey(cfnode *it, const char *key) { return seek(it, key_hit{key}); }
inline cfnode *seeklevel(cfnode *it, const char *key) { return seek(it, level_hit{key}); }
inline cfnode *seekval(cfnode *it, const char *key, const char *val) {
  return seek(it, value_hit{key, val});
}

} // namespace cfcore
