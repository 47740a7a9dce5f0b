// aim: where a call through a catalog ends up, told before it is made.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace fuzz {

cfgroup *group(cfnode *nd); // NULL if it is none; likewise:
cfparam *param(cfnode *nd);
bool above(const cfnode *nd, const cfnode *place); // or the place itself
cfnode *target(cfnode *nd);                        // the end of its references

cfgroup *owner(cfgroup *gc, const cfnode *elem);  // to which a level leads for an element
cfgroup *place(cfgroup *gc, const cfnode *elem);  // where an element is linked in the end
cfnode *hit(cfgroup *gc, cfnode *elem);           // what it is to replace; NULL: nothing
bool alike(cfnode *one, cfnode *other);           // true if one level serves both
cfnode *binder(const cfnode *nd);                 // the block that dies with an element; NULL: none
bool exchangeable(const cfnode *nd, cfnode *cnd); // for what `cnd` leads to

} // namespace fuzz
