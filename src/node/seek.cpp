// Iteration and search along one list.
// SPDX-License-Identifier: MIT
#include "node/seek.h"

using namespace cfcore;

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
cfparam *cfpar(cfnode *nd) { return ifpar(nd); }

cfnode *cfseekgrp(cfnode *it, const char *cat, const char *name) {
  return seekgrp(it, criterion(cat), criterion(name));
}

cfnode *cfseekrem(cfnode *it) {
  return seek(it, [](const cfnode *nd) {
    return nd->type == cf_remark || (nd->type == cf_group && asgrp(nd)->type == cf_grprem);
  });
}

cfnode *cfseekpar(cfnode *it, const char *key, const char *val) {
  key = criterion(key);
  return val ? seekval(it, key, val) : seekkey(it, key);
}
