// Semantic parser: a tree against the application's symbols.
// SPDX-License-Identifier: MIT
#include "node/fill.h"
#include "node/walk.h"
#include "scope/duplicate.h"
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
