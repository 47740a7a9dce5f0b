// Links: the exported list operations and their typed forms.
// SPDX-License-Identifier: MIT
#include "node/link.h"

#include <cassert>

cfnode *cfinitnd(cfnode *nd, cfnode_t type, cfgroup *pgrp) {
  cfcore::init(nd, type, pgrp, nullptr);
  return nd;
}

cfnode *cfinitrefnd(cfnode *nd, cfnode *ref, cfgroup *pgrp) {
  cfcore::init(nd, ref->type, pgrp, ref);
  return nd;
}

cfnode *cfunlknd(cfnode *nd) {
  assert(!cfcore::isanchor(nd));
  cfcore::takeout(nd);
  return nd;
}

cfgroup *cflinknd(cfgroup *grp, cfnode *nd) {
  assert(!cfcore::isanchor(nd));
  cfcore::movelast(grp, nd);
  return grp;
}

cfnode *cfchainnd(cfnode *it, cfnode *nd) {
  assert(it != nd && !cfcore::isanchor(nd));
  cfcore::movebefore(it, nd);
  return it;
}

cfnode *cfxcgnd(cfnode *it, cfnode *nd) {
  assert(it != nd && !cfcore::isanchor(it) && !cfcore::isanchor(nd));
  cfcore::movebefore(it, nd);
  cfcore::takeout(it);
  return it;
}

cfgroup *cfaddgrp(cfgroup *grp, cfgroup *elem) { return cflinknd(grp, &elem->link); }
cfgroup *cfaddrem(cfgroup *grp, cfremark *elem) { return cflinknd(grp, &elem->link); }
cfgroup *cfaddpar(cfgroup *grp, cfparam *elem) { return cflinknd(grp, &elem->link); }
cfnode *cfchaingrp(cfnode *it, cfgroup *elem) { return cfchainnd(it, &elem->link); }
cfnode *cfchainrem(cfnode *it, cfremark *elem) { return cfchainnd(it, &elem->link); }
cfnode *cfchainpar(cfnode *it, cfparam *elem) { return cfchainnd(it, &elem->link); }
