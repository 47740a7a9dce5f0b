// Printer: a tree as text, with the blank lines that keep its remarks bound or free.
// SPDX-License-Identifier: MIT
#include "node/fill.h"
#include "node/walk.h"
#include "text/format.h"

#include <algorithm>
#include <climits>

using namespace cf;

namespace {

// The default slots write one line each and give its length.

template <class Put> int writeline(cfprinter *prn, Put put) {
  writer out(prn->fd);
  put(out);
  return out.flush() ? static_cast<int>(std::min<size_t>(out.count(), INT_MAX)) : -1;
}

int outempty(cfprinter *prn, cfgroup *grp) {
  return writeline(prn, [=](writer &out) { putempty(out, indentation(grp)); });
}

int outremark(cfprinter *prn, cfremark *rem) {
  return writeline(prn, [=](writer &out) { putremark(out, indentation(rem->link.group), rem); });
}

int outgrpbeg(cfprinter *prn, cfgroup *grp) {
  return writeline(prn, [=](writer &out) { putgrpbeg(out, indentation(grp->link.group), grp); });
}

int outgrpend(cfprinter *prn, cfgroup *grp) {
  return writeline(prn, [=](writer &out) { putgrpend(out, indentation(grp->link.group)); });
}

int outparam(cfprinter *prn, cfparam *par) {
  return writeline(prn, [=](writer &out) { putparam(out, indentation(par->link.group), par); });
}

bool isdefault(const cfprinter *prn) {
  return prn->outempty == outempty && prn->outremark == outremark && prn->outgrpbeg == outgrpbeg &&
         prn->outgrpend == outgrpend && prn->outparam == outparam;
}

/// Output through the slots of the record. Each function gives false on failure.
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

/// Output as the default slots do it, when none was replaced: lines are gathered, and the
/// indentation is kept instead of counted up to the root for each line.
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

constexpr int bit(cfnode_t type) { return 1 << type; }

/// The blank-line mask behind a child of a group of kind `holder`; `rem`: it was remarks.
int maskbehind(cfgroup_t holder, bool rem) {
  constexpr int elements = bit(cf_group) | bit(cf_remark);
  switch (holder) {
  case cf_grptop:
  case cf_grpinst: return rem ? elements | bit(cf_param) : elements;
  case cf_grpgrp:
  case cf_grppar: return bit(cf_remark);
  case cf_grprem: return 0;
  default: return elements;
  }
}

/// Visitor that prints what the walk meets.
template <class Output> class printing {
public:
  explicit printing(cfprinter *printer) : prn(printer), top(printer->top), out(printer) {}

  go enter(cfgroup *grp) {
    if (grp->type == cf_grpinst) {
      if (!_cfpbrk(&grp->link) || !out.grpbeg(grp))
        return go::stop;
      unprinted = grp;
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
    prn->brk = maskbehind(nd->group->type, rem);
    return go::on;
  }

  go leave(cfgroup *grp) {
    if (grp->type == cf_grpinst) {
      if (!out.grpend(grp))
        return go::stop;
      unprinted = nullptr;
    }
    if (grp == top)
      return go::on;
    if (unprinted == grp)
      unprinted = nullptr; // nothing came of it, but something stands before it in its list
    if (!unprinted)
      prn->brk = maskbehind(grp->link.group->type, grp->type == cf_grprem);
    return go::on;
  }

  bool finish() { return out.finish(); }

private:
  cfprinter *prn;
  const cfgroup *top;
  Output out;
  /// The outermost open group with nothing printed in it yet; all open groups below it are alike.
  /// Behind such a group the mask stays as it was.
  const cfgroup *unprinted = nullptr;

  bool _cfpbrk(cfnode *nd) { return !(prn->brk & bit(nd->type)) || out.empty(nd->group); }
};

template <class Output> bool _cfprint(cfprinter *prn) {
  printing<Output> visitor(prn);
  const bool done = walk(prn->top, visitor) != go::stop;
  return visitor.finish() && done;
}

} // namespace

cfprinter *cfprintdfl(cfprinter *prn) {
  fill(prn->outempty, outempty);
  fill(prn->outremark, outremark);
  fill(prn->outgrpbeg, outgrpbeg);
  fill(prn->outgrpend, outgrpend);
  fill(prn->outparam, outparam);
  return prn;
}

int cfprint(FILE *fd, cfprinter *prn, cfgroup *top, const char *fname) {
  cfprintdfl(prn);
  prn->valid = 1;
  prn->fd = fd;
  prn->fname = fname;
  prn->top = top;
  prn->brk = 0;
  const bool written = isdefault(prn) ? _cfprint<direct_output>(prn) : _cfprint<slot_output>(prn);
  if (!written || std::ferror(fd)) {
    emsg("%s: write error", fname);
    prn->valid = 0;
  }
  return static_cast<signed char>(prn->valid);
}
