// Oracles: invariants of trees and catalogs, and the expected results of calls, computed in the
// simplest way.
// SPDX-License-Identifier: MIT
#pragma once

#include "kit.h"

namespace fuzz {

// The targets: functions of bytes that throw if a promise is not kept.
void read(std::string_view bytes);
void check(std::string_view bytes);
void edit(std::string_view bytes);
void document(std::string_view bytes);

/// Checks the values and references of an element that is in no list, and of all below it. Returns
/// how many blocks of memory they have.
size_t check_tree(cfnode *root);
/// Checks that a catalog has one reference for each instance and parameter of its source, under the
/// right owner, in the right levels, in the order of the source.
void check_catalog(cfgroup *root);
/// Compares the check of a group with a model. `number` selects the definitions of symbols.
void check(cfgroup *top, unsigned char number);

std::string text_of(cfgroup *top);                                  ///< what cfprint() writes
cfnode *find_group(cfgroup *gc, const char *cat, const char *name); ///< what cfcatgetgrp() finds
cfnode *find_param(cfgroup *gc, const char *key, const char *val);  ///< what cfcatgetpar() finds
inline bool is(cfnode *nd, cfgroup_t type) { return cfgrp(nd) && cfgrp(nd)->type == type; }

} // namespace fuzz
