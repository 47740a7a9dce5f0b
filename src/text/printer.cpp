// Printer: a tree as text, with the blank lines that keep its remarks bound or free.
// SPDX-License-Identifier: MIT
#include "node/slots.h"
#include "node/walk.h"
#include "platform/messages.h"
#include "text/format.h"

using namespace cfcore;

namespace {

bool direct_printing(cfprinter *prn);
bool slot_printing(cfprinter *prn);

} // namespace

int cfprint(FILE *fd, cfprinter *prn, cfgroup *top, const char *fname) {
  cfprintdfl(prn);
  prn->valid = 1;
  prn->fd = fd;
  prn->fname = fname;
  prn->top = top;
  prn->brk = 0;
  const bool written = isdefault(prn) ? direct_printing(prn) : slot_printing(prn);
  if (!written || std::ferror(fd)) {
    error_sink()("%s: write error", fname);
    prn->valid = 0;
  }
  return result(prn->valid);
}

namespace {

constexpr int bit(cfnode_t type) { return 1 << type; }

/// The blank-line mask after a child of a group of kind `parent`: a bit for each kind of node
/// before which a blank line is printed. `rem`: the child is a remark or a block of remarks.
int maskafter(cfgroup_t parent, bool rem) {
  constexpr int elements = bit(cf_group) | bit(cf_remark);
  switch (parent) {
  case cf_grptop:
  case cf_grpinst: return rem ? elements | bit(cf_param) : elements;
  case cf_grpgrp:
  case cf_grppar: return bit(cf_remark);
  case cf_grprem: return 0;
  default: return elements;
  }
}

/// Visitor that prints what the walk meets.
///
/// Each child of a group sets the mask in `brk` for what comes after it. The exception is a child
/// group in which nothing was printed: it sets the mask only if something was printed in its parent
/// before it. `unprinted` decides that: it is the outermost open group in which nothing was printed
/// yet, or NULL if there is none. Nothing was printed in the open groups inside `unprinted` either;
/// something was printed in every open group around it.
template <class Output> class printing {
public:
  explicit printing(cfprinter *printer) : prn(printer), top(printer->top), out(printer) {}

  go enter(cfgroup *grp) {
    if (grp->type == cf_grpinst) {
      if (!_cfpbrk(&grp->link) || !out.grpbeg(grp))
        return go::stop;
      unprinted = grp; // its head is printed in the groups around it, not in itself
    } else if (!unprinted) {
      unprinted = grp;
    }
    if (grp->type == cf_grpinst || grp->type == cf_grptop)
      prn->brk = 0;
    return go::on;
  }

  go leaf(cfnode *nd) {
    const bool rem = nd->type == cf_remark;
    if (!_cfpbrk(nd) || !(rem ? out.remark(asrem(nd)) : out.param(aspar(nd))))
      return go::stop;
    unprinted = nullptr;
    prn->brk = maskafter(nd->group->type, rem);
    return go::on;
  }

  go leave(cfgroup *grp) {
    if (grp->type == cf_grpinst && !out.grpend(grp))
      return go::stop;
    if (grp == top)
      return go::on;
    if (unprinted == grp)
      unprinted = nullptr; // as the outermost one, it is in a group in which something was printed
    if (!unprinted)
      prn->brk = maskafter(grp->link.group->type, grp->type == cf_grprem);
    return go::on;
  }

  bool finish() { return out.finish(); }

private:
  cfprinter *prn;
  const cfgroup *top;
  Output out;
  const cfgroup *unprinted = nullptr;

  /// Prints a blank line if one is due before `nd`. False on failure.
  bool _cfpbrk(cfnode *nd) { return !(prn->brk & bit(nd->type)) || out.empty(nd->group); }
};

template <class Output> bool _cfprint(cfprinter *prn) {
  printing<Output> visitor(prn);
  const bool done = walk(prn->top, visitor) != go::stop;
  return visitor.finish() && done;
}

// Direct path: a writer gathers the lines. The indentation changes with each group, so it is not
// counted up to the root for each line.

class direct_output {
public:
  explicit direct_output(cfprinter *prn)
      : out(prn->fd), indent(indentation(prn->top->link.group)) {}
  bool empty(cfgroup *) {
    putempty(out, indent);
    return out.ok();
  }
  bool remark(cfremark *rem) {
    putremark(out, indent, rem);
    return out.ok();
  }
  bool grpbeg(cfgroup *grp) {
    putgrpbeg(out, indent, grp);
    indent += 2;
    return out.ok();
  }
  bool grpend(cfgroup *) {
    indent -= 2;
    putgrpend(out, indent);
    return out.ok();
  }
  bool param(cfparam *par) {
    putparam(out, indent, par);
    return out.ok();
  }
  bool finish() { return out.flush(); }

private:
  writer out;
  size_t indent;
};

bool direct_printing(cfprinter *prn) { return _cfprint<direct_output>(prn); }

// Slot path: each line is written by a call of its slot.

class slot_output {
public:
  explicit slot_output(cfprinter *printer) : prn(printer) {}
  bool empty(cfgroup *grp) { return prn->outempty(prn, grp) >= 0; }
  bool remark(cfremark *rem) { return prn->outremark(prn, rem) >= 0; }
  bool grpbeg(cfgroup *grp) { return prn->outgrpbeg(prn, grp) >= 0; }
  bool grpend(cfgroup *grp) { return prn->outgrpend(prn, grp) >= 0; }
  bool param(cfparam *par) { return prn->outparam(prn, par) >= 0; }
  bool finish() { return true; }

private:
  cfprinter *prn;
};

bool slot_printing(cfprinter *prn) { return _cfprint<slot_output>(prn); }

} // namespace
