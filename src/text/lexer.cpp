// Lexer: the default slots of the reader's record.
// SPDX-License-Identifier: MIT
#include "text/lexer.h"

#include "node/make.h"
#include "node/slots.h"
#include "text/line.h"

namespace cfcore {
namespace {

bool is(linekind kind, const cflexer *lex) { return classify(lex->row).kind == kind; }

int isempty(cflexer *lex) { return is(linekind::empty, lex); }
int isremark(cflexer *lex) { return is(linekind::remark, lex); }
int isgrpbeg(cflexer *lex) { return is(linekind::grpbeg, lex); }
int isgrpend(cflexer *lex) { return lex->row && is(linekind::grpend, lex); }
int isparam(cflexer *lex) { return is(linekind::param, lex); }

// The scanners do not test the syntax again, but look for the mark of the line (# { =): an
// application's classifier may accept lines that the default ones refuse.

/// The first `mark` from `p` on, or the end of the text.
const char *find(const char *p, char mark) {
  while (*p && *p != mark)
    ++p;
  return p;
}

/// Cuts what is before the first white space or `mark`, and moves `p` after it.
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
  const char *mark = find(p, '{');
  return makegrp(first, between(p, cutspace(p, mark)), cf_grpinst, lex->nrow);
}

cfparam *scanpar(cflexer *lex) {
  const char *p = skipspace(lex->row);
  const std::string_view key = cutbefore(p, '=');
  const char *mark = find(p, '=');
  return makepar(key, *mark ? cutvalue(mark) : std::string_view(), lex->nrow);
}

constexpr slots defaults{
    slot{&cflexer::isempty, isempty},   slot{&cflexer::isremark, isremark},
    slot{&cflexer::isgrpbeg, isgrpbeg}, slot{&cflexer::isgrpend, isgrpend},
    slot{&cflexer::isparam, isparam},   slot{&cflexer::scanrem, scanrem},
    slot{&cflexer::scangrp, scangrp},   slot{&cflexer::scanpar, scanpar},
};

} // namespace

bool isdefault(const cflexer *lex) { return defaults.isdefault(lex); }

} // namespace cfcore

cflexer *cflexdfl(cflexer *lex) {
  cfcore::defaults.fill(lex);
  return lex;
}
