// listing: a tree as it is in memory, a line for each element.
// SPDX-License-Identifier: MIT
#pragma once

#include <cf.h>

#include <cstdio>
#include <cstring>

inline const char *kind(const cfgroup *grp) {
  switch (grp->type) {
  case cf_grptop: return "top";
  case cf_grpinst: return "group";
  case cf_grprem: return "block of remarks";
  case cf_grpgrp: return "block that binds them to the group";
  case cf_grppar: return "block that binds them to the parameter";
  default: return "level"; // of a catalog
  }
}

inline void listelement(cfnode *nd, int depth) {
  const auto begin = [=](long row) { std::printf("  %5ld  %*s", row, 2 * depth, ""); };
  if (const cfgroup *grp = cfgrp(nd)) {
    begin(grp->row);
    std::printf("%s%s%s%s%s\n", kind(grp), *grp->cat ? " " : "", grp->cat, *grp->name ? " " : "",
                grp->name);
  } else if (const cfremark *rem = cfrem(nd)) {
    begin(rem->row);
    std::printf("remark: %.40s%s\n", rem->txt, std::strlen(rem->txt) > 40 ? "..." : "");
  } else if (const cfparam *par = cfpar(nd)) {
    begin(par->row);
    std::printf("parameter %s: %s\n", par->key, par->val);
  }
}

//! [walk]
/// Lists all below a group. Every list ends on an anchor, and an anchor knows its group: so the way
/// back needs neither a stack nor recursion, however deep the tree is.
inline void list(cfgroup *top) {
  int depth = 0;
  cfnode *it = cfiterator(top);
  while (!cfend(it) || it->group != top)
    if (cfend(it)) { // of an inner group: on behind it
      it = it->group->link.next;
      --depth;
    } else {
      listelement(it, depth);
      if (cfgroup *grp = cfgrp(it)) {
        it = cfiterator(grp);
        ++depth;
      } else {
        cfnext(&it);
      }
    }
}
//! [walk]
