// Reader: a stream, line by line, into a tree.
// SPDX-License-Identifier: MIT
#include "node/make.h"
#include "text/blocks.h"
#include "text/input.h"
#include "text/lexer.h"
#include "text/line.h"
#include "text/nesting.h"

#include <cstring>
#include <string_view>

using namespace cf;

namespace {

/// Handles lines as the slots say, asked in the order of the kinds.
struct slot_reading {
  using input = line_input;

  static void read(cflexer *lex, nesting &tree) {
    if (lex->isempty(lex))
      return;
    if (lex->isremark(lex))
      return take(lex->scanrem(lex), tree);
    if (lex->isgrpbeg(lex)) {
      if (!tree.attop() && lex->isgrpend(lex))
        tree.leave(); // the line ends one group and begins its next sibling
      return take(lex->scangrp(lex), tree);
    }
    if (lex->isgrpend(lex))
      return tree.endgroup();
    if (lex->isparam(lex))
      return take(lex->scanpar(lex), tree);
    tree.syntaxerror();
  }

  /// Takes what a scanner gave. It should be new; NULL and what holds the open group are no elements.
  template <class Element> static void take(Element *elem, nesting &tree) {
    if (!elem || tree.isopen(&elem->link))
      return tree.syntaxerror();
    takeout(&elem->link);
    tree.put(elem);
  }
};

/// Handles lines as the default slots would, if none was replaced: one look tells what five classifiers
/// would, and where the scanners would cut.
struct plain_reading {
  using input = block_input;

  /// Goes over blanks by eights, which the margin allows: indented deeply, a file is read a fifth faster.
  static const char *skipindent(const char *p) {
    constexpr std::string_view blanks = "        ";
    static_assert(blanks.size() <= line_margin);
    while (std::memcmp(p, blanks.data(), blanks.size()) == 0)
      p += blanks.size();
    return p;
  }

  static void read(cflexer *lex, nesting &tree) {
    const line it = look(skipindent(lex->row));
    switch (it.kind) {
    case linekind::empty: return;
    case linekind::remark: return tree.put(makerem(cutremark(it.mark), lex->nrow));
    case linekind::grpbeg: return tree.put(makegrp(it.cat, it.word, cf_grpinst, lex->nrow));
    case linekind::grpend: return tree.endgroup();
    case linekind::param: return tree.put(makepar(it.word, cutvalue(it.mark), lex->nrow));
    case linekind::none: return tree.syntaxerror();
    }
  }
};

template <class Reading> void read(cflexer *lex) {
  nesting tree(lex);
  typename Reading::input in(lex->fd);
  for (;;) {
    ++lex->nrow;
    const fetched got = in.next();
    if (got == fetched::end)
      break;
    lex->row = in.row();
    if (got == fetched::overflow) {
      tree.overflow();
      in.drain();
    } else {
      Reading::read(lex, tree);
    }
  }
  tree.endinput();
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
  if (isdefault(lex))
    read<plain_reading>(lex);
  else
    read<slot_reading>(lex);
  if (lex->valid)
    makeblocks(lex->top);
  return static_cast<signed char>(lex->valid);
}
