// Semantic parser: a tree against the application's symbols.
// SPDX-License-Identifier: MIT
#include "node/fill.h"
#include "node/text.h"
#include "node/walk.h"
#include "scope/names.h"

using namespace cf;

namespace {

cfscope *scopedef(const char *) { return nullptr; }

// The reports. An element that no line gave is told by its scope.

void undefined(cfparser *parser, long row, const char *scope) {
  auto *sink = parser->werr ? emsg : wmsg;
  if (row >= 0)
    sink("%s:%ld: undefined symbol", parser->fname, row);
  else
    sink("%s/%s: undefined symbol", parser->fname, scope);
  if (parser->werr)
    parser->valid = 0;
}

void invalid(cfparser *parser, long row, const char *scope) {
  if (row >= 0)
    emsg("%s:%ld: value expression error", parser->fname, row);
  else
    emsg("%s/%s: value expression error", parser->fname, scope);
  parser->valid = 0;
}

void duplicate(cfparser *parser, long row, const char *scope) {
  if (row >= 0)
    emsg("%s:%ld: duplicate symbol", parser->fname, row);
  else
    emsg("%s/%s: duplicate symbol", parser->fname, scope);
  parser->valid = 0;
}

/// The group in whose list an element counts: blocks and catalog levels are passed over.
cfgroup *enclosing(cfgroup *grp) {
  while (grp->type != cf_grpinst && grp->type != cf_grptop && grp->link.group)
    grp = grp->link.group;
  return grp;
}

bool isnameless(const cfgroup *grp) { return grp->type == cf_grpinst && !*grp->name; }

/// Visitor that stops on the first element like one whose name or key is empty. To the lookups an
/// empty text is none, so they cannot tell.
struct nameless_search {
  const cfgroup *owner;
  const cfnode *wanted;
  const cfnode *found = nullptr;

  bool islike(const cfnode *nd) const {
    if (nd->type != wanted->type)
      return false;
    if (nd->type == cf_param)
      return !*aspar(nd)->key;
    return isnameless(asgrp(nd)) && equal(asgrp(nd)->cat, asgrp(wanted)->cat);
  }
  go meet(const cfnode *nd) {
    if (!islike(nd))
      return go::on;
    found = nd;
    return go::stop;
  }
  go enter(const cfgroup *grp) {
    if (grp == owner || grp->type != cf_grpinst)
      return go::on;
    return meet(&grp->link) == go::stop ? go::stop : go::over;
  }
  go leaf(const cfnode *nd) { return meet(nd); }
  go leave(const cfgroup *) { return go::on; }
};

bool isfirstnameless(const cfgroup *owner, const cfnode *nd) {
  nameless_search search{owner, nd};
  walk(owner, search);
  return search.found == nd;
}

/// True if the like of an element stands ahead of it in its instance.
bool isrepeated(cfparam *par) {
  if (!par->link.group)
    return false;
  cfgroup *owner = enclosing(par->link.group);
  if (!*par->key)
    return !isfirstnameless(owner, &par->link);
  return cfcatgetpar(owner, par->key, nullptr) != par;
}

bool isrepeated(cfgroup *grp) {
  if (!grp->link.group)
    return false;
  cfgroup *owner = enclosing(grp->link.group);
  if (!*grp->name)
    return !isfirstnameless(owner, &grp->link);
  return cfcatgetgrp(owner, grp->cat, grp->name) != grp;
}

/// Visitor that checks what the walk meets, a group when it is left.
template <class Names> class check {
public:
  explicit check(cfparser *record) : parser(record), names(record) {}

  go enter(cfgroup *grp) {
    names.enter(grp);
    return go::on;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param)
      symbol(aspar(nd));
    return go::on;
  }
  go leave(cfgroup *grp) {
    names.leave(grp);
    if (grp->type == cf_grpinst)
      symbol(grp);
    return go::on;
  }

private:
  cfparser *parser;
  Names names;

  template <class Element> void symbol(Element *elem) {
    const char *scope = names.of(elem);
    const cfscope *found = parser->scopedef(scope);
    if (!found)
      return undefined(parser, elem->row, scope);
    // Read at once: the application may fill its record anew at any time.
    const cfeval_t eval = found->eval;
    const bool multi = found->multi;
    if (!evaluates(elem, eval))
      invalid(parser, elem->row, scope);
    if (!multi && isrepeated(elem))
      duplicate(parser, elem->row, scope);
  }

  static bool evaluates(cfparam *par, cfeval_t eval) { return !eval || cfevalpar(par, eval); }
  static bool evaluates(cfgroup *, cfeval_t) { return true; }
};

template <class Names> void _cfparse(cfparser *parser) {
  check<Names> visitor(parser);
  walk(parser->top, visitor);
}

} // namespace

cfparser *cfparsedfl(cfparser *parser) {
  fill(parser->genscope, genscope);
  fill(parser->scopedef, scopedef);
  return parser;
}

int cfparse(cfparser *parser, cfgroup *top, const char *fname) {
  cfparsedfl(parser);
  parser->top = top;
  parser->fname = fname;
  parser->valid = 1;
  if (parser->genscope == genscope)
    _cfparse<kept_names>(parser);
  else
    _cfparse<asked_names>(parser);
  return static_cast<signed char>(parser->valid);
}
