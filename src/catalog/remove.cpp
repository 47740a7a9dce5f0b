// Catalog deletion: elements with their references and the blocks that bound remarks to them.
// SPDX-License-Identifier: MIT
#include "node/unlinked.h"

using namespace cfcore;

namespace {

/// One deletion. It first collects all elements to delete in a list, and then deletes them. So an
/// element that it meets again can still be read.
class collector {
public:
  /// `keep` and its targets are not deleted, even if all elements in them are. It may be NULL.
  explicit collector(const cfgroup *keep) : kept(keep) {}

  /// Collects an element, with all that is deleted with it.
  void _cfcatdelnd(cfnode *cnd);
  void delete_all() { dlst.delete_all(); }

private:
  // `emptied` is the anchor of the collected group whose children are being collected now. A
  // collected group is in no list of the tree any more, so the spare fields of its anchor hold what
  // recursion would keep on the stack: `elem.group` its former parent, and `elem.ref` the former
  // `emptied`, which for the first group is the anchor of `dlst`.
  unlinked dlst; // what is collected
  const cfgroup *kept;

  cfnode *collect(cfnode *cnd, cfnode *&emptied);
  cfnode *next(cfnode *&emptied);
  cfgroup *boundblock(const cfnode *cnd, cfgroup *parent) const;
  bool iskept(const cfgroup *grp) const;
  static bool iscollected(const cfgroup *grp) { return grp->elem.ref; }
};

} // namespace

void cfcatdelnd(cfnode *cnd) {
  collector run(nullptr);
  run._cfcatdelnd(cnd);
  run.delete_all();
}

void cfcatdelgrp(cfgroup *celem) { cfcatdelnd(celem ? &celem->link : nullptr); }
void cfcatdelpar(cfparam *celem) { cfcatdelnd(celem ? &celem->link : nullptr); }

cfgroup *cfcatclrgrp(cfgroup *cgrp) {
  if (!cgrp)
    return nullptr;
  collector run(cgrp);
  while (!isanchor(cgrp->elem.next))
    run._cfcatdelnd(cgrp->elem.next);
  run.delete_all();
  return cgrp;
}

namespace {

void collector::_cfcatdelnd(cfnode *cnd) { // NOLINT(misc-no-recursion): a step for each link.ref
  if (!cnd || isanchor(cnd))
    return;
  cfnode *emptied = dlst.end(); // no group yet
  while (cnd || emptied != dlst.end())
    cnd = cnd ? collect(cnd, emptied) : next(emptied);
}

/// Collects one element, after its targets. A group becomes the one that is emptied. For any other
/// element, gives the block to collect next, or NULL.
// NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
cfnode *collector::collect(cfnode *cnd, cfnode *&emptied) {
  _cfcatdelnd(cnd->ref);
  cfgroup *parent = cnd->group;
  dlst.add(cnd);
  cfgroup *grp = ifgrp(cnd);
  if (!grp) {
    cfgroup *block = boundblock(cnd, parent);
    return block ? &block->link : nullptr;
  }
  if (!iscollected(grp)) { // else it is empty, or is being emptied
    grp->elem.ref = emptied;
    grp->elem.group = parent;
    emptied = &grp->elem;
  }
  return nullptr;
}

/// The next child of the group that is emptied. If it has none left, the group before it is emptied
/// further, and the result is the block of the finished group, or NULL.
cfnode *collector::next(cfnode *&emptied) {
  if (!isanchor(emptied->next))
    return emptied->next;
  // The anchor does not name its group any more, so the group is computed from its address.
  const cfgroup *grp = reinterpret_cast<const cfgroup *>(reinterpret_cast<const char *>(emptied) -
                                                         offsetof(cfgroup, elem));
  cfgroup *block = boundblock(&grp->link, emptied->group);
  emptied = emptied->ref;
  return block ? &block->link : nullptr;
}

/// The block that is deleted with an element: the one that binds remarks to it, or the run that a
/// remark is in.
cfgroup *collector::boundblock(const cfnode *cnd, cfgroup *parent) const {
  if (!parent)
    return nullptr;
  bool isblock = false;
  switch (cnd->type) {
  case cf_group: isblock = asgrp(cnd)->type == cf_grpinst && parent->type == cf_grpgrp; break;
  case cf_remark: isblock = parent->type == cf_grprem; break;
  case cf_param: isblock = parent->type == cf_grppar; break;
  case cf_anchor: break;
  }
  return isblock && !iskept(parent) ? parent : nullptr;
}

bool collector::iskept(const cfgroup *grp) const {
  const cfnode *it = kept ? &kept->link : nullptr;
  while (it && it != &grp->link)
    it = it->ref;
  return it;
}

} // namespace
