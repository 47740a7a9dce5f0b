// Catalog construction: references to all instances and parameters of a tree, sorted into levels.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"

#include "node/make.h"
#include "node/ring.h"
#include "node/walk.h"

#include <cassert>

namespace cf {
namespace {

cfgroup *addlevel(cfgroup *grp, const char *cat, const char *name, cfgroup_t type) {
  cfgroup *level = makegrp(cat, name, type, -1);
  putlast(grp, &level->link);
  return level;
}

/// The level in `grp` that the search finds, or a new one if it meets a plain element or nothing.
cfgroup *level(cfgroup *grp, const char *cat, const char *name) {
  cfgroup *hit = ifgrp(cfseekgrp(grp->elem.next, cat, name));
  return hit && hit->type == cf_grpcat ? hit : addlevel(grp, cat, name, cf_grpcat);
}

/// Visitor that files what the walk meets. `gc`, the owner of the group that the walk is in, goes down
/// and climbs in step with it.
struct filer {
  const cfgroup *source; // stands for itself: only what is below it is filed
  const cfgroup *root;   // the owner that stands for it
  cfgroup *gc;

  bool isfiled(const cfgroup *grp) const { return grp->type == cf_grpinst && grp != source; }

  go enter(cfgroup *grp) {
    if (isfiled(grp)) {
      gc = _cfcatgrp(gc, grp);
      putlast(gc->link.group, &gc->link);
    }
    return go::on;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param) {
      cfparam *ref = _cfcatpar(gc, aspar(nd));
      putlast(ref->link.group, &ref->link);
    }
    return go::on;
  }
  go leave(cfgroup *grp) {
    if (isfiled(grp))
      do {
        gc = gc->link.group;
        assert(gc);
      } while (gc != root && gc->type == cf_grpcat);
    return go::on;
  }
};

} // namespace

cfgroup *_cfcatgrp(cfgroup *gc, cfgroup *grp) {
  cfgroup *name = level(*grp->cat ? level(gc, grp->cat, "") : gc, "", grp->name);
  cfgroup *ref = cfnewrefgrp(grp);
  ref->link.group = name;
  return ref;
}

cfparam *_cfcatpar(cfgroup *gc, cfparam *par) {
  cfgroup *hit = ifgrp(cfseekpar(gc->elem.next, par->key, nullptr));
  cfgroup *value = hit ? hit : addlevel(gc, "", par->key, cf_grpval);
  cfparam *ref = cfnewrefpar(par);
  ref->link.group = value;
  return ref;
}

void _cfcatelem(cfgroup *gc, cfgroup *grp) {
  filer visitor{grp, gc, gc};
  walk(grp, visitor);
}

} // namespace cf

using namespace cf;

cfgroup *cfcatalog(cfgroup *grp) {
  ring made;
  cfgroup *root = cfnewrefgrp(grp);
  made.add(&root->link);
  _cfcatelem(root, grp);
  made.letgo();
  return root;
}
