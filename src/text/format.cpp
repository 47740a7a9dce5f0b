// Format: the default slots of the printer's record.
// SPDX-License-Identifier: MIT
#include "text/format.h"

#include "node/slots.h"

#include <algorithm>
#include <climits>

namespace cfcore {
namespace {

/// Writes the line that `put` puts into a writer. Gives its length, or -1 on failure.
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

constexpr slots defaults{
    slot{&cfprinter::outempty, outempty},   slot{&cfprinter::outremark, outremark},
    slot{&cfprinter::outgrpbeg, outgrpbeg}, slot{&cfprinter::outgrpend, outgrpend},
    slot{&cfprinter::outparam, outparam},
};

} // namespace

bool isdefault(const cfprinter *prn) { return defaults.isdefault(prn); }

} // namespace cfcore

cfprinter *cfprintdfl(cfprinter *prn) {
  cfcore::defaults.fill(prn);
  return prn;
}
