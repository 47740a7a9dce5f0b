// Links: the exported ring operations and their typed forms.
// SPDX-License-Identifier: MIT
#include "node/link.h"

#include <cassert>

cfnode *cfinitnd(cfnode *nd, cfnode_t type, cfgroup *pgrp) {
  cf::init(nd, type, pgrp, nullptr);
  return nd;
}

cfnode *cfinitrefnd(cfnode *nd, cfnode *ref, cfgroup *pgrp) {
  cf::init(nd, ref->type, pgrp, ref);
  return nd;
}

cfnode *cfunlknd(cfnode *nd) {
  assert(!cf::isanchor(nd));
  cf::takeout(nd);
  return nd;
}

cfgroup *cflinknd(cfgroup *grp, cfnode *nd) {
  assert(!cf::isanchor(nd));
  cf::movelast(grp, nd);
  return grp;
}

cfnode *cfchainnd(cfnode *it, cfnode *nd) {
  assert(it != nd && !cf::isanchor(nd));
  cf::movebefore(it, nd);
  return it;
}

cfnode *cfxcgnd(cfnode *it, cfnode *nd) {
  assert(it != nd && !cf::isanchor(it) && !cf::isanchor(nd));
  cf::movebefore(it, nd);
  cf::takeout(it);
  return it;
}

cfgroup *cfaddgrp(cfgroup *grp, cfgroup *elem) { return cflinknd(grp, &elem->link); }
cfgroup *cfaddrem(cfgroup *grp, cfremark *elem) { return cflinknd(grp, &elem->link); }
cfgroup *cfaddpar(cfgroup *grp, cfparam *elem) { return cflinknd(grp, &elem->link); }
cfnode *cfchaingrp(cfnode *it, cfgroup *elem) { return cfchainnd(it, &elem->link); }
cfnode *cfchainrem(cfnode *it, cfremark *elem) { return cfchainnd(it, &elem->link); }
cfnode *cfchainpar(cfnode *it, cfparam *elem) { return cfchainnd(it, &elem->link); }
