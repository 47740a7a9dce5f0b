// Reader: a stream, line by line, into a tree.
// SPDX-License-Identifier: MIT
#include "node/make.h"
#include "text/blocks.h"
#include "text/input.h"
#include "text/lexer.h"
#include "text/line.h"
#include "text/nesting.h"

using namespace cf;

namespace {

/// Handles a line as the slots say, asked in the order of the kinds.
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
      return tree.end();
    if (lex->isparam(lex))
      return take(lex->scanpar(lex), tree);
    tree.syntaxerror();
  }

  /// Takes what a scanner gave: it should be new and not NULL, but nothing breaks if it is not.
  template <class Element> static void take(Element *elem, nesting &tree) {
    if (!elem)
      return tree.syntaxerror();
    takeout(&elem->link);
    tree.put(elem);
  }
};

/// Handles a line as the default slots would, if none was replaced: one look at it tells what five
/// classifiers would, and where the scanners would cut.
class plain_reading {
public:
  using input = block_input;

  static void read(cflexer *lex, nesting &tree) { look(lex->row, plain_reading(tree, lex->nrow)); }

  void none() { tree.syntaxerror(); }
  void empty() {}
  void remark(const char *mark) { tree.put(makerem(cutremark(mark), nrow)); }
  void grpbeg(std::string_view cat, std::string_view name) {
    tree.put(makegrp(cat, name, cf_grpinst, nrow));
  }
  void grpend() { tree.end(); }
  void param(std::string_view key, const char *mark) {
    tree.put(makepar(key, cutvalue(mark), nrow));
  }

private:
  plain_reading(nesting &reached, long row) : tree(reached), nrow(row) {}

  nesting &tree;
  long nrow;
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
  tree.finish();
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
