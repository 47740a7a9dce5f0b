// Catalog construction: references to all instances and parameters of a tree, sorted into levels.
// SPDX-License-Identifier: MIT
#include "catalog/filing.h"
#include "node/make.h"
#include "node/unlinked.h"
#include "node/walk.h"

#include <cassert>

using namespace cfcore;

cfgroup *cfcatalog(cfgroup *grp) {
  unlinked made; // deletes the catalog if the manager throws
  cfgroup *root = cfnewrefgrp(grp);
  made.add(&root->link);
  _cfcatelem(root, grp);
  made.unlink_all();
  return root;
}

namespace cfcore {
namespace {

/// Visitor that files what the walk meets under the owner of the search. When the walk enters an
/// instance, its reference becomes the owner until the walk leaves the instance.
class filer {
public:
  /// Files what `group` holds under `owner`.
  filer(cfgroup *owner, const cfgroup *group) : source(group), root(owner), search(owner) {}

  go enter(cfgroup *grp) {
    if (isfiled(grp)) {
      const auto [ref, level] = _cfcatgrp(search, grp);
      putlast(level, &ref->link);
      search.enter(ref);
    }
    return go::on;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param) {
      const auto [ref, level] = _cfcatpar(search, aspar(nd));
      putlast(level, &ref->link);
    }
    return go::on;
  }
  go leave(cfgroup *grp) {
    if (isfiled(grp)) {
      // The owner is above one or two levels. `root` is an owner, although it has the kind of a
      // level in a catalog over a level.
      cfgroup *gc = search.owner();
      do {
        gc = gc->link.group;
        assert(gc);
      } while (gc != root && gc->type == cf_grpcat);
      search.leave(gc);
    }
    return go::on;
  }

private:
  const cfgroup *source;
  const cfgroup *root;
  searches search;

  bool isfiled(const cfgroup *grp) const { return grp->type == cf_grpinst && grp != source; }
};

cfgroup *addlevel(cfgroup *grp, const char *cat, const char *name, cfgroup_t type) {
  cfgroup *level = makegrp(cat, name, type, -1);
  putlast(grp, &level->link);
  return level;
}

/// The category level or name level in `grp` that a search for the texts finds. If it finds nothing
/// or something else, a new level.
cfgroup *level(searches &search, cfgroup *grp, const char *cat, const char *name) {
  cfgroup *hit = ifgrp(search.group(grp, criterion(cat), criterion(name)));
  return hit && hit->type == cf_grpcat ? hit : addlevel(grp, cat, name, cf_grpcat);
}

} // namespace

void _cfcatelem(cfgroup *gc, cfgroup *grp) {
  filer visitor(gc, grp);
  walk(grp, visitor);
}

filing<cfgroup> _cfcatgrp(searches &search, cfgroup *grp) {
  cfgroup *gc = search.owner();
  cfgroup *holder = *grp->cat ? level(search, gc, grp->cat, "") : gc;
  cfgroup *names = level(search, holder, "", grp->name);
  return {cfnewrefgrp(grp), names};
}

filing<cfparam> _cfcatpar(searches &search, cfparam *par) {
  cfgroup *gc = search.owner();
  cfgroup *hit = ifgrp(search.key(gc, criterion(par->key)));
  cfgroup *values = hit ? hit : addlevel(gc, "", par->key, cf_grpval);
  return {cfnewrefpar(par), values};
}

} // namespace cfcore
