// Nesting: the tree while it is read, with the group that is open and the reports of faults.
// SPDX-License-Identifier: MIT
#pragma once

#include "node/link.h"

#include <cstdio>

namespace cf {

class nesting {
public:
  explicit nesting(cflexer *lexer) : lex(lexer), grp(lexer->top) {}

  nesting(const nesting &) = delete;
  nesting &operator=(const nesting &) = delete;
  ~nesting() { lex->row = nullptr; } // the line is gone, also when an exception ends the reading

  /// True in the top group; a slot may have changed its kind, but not that nothing holds it.
  bool attop() const { return grp->type == cf_grptop || !grp->link.group; }

  /// True for the open group and all that hold it.
  bool isopen(const cfnode *nd) const {
    if (!nd->group && nd != &lex->top->link)
      return false; // what is new is in no list, and the climb is saved
    const cfgroup *it = grp;
    while (it && &it->link != nd)
      it = it->link.group;
    return it;
  }

  // What a line gave, in no list yet, goes to the end of the open group; a group is open then itself.
  void put(cfremark *rem) { putlast(grp, &rem->link); }
  void put(cfparam *par) { putlast(grp, &par->link); }
  void put(cfgroup *group) {
    putlast(grp, &group->link);
    grp = group;
  }

  void leave() { grp = grp->link.group; }
  void endgroup() {
    if (!attop())
      return leave();
    emsg("%s:%ld: group end without begin", lex->fname, lex->nrow);
    lex->valid = 0;
  }

  void syntaxerror() {
    emsg("%s:%ld: syntax error", lex->fname, lex->nrow);
    lex->valid = 0;
  }
  void overflow() {
    emsg("%s:%ld: line overflow", lex->fname, lex->nrow);
    lex->valid = 0;
  }

  /// The end of the input, which an application's isgrpend may take for that of one group.
  void endinput() {
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

private:
  cflexer *lex;
  cfgroup *grp; // the group that is open
};

} // namespace cf
