// Catalog deletion: elements with their references and the blocks that bound remarks to them.
// SPDX-License-Identifier: MIT
#include "node/ring.h"

using namespace cf;

namespace {

/// Moves elements with all that hangs on them to a ring of the dying, and deletes them at the end:
/// no record goes before the walk is over, so it may meet a node twice and read whatever it meets.
///
/// A group on the ring is dead already. The spare fields of its anchor carry what a recursion would
/// keep for it: `elem.ref` the way back, to the anchor of the group whose children are being
/// collected or to the ring, and `elem.group` the parent that it had.
class collector {
public:
  /// `keep`, which may be NULL, and its targets are spared, whatever dies in them.
  explicit collector(const cfgroup *keep) : spared(keep) {}
  void _cfcatdelnd(cfnode *cnd);
  void finish() { dlst.clear(); }

private:
  ring dlst;
  const cfgroup *spared;

  static bool isdying(const cfgroup *grp) { return grp->elem.ref; }
  bool isspared(const cfgroup *grp) const;
  cfgroup *boundblock(const cfnode *cnd, cfgroup *parent) const;
  cfnode *collect(cfnode *cnd, cfnode *&back);
  cfnode *next(cfnode *&back);
};

bool collector::isspared(const cfgroup *grp) const {
  const cfnode *it = spared ? &spared->link : nullptr;
  while (it && it != &grp->link)
    it = it->ref;
  return it;
}

/// The upward step: the block that dies with an element because it existed only to bind it, or a
/// run of which a remark dies.
cfgroup *collector::boundblock(const cfnode *cnd, cfgroup *parent) const {
  if (!parent || isspared(parent))
    return nullptr;
  switch (cnd->type) {
  case cf_group:
    return asgrp(cnd)->type == cf_grpinst && parent->type == cf_grpgrp ? parent : nullptr;
  case cf_remark: return parent->type == cf_grprem ? parent : nullptr;
  case cf_param: return parent->type == cf_grppar ? parent : nullptr;
  default: return nullptr;
  }
}

/// Collects one node, its targets first. Gives what is to be collected next, or NULL to go `back`.
// NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
cfnode *collector::collect(cfnode *cnd, cfnode *&back) {
  _cfcatdelnd(cnd->ref);
  cfgroup *parent = cnd->group;
  dlst.add(cnd);
  cfgroup *grp = ifgrp(cnd);
  if (!grp) {
    cfgroup *block = boundblock(cnd, parent);
    return block ? &block->link : nullptr;
  }
  // Met again: its children are gone, or the loop that it is in is taking them.
  if (!isdying(grp)) {
    grp->elem.ref = back;
    grp->elem.group = parent;
    back = &grp->elem;
  }
  return nullptr;
}

/// The next child of the group at `back`; when there is none, its block, and `back` one step
/// further.
cfnode *collector::next(cfnode *&back) {
  if (!isanchor(back->next))
    return back->next;
  const cfgroup *grp = reinterpret_cast<const cfgroup *>(reinterpret_cast<const char *>(back) -
                                                         offsetof(cfgroup, elem));
  cfgroup *block = boundblock(&grp->link, back->group);
  back = back->ref;
  return block ? &block->link : nullptr;
}

void collector::_cfcatdelnd(cfnode *cnd) { // NOLINT(misc-no-recursion): a step for each link.ref
  if (!cnd || isanchor(cnd))
    return;
  cfnode *back = dlst.end();
  while (cnd || back != dlst.end())
    cnd = cnd ? collect(cnd, back) : next(back);
}

} // namespace

void cfcatdelnd(cfnode *cnd) {
  collector dying(nullptr);
  dying._cfcatdelnd(cnd);
  dying.finish();
}

void cfcatdelgrp(cfgroup *celem) { cfcatdelnd(celem ? &celem->link : nullptr); }
void cfcatdelpar(cfparam *celem) { cfcatdelnd(celem ? &celem->link : nullptr); }

cfgroup *cfcatclrgrp(cfgroup *cgrp) {
  if (!cgrp)
    return nullptr;
  collector dying(cgrp);
  while (!isanchor(cgrp->elem.next))
    dying._cfcatdelnd(cgrp->elem.next);
  dying.finish();
  return cgrp;
}
