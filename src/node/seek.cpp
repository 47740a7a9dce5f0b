// Iteration and search along one list.
// SPDX-License-Identifier: MIT
#include "node/link.h"
#include "node/text.h"

using namespace cf;

cfnode *cfiterator(cfgroup *grp) { return grp->elem.next; }

cfnode *cfnext(cfnode **it) {
  if (!isanchor(*it))
    *it = (*it)->next;
  return *it;
}

cfnode_t cftype(const cfnode *it) { return it->type; }
int cfend(const cfnode *it) { return isanchor(it); }
int cfempty(const cfgroup *grp) { return isanchor(grp->elem.next); }

cfgroup *cfgrp(cfnode *nd) { return ifgrp(nd); }
cfremark *cfrem(cfnode *nd) { return nd && nd->type == cf_remark ? asrem(nd) : nullptr; }
cfparam *cfpar(cfnode *nd) { return nd && nd->type == cf_param ? aspar(nd) : nullptr; }

namespace {

/// The frame of all searches: the first node from `it` on that is a hit, else the anchor.
template <class Hit> cfnode *seek(cfnode *it, Hit hit) {
  while (!isanchor(it) && !hit(it))
    it = it->next;
  return it;
}

bool isinstlike(const cfgroup *grp) {
  return grp->type == cf_grpcat || grp->type == cf_grpgrp || grp->type == cf_grpinst;
}

bool isparlike(const cfgroup *grp) { return grp->type == cf_grpval || grp->type == cf_grppar; }

} // namespace

cfnode *cfseekgrp(cfnode *it, const char *cat, const char *name) {
  cat = given(cat) ? cat : nullptr;
  name = given(name) ? name : nullptr;
  return seek(it, [=](const cfnode *nd) {
    if (nd->type != cf_group)
      return false;
    const cfgroup *grp = asgrp(nd);
    return isinstlike(grp) && (!cat || equal(grp->cat, cat)) && (!name || equal(grp->name, name));
  });
}

cfnode *cfseekrem(cfnode *it) {
  return seek(it, [](const cfnode *nd) {
    return nd->type == cf_remark || (nd->type == cf_group && asgrp(nd)->type == cf_grprem);
  });
}

cfnode *cfseekpar(cfnode *it, const char *key, const char *val) {
  key = given(key) ? key : nullptr;
  return seek(it, [=](const cfnode *nd) {
    if (nd->type == cf_param) {
      const cfparam *par = aspar(nd);
      return (!key || equal(par->key, key)) && (!val || equal(par->val, val));
    }
    if (nd->type != cf_group || val)
      return false;
    const cfgroup *grp = asgrp(nd);
    return isparlike(grp) && (!key || equal(grp->name, key));
  });
}
