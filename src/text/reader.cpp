// Reader: a stream, line by line, into a tree.
// SPDX-License-Identifier: MIT
#include "node/link.h"
#include "node/make.h"
#include "text/blocks.h"
#include "text/line.h"

#include <cstdio>

using namespace cf;

namespace {

constexpr int line_size = 4096; // of the line buffer: 4095 bytes and a terminator

class reader {
public:
  reader(cflexer *lexer, bool defaults) : lex(lexer), grp(lexer->top), plain(defaults) {}

  void read() {
    while (nextline())
      if (plain)
        addline();
      else
        askslots();
    end();
  }

private:
  cflexer *lex;
  cfgroup *grp; // the group that is open
  bool plain;   // no slot was replaced: one look at a line tells what five classifiers would
  char buf[line_size];

  bool attop() const { return grp->type == cf_grptop || !grp->link.group; }
  void leave() { grp = grp->link.group; }

  bool nextline();
  bool overflows() const;
  void drain() const;
  void addline();
  void askslots();
  void begingroup();
  void endgroup();
  void enter(cfgroup *group);
  void add(cfnode *elem);
  void syntaxerror();
  void end();
};

/// Reads the next line that fits the buffer; false at the end of the stream.
bool reader::nextline() {
  for (;;) {
    ++lex->nrow;
    buf[line_size - 1] = 1; // fgets() writes here only if it fills the buffer
    if (!std::fgets(buf, line_size, lex->fd))
      return false;
    lex->row = buf;
    if (!overflows())
      return true;
    emsg("%s:%ld: line overflow", lex->fname, lex->nrow);
    lex->valid = 0;
    drain();
  }
}

bool reader::overflows() const {
  return buf[line_size - 1] == '\0' && buf[line_size - 2] != '\n' && !std::feof(lex->fd);
}

/// Reads on to the end of the line.
void reader::drain() const {
  int c = 0;
  do
    c = std::fgetc(lex->fd);
  while (c >= 0 && c != '\n');
}

/// Handles a line as the default slots would.
void reader::addline() {
  const line it = look(lex->row);
  switch (it.kind) {
  case linekind::empty: return;
  case linekind::remark: return putlast(grp, &makerem(cutremark(it.mark), lex->nrow)->link);
  case linekind::grpbeg: return enter(makegrp(it.cat, it.word, cf_grpinst, lex->nrow));
  case linekind::grpend: return endgroup();
  case linekind::param: return putlast(grp, &makepar(it.word, cutvalue(it.mark), lex->nrow)->link);
  case linekind::none: return syntaxerror();
  }
}

/// Handles a line as the slots say, asked in the order of the kinds.
void reader::askslots() {
  if (lex->isempty(lex))
    return;
  if (lex->isremark(lex)) {
    cfremark *rem = lex->scanrem(lex);
    return add(rem ? &rem->link : nullptr);
  }
  if (lex->isgrpbeg(lex))
    return begingroup();
  if (lex->isgrpend(lex))
    return endgroup();
  if (lex->isparam(lex)) {
    cfparam *par = lex->scanpar(lex);
    return add(par ? &par->link : nullptr);
  }
  syntaxerror();
}

/// A line that begins a group may also end the one that is open.
void reader::begingroup() {
  if (!attop() && lex->isgrpend(lex))
    leave();
  if (cfgroup *group = lex->scangrp(lex))
    enter(group);
  else
    syntaxerror();
}

void reader::enter(cfgroup *group) {
  movelast(grp, &group->link);
  grp = group;
}

void reader::endgroup() {
  if (!attop())
    return leave();
  emsg("%s:%ld: group end without begin", lex->fname, lex->nrow);
  lex->valid = 0;
}

/// Adds what a scanner gave.
void reader::add(cfnode *elem) {
  if (elem)
    movelast(grp, elem);
  else
    syntaxerror();
}

void reader::syntaxerror() {
  emsg("%s:%ld: syntax error", lex->fname, lex->nrow);
  lex->valid = 0;
}

void reader::end() {
  lex->row = nullptr;
  if (!attop() && lex->isgrpend(lex))
    leave();
  if (!attop()) {
    emsg("%s:%ld: group begin without end", lex->fname, grp->row);
    lex->valid = 0;
  }
  if (std::ferror(lex->fd)) {
    emsg("%s:%ld: read error", lex->fname, lex->nrow);
    lex->valid = 0;
  }
}

} // namespace

int cflex(cflexer *lex, FILE *fd, const char *fname) {
  cflexdfl(lex);
  lex->top = nullptr; // nothing to delete should the manager leave right here
  lex->top = makegrp({}, {}, cf_grptop, -1);
  lex->valid = 1;
  lex->fd = fd;
  lex->fname = fname;
  lex->row = nullptr;
  lex->nrow = 0;
  reader(lex, isdefault(lex)).read();
  if (lex->valid)
    makeblocks(lex->top);
  return static_cast<signed char>(lex->valid);
}
