// Line syntax: what kind a line is, how it is cut, and the default slots of the reader.
// SPDX-License-Identifier: MIT
#include "text/line.h"

#include "node/fill.h"
#include "node/make.h"
#include "text/classes.h"

#include <cstring>

namespace cf {
namespace {

const char *skipspace(const char *p) {
  while (isspacechar(*p))
    ++p;
  return p;
}

/// Cuts the identifier at `p`, empty if there is none, and moves `p` behind it.
std::string_view cutword(const char *&p) {
  const char *begin = p;
  if (isletter(*p))
    do
      ++p;
    while (iswordchar(*p));
  return {begin, static_cast<size_t>(p - begin)};
}

bool isblank(const char *p) { return *skipspace(p) == '\0'; }

/// The kind of a line that begins with a word, if with any: a group head or a parameter.
line lookword(const char *p) {
  line it;
  it.word = cutword(p);
  if (it.word.empty())
    return it;
  p = skipspace(p);
  if (*p == '=') {
    it.kind = linekind::param;
    it.mark = p;
    return it;
  }
  if (const std::string_view name = cutword(p); !name.empty()) {
    it.cat = it.word;
    it.word = name;
    p = skipspace(p);
  }
  if (*p == '{' && isblank(p + 1))
    it.kind = linekind::grpbeg;
  return it;
}

} // namespace

line look(const char *row) {
  const char *p = skipspace(row);
  line it;
  switch (*p) {
  case '\0': it.kind = linekind::empty; break;
  case '#':
    it.kind = linekind::remark;
    it.mark = p;
    break;
  case '}':
    if (isblank(p + 1))
      it.kind = linekind::grpend;
    break;
  default: it = lookword(p);
  }
  return it;
}

std::string_view cutremark(const char *mark) {
  const char *begin = mark + 1;
  if (*begin == ' ')
    ++begin;
  return {begin, std::strcspn(begin, "\n")};
}

std::string_view cutvalue(const char *mark) {
  const char *begin = skipspace(mark + 1);
  size_t length = std::strlen(begin);
  while (length > 0 && isspacechar(begin[length - 1]))
    --length;
  return {begin, length};
}

namespace {

/// The first place at or behind `p` that is one of `marks`, or the end of the text.
const char *find(const char *p, const char *marks) { return p + std::strcspn(p, marks); }

/// Cuts what stands before the first white space or `mark`, and moves `p` behind it.
std::string_view cutbefore(const char *&p, char mark) {
  const char *begin = p;
  while (*p && *p != mark && !isspacechar(*p))
    ++p;
  return {begin, static_cast<size_t>(p - begin)};
}

int isempty(cflexer *lex) { return look(lex->row).kind == linekind::empty; }
int isremark(cflexer *lex) { return look(lex->row).kind == linekind::remark; }
int isgrpbeg(cflexer *lex) { return look(lex->row).kind == linekind::grpbeg; }
int isgrpend(cflexer *lex) { return lex->row && look(lex->row).kind == linekind::grpend; }
int isparam(cflexer *lex) { return look(lex->row).kind == linekind::param; }

// The scanners cut by marks alone, because an application's classifier may let other words through.

cfremark *scanrem(cflexer *lex) {
  const char *mark = find(lex->row, "#");
  return makerem(*mark ? cutremark(mark) : std::string_view(), lex->nrow);
}

cfgroup *scangrp(cflexer *lex) {
  const char *p = skipspace(lex->row);
  const std::string_view first = cutbefore(p, '{');
  p = skipspace(p);
  if (*p == '{' || *p == '\0')
    return makegrp({}, first, cf_grpinst, lex->nrow);
  const char *end = find(p, "{");
  while (end > p && isspacechar(end[-1]))
    --end;
  return makegrp(first, {p, static_cast<size_t>(end - p)}, cf_grpinst, lex->nrow);
}

cfparam *scanpar(cflexer *lex) {
  const char *p = skipspace(lex->row);
  const std::string_view key = cutbefore(p, '=');
  const char *mark = find(p, "=");
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
