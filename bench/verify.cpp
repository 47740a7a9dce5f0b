// Verification: a floor counts only if it does the same as the library.
// SPDX-License-Identifier: MIT
#include "verify.h"

#include "arena.h"
#include "definitions.h"
#include "floors/floors.h"
#include "floors/records.h"
#include "ours/trees.h"

#include <cstring>
#include <string>

namespace bench {
namespace {

using floors::asgrp;
using floors::aspar;
using floors::asrem;

bool alike(const cfgroup *one, const cfgroup *two);

bool alike(const cfnode *one, const cfnode *two) {
  if (one->type != two->type || one->ref != two->ref)
    return false;
  switch (one->type) {
  case cf_group: return alike(asgrp(one), asgrp(two));
  case cf_remark:
    return asrem(one)->row == asrem(two)->row && !std::strcmp(asrem(one)->txt, asrem(two)->txt);
  default:
    return aspar(one)->row == aspar(two)->row && !std::strcmp(aspar(one)->key, aspar(two)->key) &&
           !std::strcmp(aspar(one)->val, aspar(two)->val);
  }
}

/// True if two groups, with all below them, have equal fields, and the second has correct links.
bool alike(const cfgroup *one, const cfgroup *two) {
  if (one->type != two->type || one->row != two->row || std::strcmp(one->cat, two->cat) ||
      std::strcmp(one->name, two->name))
    return false;
  const cfnode *other = two->elem.next;
  for (const cfnode *nd = one->elem.next; nd != &one->elem; nd = nd->next, other = other->next)
    if (other->prev->next != other || other->group != two || !alike(nd, other))
      return false;
  return other == &two->elem;
}

std::string printed(cfgroup *top, void (*print)(std::FILE *, cfgroup *)) {
  char *text = nullptr;
  std::size_t size = 0;
  std::FILE *fd = open_memstream(&text, &size);
  print(fd, top);
  std::fclose(fd);
  std::string out(text, size);
  std::free(text);
  return out;
}

void printours(std::FILE *fd, cfgroup *top) {
  cfprinter prn{};
  cfprint(fd, &prn, top, "shape");
}

void printfloor(std::FILE *fd, cfgroup *top) { floors::print(fd, top); }

std::string scopes; // all that `scopedef` was called with, a line each

template <cfscope *(*definition)(const char *)> cfscope *noting(const char *scope) {
  scopes += scope;
  scopes += '\n';
  return definition(scope);
}

bool checksame(cfgroup *top, cfscope *(*scopedef)(const char *)) {
  scopes.clear();
  cfparser parser{};
  parser.scopedef = scopedef;
  bool same = cfparse(&parser, top, "shape") == 1;
  const std::string ours = std::move(scopes);
  scopes.clear();
  floors::check(top, scopedef);
  return same && scopes == ours;
}

void expect(bool fact, const Shape &shape, const char *what) {
  if (!fact)
    broken(("the floor of " + std::string(what) + " differs on " + shape.name).c_str());
}

} // namespace

void verify(const Shape &shape) {
  const Tree tree = maketree(shape);
  cfgroup *top = tree.get();
  expect(alike(top, own(floors::read(openinput(shape).get())).get()), shape, "reading");
  expect(alike(top, floors::readarena(openinput(shape).get())), shape, "reading with an arena");
  arena::reset();
  expect(printed(top, printours) == printed(top, printfloor), shape, "printing");
  expect(checksame(top, noting<multiple>) && checksame(top, noting<single>), shape, "checking");
  const Tree copy = own(floors::copy(top));
  expect(alike(top, copy.get()), shape, "copying");
  expect(floors::equal(top, copy.get()), shape, "comparing");
  const Tree catalog = own(cfcatalog(top));
  expect(alike(catalog.get(), own(floors::catalog(top)).get()), shape, "cataloguing");
}

} // namespace bench
