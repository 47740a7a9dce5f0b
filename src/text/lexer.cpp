// Lexer: the default slots of the reader's record.
// SPDX-License-Identifier: MIT
#include "text/lexer.h"

#include "node/fill.h"
#include "node/make.h"
#include "text/line.h"

namespace cf {
namespace {

bool is(linekind kind, const cflexer *lex) { return look(lex->row).kind == kind; }

int isempty(cflexer *lex) { return is(linekind::empty, lex); }
int isremark(cflexer *lex) { return is(linekind::remark, lex); }
int isgrpbeg(cflexer *lex) { return is(linekind::grpbeg, lex); }
int isgrpend(cflexer *lex) { return lex->row && is(linekind::grpend, lex); }
int isparam(cflexer *lex) { return is(linekind::param, lex); }

// The scanners cut by marks alone, because an application's classifier may let other words through.

/// The first `mark` at or behind `p`, or the end of the text.
const char *find(const char *p, char mark) {
  while (*p && *p != mark)
    ++p;
  return p;
}

/// Cuts what stands before the first white space or `mark`, and moves `p` behind it.
std::string_view cutbefore(const char *&p, char mark) {
  const char *begin = p;
  while (*p && *p != mark && !isspacechar(*p))
    ++p;
  return between(begin, p);
}

cfremark *scanrem(cflexer *lex) {
  const char *mark = find(lex->row, '#');
  return makerem(*mark ? cutremark(mark) : std::string_view(), lex->nrow);
}

cfgroup *scangrp(cflexer *lex) {
  const char *p = skipspace(lex->row);
  const std::string_view first = cutbefore(p, '{');
  p = skipspace(p);
  if (*p == '{' || *p == '\0')
    return makegrp({}, first, cf_grpinst, lex->nrow);
  const char *end = find(p, '{');
  while (end > p && isspacechar(end[-1]))
    --end;
  return makegrp(first, between(p, end), cf_grpinst, lex->nrow);
}

cfparam *scanpar(cflexer *lex) {
  const char *p = skipspace(lex->row);
  const std::string_view key = cutbefore(p, '=');
  const char *mark = find(p, '=');
  return makepar(key, *mark ? cutvalue(mark) : std::string_view(), lex->nrow);
}

} // namespace

bool isdefault(const cflexer *lex) {
  return lex->isempty == isempty && lex->isremark == isremark && lex->isgrpbeg == isgrpbeg &&
         lex->isgrpend == isgrpend && lex->isparam == isparam && lex->scanrem == scanrem &&
         lex->scangrp == scangrp && lex->scanpar == scanpar;
}

} // namespace cf

using namespace cf;

cflexer *cflexdfl(cflexer *lex) {
  fill(lex->isempty, isempty);
  fill(lex->isremark, isremark);
  fill(lex->isgrpbeg, isgrpbeg);
  fill(lex->isgrpend, isgrpend);
  fill(lex->isparam, isparam);
  fill(lex->scanrem, scanrem);
  fill(lex->scangrp, scangrp);
  fill(lex->scanpar, scanpar);
  return lex;
}
