// Floors: small programs that do only what cannot be avoided, on the library's own records. They
// trust what they are given: lines are well-formed, there is memory, and nesting is moderate.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstdio>

namespace bench::floors {

/// Takes each line of a stream with fgets(), and gives their number.
long readlines(std::FILE *fd);

/// Reads a stream into a tree: one allocation for each element, texts copied, elements linked,
/// remarks grouped.
cfgroup *read(std::FILE *fd);
cfgroup *readarena(std::FILE *fd); // the same from the arena

/// Writes a tree: each line is assembled and written by one fwrite().
void print(std::FILE *fd, const cfgroup *top);

/// Asks `scopedef` about each element, by a scope string that is appended to a prefix. An element
/// that may occur only once is searched for in its group, and evaluators are called.
void check(cfgroup *top, cfscope *(*scopedef)(const char *));

/// Makes a catalog: searches levels, and links references.
cfgroup *catalog(cfgroup *top);

/// Bare linear searches: in a catalog, level for level, and in a tree.
const cfgroup *findgrp(const cfgroup *gc, const char *cat, const char *name);
const cfparam *findpar(const cfgroup *gc, const char *key);
const cfgroup *treegrp(const cfgroup *grp, const char *cat, const char *name);
const cfparam *treepar(const cfgroup *grp, const char *key);

/// A copy: one allocation for each element, texts copied, elements linked.
cfgroup *copy(const cfgroup *grp);

/// Walks two trees side by side: true if all texts are equal.
bool equal(const cfgroup *one, const cfgroup *two);

/// Releases a group with all below it.
void remove(cfgroup *grp);

} // namespace bench::floors
