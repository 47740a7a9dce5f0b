// Floor of printing: a line assembled and written by one fwrite().
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "floors/records.h"

#include <initializer_list>

namespace bench::floors {
namespace {

class Printer {
public:
  explicit Printer(std::FILE *stream) : fd(stream) {}

  void content(const cfgroup *grp) {
    for (const cfnode *nd = grp->elem.next; nd != &grp->elem; nd = nd->next) {
      switch (nd->type) {
      case cf_group: group(asgrp(nd)); break;
      case cf_remark: line(nd, {"# ", asrem(nd)->txt, "\n"}); break;
      default: line(nd, {aspar(nd)->key, " = ", aspar(nd)->val, "\n"});
      }
      blankbefore = after(grp->type, nd);
    }
  }

private:
  std::FILE *fd;
  std::size_t indent = 0;
  unsigned blankbefore = 0; // kinds of node that get a blank line before them, a bit each
  char buf[8192];

  static unsigned after(cfgroup_t holder, const cfnode *nd) {
    const bool rem =
        nd->type == cf_remark || (nd->type == cf_group && asgrp(nd)->type == cf_grprem);
    switch (holder) {
    case cf_grprem: return 0;
    case cf_grpgrp:
    case cf_grppar: return 1u << cf_remark;
    default: return 1u << cf_group | 1u << cf_remark | (rem ? 1u << cf_param : 0);
    }
  }

  void group(const cfgroup *grp) {
    if (grp->type != cf_grpinst)
      return content(grp);
    line(&grp->link, {grp->cat, *grp->cat ? " " : "", grp->name, " {\n"});
    blankbefore = 0;
    indent += 2;
    content(grp);
    indent -= 2;
    blankbefore = 0;
    line(&grp->link, {"}\n"});
  }

  void line(const cfnode *nd, std::initializer_list<const char *> texts) {
    char *at = static_cast<char *>(std::memset(buf, ' ', indent)) + indent;
    if (blankbefore >> nd->type & 1) {
      *at = '\n';
      std::fwrite(buf, 1, indent + 1, fd);
    }
    for (const char *text : texts)
      at = stpcpy(at, text);
    std::fwrite(buf, 1, static_cast<std::size_t>(at - buf), fd);
  }
};

} // namespace

void print(std::FILE *fd, const cfgroup *top) { Printer(fd).content(top); }

} // namespace bench::floors
