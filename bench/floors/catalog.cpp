// Floor of the catalog: searching, allocating, linking; and of lookups in it and in a tree.
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "floors/search.h"

namespace bench::floors {
namespace {

cfgroup *level(cfgroup *grp, cfgroup_t kind, const char *cfgroup::*field, const char *text) {
  if (const cfgroup *found = seek(grp, kind, field, text))
    return const_cast<cfgroup *>(found);
  const bool cat = field == &cfgroup::cat;
  cfgroup *made = group<std::malloc>(cat ? text : "", cat ? "" : text, kind, -1);
  link(grp, &made->link);
  return made;
}

cfgroup *reference(cfgroup *grp) {
  auto *ref = static_cast<cfgroup *>(std::malloc(sizeof(cfgroup)));
  *ref = {{nullptr, nullptr, nullptr, &grp->link, cf_group},
          grp->row,
          grp->cat,
          grp->name,
          grp->type,
          {}};
  return emptied(ref);
}

cfparam *reference(cfparam *par) {
  auto *ref = static_cast<cfparam *>(std::malloc(sizeof(cfparam)));
  *ref = *par;
  ref->link.ref = &par->link;
  return ref;
}

void file(cfgroup *owner, cfgroup *grp) {
  for (cfnode *nd = grp->elem.next; nd != &grp->elem; nd = nd->next) {
    if (nd->type == cf_param) {
      cfgroup *values = level(owner, cf_grpval, &cfgroup::name, aspar(nd)->key);
      link(values, &reference(aspar(nd))->link);
    } else if (nd->type == cf_group && asgrp(nd)->type != cf_grpinst) {
      file(owner, asgrp(nd));
    } else if (nd->type == cf_group) {
      cfgroup *inst = asgrp(nd);
      cfgroup *cats = *inst->cat ? level(owner, cf_grpcat, &cfgroup::cat, inst->cat) : owner;
      cfgroup *names = level(cats, cf_grpcat, &cfgroup::name, inst->name);
      cfgroup *ref = reference(inst);
      link(names, &ref->link);
      file(ref, inst);
    }
  }
}

} // namespace

cfgroup *catalog(cfgroup *top) {
  cfgroup *root = reference(top);
  file(root, top);
  return root;
}

// An element in a level or a block may have other texts than the level or block, so the last list
// of each search is compared in full.

const cfgroup *findgrp(const cfgroup *gc, const char *cat, const char *name) {
  const cfgroup *at = *cat ? seek(gc, cf_grpcat, &cfgroup::cat, cat) : gc;
  if (at)
    at = seek(at, cf_grpcat, &cfgroup::name, name);
  return at ? treegrp(at, cat, name) : nullptr;
}

const cfparam *findpar(const cfgroup *gc, const char *key) {
  const cfgroup *values = seek(gc, cf_grpval, &cfgroup::name, key);
  return values ? treepar(values, key) : nullptr;
}

const cfgroup *treegrp(const cfgroup *grp, const char *cat, const char *name) {
  for (const cfnode *nd = grp->elem.next; nd != &grp->elem; nd = nd->next)
    if (const cfgroup *it = asgrp(nd); nd->type == cf_group &&
                                       (it->type == cf_grpinst || it->type == cf_grpgrp) &&
                                       (!*cat || same(it->cat, cat)) && same(it->name, name))
      return it->type == cf_grpinst ? it : treegrp(it, cat, name);
  return nullptr;
}

const cfparam *treepar(const cfgroup *grp, const char *key) {
  for (const cfnode *nd = grp->elem.next; nd != &grp->elem; nd = nd->next) {
    if (nd->type == cf_param && same(aspar(nd)->key, key))
      return aspar(nd);
    if (nd->type == cf_group && asgrp(nd)->type == cf_grppar && same(asgrp(nd)->name, key))
      return treepar(asgrp(nd), key);
  }
  return nullptr;
}

} // namespace bench::floors
