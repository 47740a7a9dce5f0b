// Floors of copying, comparing and deleting: one walk each.
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "floors/records.h"

#include <strings.h>

namespace bench::floors {
namespace {

cfnode *copynode(const cfnode *nd) {
  switch (nd->type) {
  case cf_group: return &copy(asgrp(nd))->link;
  case cf_remark: return &remark<std::malloc>(asrem(nd)->txt, asrem(nd)->row)->link;
  default: return &param<std::malloc>(aspar(nd)->key, aspar(nd)->val, aspar(nd)->row)->link;
  }
}

bool equalnode(const cfnode *one, const cfnode *two) {
  switch (one->type) {
  case cf_group: return equal(asgrp(one), asgrp(two));
  case cf_remark: return std::strcmp(asrem(one)->txt, asrem(two)->txt) == 0;
  default:
    return strcasecmp(aspar(one)->key, aspar(two)->key) == 0 &&
           strcasecmp(aspar(one)->val, aspar(two)->val) == 0;
  }
}

} // namespace

cfgroup *copy(const cfgroup *grp) {
  cfgroup *made = group<std::malloc>(grp->cat, grp->name, grp->type, grp->row);
  for (const cfnode *nd = grp->elem.next; nd != &grp->elem; nd = nd->next)
    link(made, copynode(nd));
  return made;
}

bool equal(const cfgroup *one, const cfgroup *two) {
  if (one->type == cf_grpinst &&
      (strcasecmp(one->cat, two->cat) != 0 || strcasecmp(one->name, two->name) != 0))
    return false;
  const cfnode *other = two->elem.next;
  for (const cfnode *nd = one->elem.next; nd != &one->elem; nd = nd->next, other = other->next)
    if (nd->type != other->type || !equalnode(nd, other))
      return false;
  return other == &two->elem;
}

void remove(cfgroup *grp) {
  for (cfnode *nd = grp->elem.prev; nd != &grp->elem;) {
    cfnode *ahead = nd->prev;
    if (nd->type == cf_group)
      remove(asgrp(nd));
    else
      std::free(nd);
    nd = ahead;
  }
  std::free(grp);
}

} // namespace bench::floors
