// Catalog construction: references to all instances and parameters of a tree, sorted into levels.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"

#include "node/make.h"
#include "node/remove.h"
#include "node/walk.h"

#include <memory>

namespace cf {
namespace {

cfgroup *addlevel(cfgroup *grp, const char *cat, const char *name, cfgroup_t type) {
  cfgroup *level = makegrp(cat, name, type, -1);
  putlast(grp, &level->link);
  return level;
}

/// The level in `grp` that the search found, or a new one if it met a plain element or nothing.
cfgroup *level(cfgroup *grp, const char *cat, const char *name) {
  cfgroup *hit = ifgrp(cfseekgrp(grp->elem.next, cat, name));
  return hit && hit->type == cf_grpcat ? hit : addlevel(grp, cat, name, cf_grpcat);
}

/// Visitor that files what the walk meets. `gc`, the owner of the group that the walk is in, goes
/// down and climbs in step with it.
struct filer {
  const cfgroup *source; // stands for itself: only what is below it is filed
  const cfgroup *root;   // the owner that stands for it
  cfgroup *gc;

  bool isfiled(const cfgroup *grp) const { return grp->type == cf_grpinst && grp != source; }

  go enter(cfgroup *grp) {
    if (!isfiled(grp))
      return go::on;
    cfgroup *name = namelevel(gc, grp);
    gc = cfnewrefgrp(grp);
    putlast(name, &gc->link);
    return go::on;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param) {
      cfgroup *value = valuelevel(gc, aspar(nd));
      putlast(value, &cfnewrefpar(aspar(nd))->link);
    }
    return go::on;
  }
  go leave(cfgroup *grp) {
    if (isfiled(grp))
      do
        gc = gc->link.group;
      while (gc != root && gc->type == cf_grpcat);
    return go::on;
  }
};

struct deleter {
  void operator()(cfgroup *grp) const { removal().of(&grp->link); }
};

} // namespace

cfgroup *namelevel(cfgroup *gc, const cfgroup *grp) {
  return level(*grp->cat ? level(gc, grp->cat, "") : gc, "", grp->name);
}

cfgroup *valuelevel(cfgroup *gc, const cfparam *par) {
  cfgroup *hit = ifgrp(cfseekpar(gc->elem.next, par->key, nullptr));
  return hit ? hit : addlevel(gc, "", par->key, cf_grpval);
}

void _cfcatelem(cfgroup *gc, cfgroup *grp) {
  filer visitor{grp, gc, gc};
  walk(grp, visitor);
}

} // namespace cf

using namespace cf;

cfgroup *cfcatalog(cfgroup *grp) {
  // Until it is finished an exception deletes it.
  std::unique_ptr<cfgroup, deleter> root(cfnewrefgrp(grp));
  _cfcatelem(root.get(), grp);
  return root.release();
}
