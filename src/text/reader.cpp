// Reader: a stream, line by line, into a tree.
// SPDX-License-Identifier: MIT
#include "node/link.h"
#include "node/make.h"
#include "node/slots.h"
#include "platform/messages.h"
#include "text/blocks.h"
#include "text/input.h"
#include "text/lexer.h"
#include "text/line.h"

#include <cstring>
#include <string_view>

using namespace cfcore;

namespace {

void direct_reading(cflexer *lex);
void slot_reading(cflexer *lex);

} // namespace

int cflex(cflexer *lex, FILE *fd, const char *fname) {
  cflexdfl(lex);
  lex->top = nullptr; // so that the caller deletes nothing if the next line throws
  lex->top = makegrp({}, {}, cf_grptop, -1);
  lex->valid = 1;
  lex->fd = fd;
  lex->fname = fname;
  lex->row = nullptr;
  lex->nrow = 0;
  if (isdefault(lex))
    direct_reading(lex);
  else
    slot_reading(lex);
  if (lex->valid)
    makeblocks(lex->top);
  return result(lex->valid);
}

namespace {

/// Builds the tree of a file and reports the faults. The open group is the innermost one whose end
/// was not read yet.
class tree_builder {
public:
  explicit tree_builder(cflexer *lexer) : lex(lexer), open(lexer->top) {}

  tree_builder(const tree_builder &) = delete;
  tree_builder &operator=(const tree_builder &) = delete;
  ~tree_builder() { lex->row = nullptr; } // the buffer of the line is gone, after an exception too

  /// True if the open group is the top group. A slot may change a group's kind, even the top
  /// group's, which is then recognised by having no parent.
  bool attop() const { return open->type == cf_grptop || !open->link.group; }

  /// True for the open group and all groups that hold it.
  bool isopen(const cfnode *nd) const {
    if (!nd->group && nd != &lex->top->link)
      return false; // a new element is in no group: no need to climb
    const cfgroup *it = open;
    while (it && &it->link != nd)
      it = it->link.group;
    return it;
  }

  // Each appends an element that is in no list to the open group. A group becomes the open one.
  void append(cfremark *rem) { putlast(open, &rem->link); }
  void append(cfparam *par) { putlast(open, &par->link); }
  void append(cfgroup *grp) {
    putlast(open, &grp->link);
    open = grp;
  }

  /// Closes the open group, which is not the top group.
  void close() { open = open->link.group; }

  void groupend() {
    if (!attop())
      return close();
    error_sink()("%s:%ld: group end without begin", lex->fname, lex->nrow);
    lex->valid = 0;
  }
  void syntaxerror() {
    error_sink()("%s:%ld: syntax error", lex->fname, lex->nrow);
    lex->valid = 0;
  }
  void overflow() {
    error_sink()("%s:%ld: line overflow", lex->fname, lex->nrow);
    lex->valid = 0;
  }

  /// Called after the last line. An application's isgrpend may close one group at this point.
  void endinput() {
    lex->row = nullptr;
    if (!attop() && lex->isgrpend(lex))
      close();
    if (!attop()) {
      error_sink()("%s:%ld: group begin without end", lex->fname, open->row);
      lex->valid = 0;
    }
    if (std::ferror(lex->fd)) {
      error_sink()("%s:%ld: read error", lex->fname, lex->nrow);
      lex->valid = 0;
    }
  }

private:
  cflexer *lex;
  cfgroup *open;
};

/// Reads all lines of an input and passes each to `handle`, except those that are too long.
template <class Input, auto handle> void readlines(cflexer *lex) {
  tree_builder tree(lex);
  Input in(lex->fd);
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
      handle(lex, tree);
    }
  }
  tree.endinput();
}

// Direct path: one look at a line finds its kind and where to cut it.

/// Skips blanks, eight at a time: deep nesting makes indentation the longest part of a line.
const char *skipindent(const char *p) {
  constexpr std::string_view blanks = "        ";
  static_assert(blanks.size() <= line_margin);
  while (std::memcmp(p, blanks.data(), blanks.size()) == 0)
    p += blanks.size();
  return p;
}

void direct_line(const cflexer *lex, tree_builder &tree) {
  const line it = classify(skipindent(lex->row));
  switch (it.kind) {
  case linekind::empty: return;
  case linekind::remark: return tree.append(makerem(cutremark(it.mark), lex->nrow));
  case linekind::grpbeg: return tree.append(makegrp(it.cat, it.word, cf_grpinst, lex->nrow));
  case linekind::grpend: return tree.groupend();
  case linekind::param: return tree.append(makepar(it.word, cutvalue(it.mark), lex->nrow));
  case linekind::none: return tree.syntaxerror();
  }
}

void direct_reading(cflexer *lex) { readlines<direct_input, direct_line>(lex); }

// Slot path: the classifiers are called in the order of their fields, then the scanner of the kind.

/// Appends what a scanner returned. NULL, the open group or a group around it is a syntax error.
template <class Element> void take(Element *elem, tree_builder &tree) {
  if (!elem || tree.isopen(&elem->link))
    return tree.syntaxerror();
  takeout(&elem->link);
  tree.append(elem);
}

void slot_line(cflexer *lex, tree_builder &tree) {
  if (lex->isempty(lex))
    return;
  if (lex->isremark(lex))
    return take(lex->scanrem(lex), tree);
  if (lex->isgrpbeg(lex)) {
    if (!tree.attop() && lex->isgrpend(lex))
      tree.close(); // the line ends one group and begins the next
    return take(lex->scangrp(lex), tree);
  }
  if (lex->isgrpend(lex))
    return tree.groupend();
  if (lex->isparam(lex))
    return take(lex->scanpar(lex), tree);
  tree.syntaxerror();
}

void slot_reading(cflexer *lex) { readlines<slot_input, slot_line>(lex); }

} // namespace
