// Blocks: they bind remarks to the element on the next line.
// SPDX-License-Identifier: MIT
#include "text/blocks.h"

#include "node/link.h"
#include "node/make.h"

#include <cassert>

namespace cfcore {
namespace {

/// The line after `row`. An application's scanner may set any row, the largest `long` too: unsigned
/// arithmetic makes that one wrap around, where signed arithmetic would be undefined.
long nextrow(long row) { return static_cast<long>(static_cast<unsigned long>(row) + 1); }

/// Puts `block` in the place of `elem`, then `run` and `elem` into the block.
void bind(cfgroup *block, cfgroup *run, cfnode *elem) {
  movelast(block, &run->link);
  movebefore(elem, &block->link);
  movelast(block, elem);
}

/// Gathers the run of remarks that begins with `first`, and binds it to a group or parameter on the
/// line after it. Gives the node with which the walk continues; all blocks made here are before it.
cfnode *gather(cfnode *first) {
  long row = asrem(first)->row;
  cfgroup *run = makegrp({}, {}, cf_grprem, row);
  movebefore(first, &run->link);
  cfnode *it = first;
  while (it->type == cf_remark && asrem(it)->row == row) {
    row = nextrow(row);
    movelast(run, it);
    it = run->link.next; // the node that followed the remark
    assert(it);
  }
  if (it->type == cf_group && asgrp(it)->row == row) {
    cfgroup *grp = asgrp(it);
    bind(makegrp(grp->cat, grp->name, cf_grpgrp, row), run, it);
    return grp->elem.next;
  }
  if (it->type == cf_param && aspar(it)->row == row) {
    cfgroup *block = makegrp({}, aspar(it)->key, cf_grppar, row);
    bind(block, run, it);
    return block->link.next;
  }
  return it;
}

} // namespace

void makeblocks(cfgroup *top) {
  cfnode *it = top->elem.next;
  for (;;) {
    switch (it->type) {
    case cf_anchor:
      // The walk ends with `top`, whose kind a slot may have changed, or with another group of kind
      // cf_grptop that a slot made.
      if (it->group == top || it->group->type == cf_grptop)
        return;
      it = it->group->link.next;
      break;
    case cf_group: it = asgrp(it)->elem.next; break;
    case cf_remark: it = gather(it); break;
    case cf_param: it = it->next; break;
    }
  }
}

} // namespace cfcore
