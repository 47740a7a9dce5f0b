// Links: the list operations on which everything else is built.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstddef>
#include <type_traits>

namespace cfcore {

// An element and its `link` have the same address.
static_assert(std::is_standard_layout_v<cfgroup> && offsetof(cfgroup, link) == 0);
static_assert(std::is_standard_layout_v<cfremark> && offsetof(cfremark, link) == 0);
static_assert(std::is_standard_layout_v<cfparam> && offsetof(cfparam, link) == 0);

// Conversions of a node to its element. They do not test the type.
inline cfgroup *asgrp(cfnode *nd) { return reinterpret_cast<cfgroup *>(nd); }
inline cfremark *asrem(cfnode *nd) { return reinterpret_cast<cfremark *>(nd); }
inline cfparam *aspar(cfnode *nd) { return reinterpret_cast<cfparam *>(nd); }
inline const cfgroup *asgrp(const cfnode *nd) { return reinterpret_cast<const cfgroup *>(nd); }
inline const cfremark *asrem(const cfnode *nd) { return reinterpret_cast<const cfremark *>(nd); }
inline const cfparam *aspar(const cfnode *nd) { return reinterpret_cast<const cfparam *>(nd); }

inline bool isanchor(const cfnode *nd) { return nd->type == cf_anchor; }

// The node as an element of that type; NULL if it is NULL or something else.
inline cfgroup *ifgrp(cfnode *nd) { return nd && nd->type == cf_group ? asgrp(nd) : nullptr; }
inline cfparam *ifpar(cfnode *nd) { return nd && nd->type == cf_param ? aspar(nd) : nullptr; }

inline void init(cfnode *nd, cfnode_t type, cfgroup *pgrp, cfnode *ref) {
  nd->prev = nd->next = type == cf_anchor ? nd : nullptr;
  nd->group = pgrp;
  nd->ref = ref;
  nd->type = type;
}

/// Takes `nd` out of its list. Its links become NULL, so taking it out again does nothing.
inline void takeout(cfnode *nd) {
  if (nd->prev)
    nd->prev->next = nd->next;
  if (nd->next)
    nd->next->prev = nd->prev;
  nd->prev = nd->next = nullptr;
  nd->group = nullptr;
}

/// Puts `nd`, which is in no list, before `it`, which is in one.
inline void putbefore(cfnode *it, cfnode *nd) {
  nd->prev = it->prev;
  nd->next = it;
  nd->group = it->group;
  it->prev->next = nd;
  it->prev = nd;
}

/// Puts `nd`, which is in no list, at the end of `grp`.
inline void putlast(cfgroup *grp, cfnode *nd) { putbefore(&grp->elem, nd); }

/// Moves `nd` before `it`, another node. If `it` is in no list, `nd` is in none afterwards.
inline void movebefore(cfnode *it, cfnode *nd) {
  takeout(nd);
  if (it->prev)
    putbefore(it, nd);
}

/// Moves `nd` to the end of `grp`.
inline void movelast(cfgroup *grp, cfnode *nd) { movebefore(&grp->elem, nd); }

} // namespace cfcore
