// Check: a tree against the application's table of symbols.
// SPDX-License-Identifier: MIT
#include "node/slots.h"
#include "node/walk.h"
#include "platform/messages.h"
#include "scope/duplicate.h"
#include "scope/names.h"
#include "scope/scope.h"

using namespace cfcore;

namespace {

cfscope *scopedef(const char *) { return nullptr; }

constexpr slots defaults{slot{&cfparser::genscope, genscope}, slot{&cfparser::scopedef, scopedef}};

template <class Names> void _cfparse(cfparser *parser, Names &&names);

} // namespace

cfparser *cfparsedfl(cfparser *parser) {
  defaults.fill(parser);
  return parser;
}

int cfparse(cfparser *parser, cfgroup *top, const char *fname) {
  cfparsedfl(parser);
  parser->top = top;
  parser->fname = fname;
  parser->valid = 1;
  if (parser->genscope == genscope)
    _cfparse(parser, direct_names());
  else
    _cfparse(parser, slot_names(parser->genscope));
  return result(parser->valid);
}

namespace {

// The reports. They name an element that has no line number by its scope string.

void undefined(cfparser *parser, long row, const char *scope) {
  auto *sink = parser->werr ? error_sink() : warning_sink();
  if (row >= 0)
    sink("%s:%ld: undefined symbol", parser->fname, row);
  else
    sink("%s/%s: undefined symbol", parser->fname, scope);
  if (parser->werr)
    parser->valid = 0;
}

void invalid(cfparser *parser, long row, const char *scope) {
  if (row >= 0)
    error_sink()("%s:%ld: value expression error", parser->fname, row);
  else
    error_sink()("%s/%s: value expression error", parser->fname, scope);
  parser->valid = 0;
}

void duplicate(cfparser *parser, long row, const char *scope) {
  if (row >= 0)
    error_sink()("%s:%ld: duplicate symbol", parser->fname, row);
  else
    error_sink()("%s/%s: duplicate symbol", parser->fname, scope);
  parser->valid = 0;
}

/// Visitor that checks each symbol that the walk meets; a group when the walk leaves it.
template <class Names> class check {
public:
  check(cfparser *record, Names &scopes) : parser(record), names(scopes), symbols(record->top) {
    names.begin(record->top->link.group);
  }

  go enter(cfgroup *grp) {
    if (isowner(grp)) {
      names.enter(grp);
      symbols.enter(grp);
    }
    return go::on;
  }
  go leaf(cfnode *nd) {
    if (nd->type == cf_param)
      symbol(aspar(nd));
    return go::on;
  }
  go leave(cfgroup *grp) {
    if (isowner(grp)) {
      names.leave(grp);
      symbols.leave(grp);
    }
    if (grp->type == cf_grpinst)
      symbol(grp);
    return go::on;
  }

private:
  cfparser *parser;
  Names &names;
  duplicates symbols;

  template <class Element> void symbol(Element *elem) {
    const char *scope = names.name(elem);
    const cfscope *found = parser->scopedef(scope);
    if (!found)
      return undefined(parser, elem->row, scope);
    // Read before the evaluator runs: any function of the application may fill the record anew.
    const cfeval_t eval = found->eval;
    const bool multi = found->multi;
    if (!evaluates(elem, eval))
      invalid(parser, elem->row, scope);
    if (!multi && symbols.isrepeated(elem))
      duplicate(parser, elem->row, scope);
  }

  static bool evaluates(cfparam *par, cfeval_t eval) { return !eval || cfevalpar(par, eval); }
  static bool evaluates(cfgroup *, cfeval_t) { return true; }
};

template <class Names> void _cfparse(cfparser *parser, Names &&names) {
  check visitor(parser, names);
  walk(parser->top, visitor);
}

} // namespace
