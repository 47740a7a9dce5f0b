// Scope strings: the place of an element in the application's schema.
// SPDX-License-Identifier: MIT
#include "scope/scope.h"

#include "node/link.h"

#include <climits>
#include <cstring>
#include <string_view>

namespace cfcore {
namespace {

/// Writes a part of a scope string, with a terminator, unless `to` is NULL. Gives its length
/// without the terminator.
size_t putscope(char *to, std::string_view text, std::string_view separator) {
  if (to) {
    to += text.copy(to, text.size());
    to += separator.copy(to, separator.size());
    *to = '\0';
  }
  return text.size() + separator.size();
}

/// The nearest instance from `grp` upward, or NULL if a top group or the end comes first.
const cfgroup *instance(const cfgroup *grp) {
  while (grp && grp->type != cf_grptop && grp->type != cf_grpinst)
    grp = grp->link.group;
  return grp && grp->type == cf_grpinst ? grp : nullptr;
}

// These two give the size *with* the terminator, as genscope() does.

size_t grpscope(char *sbf, const cfgroup *grp) {
  grp = instance(grp);
  if (!grp)
    return putscope(sbf, "", "::") + 1;
  size_t n = _grpscope(sbf, grp->link.group);
  n += putscope(sbf ? sbf + n : nullptr, grp->name, ".");
  if (*grp->cat)
    n += putscope(sbf ? sbf + n : nullptr, grp->cat, "::");
  return n + 1;
}

size_t parscope(char *scbf, const cfparam *par) {
  const size_t n = _grpscope(scbf, par->link.group);
  return n + putscope(scbf ? scbf + n : nullptr, par->key, "") + 1;
}

size_t scope(char *scbf, const cfnode *nd) {
  switch (nd->type) {
  case cf_group: return grpscope(scbf, asgrp(nd));
  case cf_remark: return grpscope(scbf, nd->group);
  case cf_param: return parscope(scbf, aspar(nd));
  default: return 0;
  }
}

} // namespace

size_t _grpscope(char *sbf, const cfgroup *grp) {
  // Climbs twice: for the length, and to write the names of the path from its right end.
  size_t path = 0;
  const cfgroup *first = instance(grp);
  for (; first && !*first->cat; first = instance(first->link.group))
    path += std::strlen(first->name) + 1;
  const size_t n = putscope(sbf, first ? first->cat : "", "::") + path;
  if (!sbf)
    return n;
  char *at = sbf + n;
  *at = '\0';
  for (const cfgroup *it = instance(grp); it != first; it = instance(it->link.group)) {
    const size_t length = std::strlen(it->name);
    *--at = '.';
    at -= length;
    std::memcpy(at, it->name, length);
  }
  return n;
}

unsigned int genscope(char *scbf, cfnode *nd) {
  const size_t size = scope(nullptr, nd);
  if (size > UINT_MAX)
    return 0; // more than the slot's type can hold
  if (scbf)
    scope(scbf, nd);
  return static_cast<unsigned int>(size);
}

} // namespace cfcore
