// Oracles: what must hold between two calls, and what calls must give, found in the plainest way.
// SPDX-License-Identifier: MIT
#pragma once

#include "kit.h"

namespace fuzz {

// The targets: functions of bytes that throw if a promise is not kept.
void read(std::string_view bytes);
void check(std::string_view bytes);
void edit(std::string_view bytes);
void document(std::string_view bytes);

/// Values and references of an element in no list and of all below it. Gives their memory blocks.
size_t check_tree(cfnode *root);
/// A catalog: one reference for each instance and parameter of its source, under the right owner,
/// in the right levels, in the order of the source.
void check_catalog(cfgroup *root);
/// A group against definitions that a number makes of the scope strings.
void check(cfgroup *top, unsigned char number);

std::string text_of(cfgroup *top);                                  ///< what cfprint() writes
cfnode *find_group(cfgroup *gc, const char *cat, const char *name); ///< what cfcatgetgrp() finds
cfnode *find_param(cfgroup *gc, const char *key, const char *val);  ///< what cfcatgetpar() finds
inline bool is(cfnode *nd, cfgroup_t type) { return cfgrp(nd) && cfgrp(nd)->type == type; }

} // namespace fuzz
