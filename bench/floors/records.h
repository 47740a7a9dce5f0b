// Records: the fewest steps that make and link an element.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace bench::floors {

constexpr std::size_t value_size = 16; // after the record of a parameter

inline const cfgroup *asgrp(const cfnode *nd) { return reinterpret_cast<const cfgroup *>(nd); }
inline const cfparam *aspar(const cfnode *nd) { return reinterpret_cast<const cfparam *>(nd); }
inline const cfremark *asrem(const cfnode *nd) { return reinterpret_cast<const cfremark *>(nd); }
inline cfgroup *asgrp(cfnode *nd) { return reinterpret_cast<cfgroup *>(nd); }
inline cfparam *aspar(cfnode *nd) { return reinterpret_cast<cfparam *>(nd); }
inline cfremark *asrem(cfnode *nd) { return reinterpret_cast<cfremark *>(nd); }

inline char *put(char *at, std::string_view text) {
  std::memcpy(at, text.data(), text.size());
  at[text.size()] = '\0';
  return at + text.size() + 1;
}

inline void link(cfgroup *grp, cfnode *nd) {
  cfnode *anchor = &grp->elem;
  nd->group = grp;
  nd->prev = anchor->prev;
  nd->next = anchor;
  anchor->prev->next = nd;
  anchor->prev = nd;
}

using Allocate = void *(*)(std::size_t);

/// Makes the list of a group empty, and gives the group.
inline cfgroup *emptied(cfgroup *grp) {
  grp->elem = {&grp->elem, &grp->elem, grp, nullptr, cf_anchor};
  return grp;
}

template <Allocate allocate>
cfgroup *group(std::string_view cat, std::string_view name, cfgroup_t type, long row) {
  auto *grp = static_cast<cfgroup *>(allocate(sizeof(cfgroup) + cat.size() + name.size() + 2));
  char *text = reinterpret_cast<char *>(grp + 1);
  *grp = {{nullptr, nullptr, nullptr, nullptr, cf_group}, row, text, nullptr, type, {}};
  grp->name = text = put(text, cat);
  put(text, name);
  return emptied(grp);
}

template <Allocate allocate> cfremark *remark(std::string_view txt, long row) {
  auto *rem = static_cast<cfremark *>(allocate(sizeof(cfremark) + txt.size() + 1));
  char *text = reinterpret_cast<char *>(rem + 1);
  *rem = {{nullptr, nullptr, nullptr, nullptr, cf_remark}, row, text};
  put(text, txt);
  return rem;
}

template <Allocate allocate> cfparam *param(std::string_view key, std::string_view val, long row) {
  auto *par =
      static_cast<cfparam *>(allocate(sizeof(cfparam) + value_size + key.size() + val.size() + 2));
  char *text = reinterpret_cast<char *>(par + 1) + value_size;
  *par = {{nullptr, nullptr, nullptr, nullptr, cf_param}, row, text, nullptr, nullptr, nullptr};
  par->val = text = put(text, key);
  put(text, val);
  return par;
}

} // namespace bench::floors
