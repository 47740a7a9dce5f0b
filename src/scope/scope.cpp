// Scope strings: where in the application's schema an element stands.
// SPDX-License-Identifier: MIT
#include "scope/scope.h"

#include "node/link.h"

#include <cstring>

namespace cf {
namespace {

unsigned int length(const char *text) { return static_cast<unsigned int>(std::strlen(text)); }

/// The nearest instance from `grp` upward, or NULL if a top group or the end comes first.
const cfgroup *instance(const cfgroup *grp) {
  while (grp && grp->type != cf_grptop && grp->type != cf_grpinst)
    grp = grp->link.group;
  return grp && grp->type == cf_grpinst ? grp : nullptr;
}

/// Writes `text` and `mark` with a terminator to `to`, which may be NULL. Gives their length.
unsigned int put(char *to, const char *text, const char *mark) {
  const unsigned int texts = length(text);
  const unsigned int marks = length(mark);
  if (to) {
    std::memcpy(to, text, texts);
    std::memcpy(to + texts, mark, marks + 1);
  }
  return texts + marks;
}

unsigned int grpscope(char *sbf, const cfgroup *grp) {
  grp = instance(grp);
  if (!grp)
    return put(sbf, "", "::") + 1;
  unsigned int n = _grpscope(sbf, grp->link.group);
  n += put(sbf ? sbf + n : nullptr, grp->name, ".");
  if (*grp->cat)
    n += put(sbf ? sbf + n : nullptr, grp->cat, "::");
  return n + 1;
}

unsigned int parscope(char *scbf, const cfparam *par) {
  const unsigned int n = _grpscope(scbf, par->link.group);
  return n + put(scbf ? scbf + n : nullptr, par->key, "") + 1;
}

} // namespace

unsigned int _grpscope(char *sbf, const cfgroup *grp) {
  // Climbed twice: for the length, and to fill in the path's names from its right end.
  unsigned int path = 0;
  const cfgroup *first = instance(grp);
  for (; first && !*first->cat; first = instance(first->link.group))
    path += length(first->name) + 1;
  const unsigned int n = put(sbf, first ? first->cat : "", "::") + path;
  if (!sbf)
    return n;
  char *at = sbf + n;
  *at = '\0';
  for (const cfgroup *it = instance(grp); it != first; it = instance(it->link.group)) {
    const unsigned int name = length(it->name);
    *--at = '.';
    at -= name;
    std::memcpy(at, it->name, name);
  }
  return n;
}

unsigned int genscope(char *scbf, cfnode *nd) {
  switch (nd->type) {
  case cf_group: return grpscope(scbf, asgrp(nd));
  case cf_remark: return grpscope(scbf, nd->group);
  case cf_param: return parscope(scbf, aspar(nd));
  default: return 0;
  }
}

} // namespace cf
