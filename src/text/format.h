// Format: how each kind of line is written, and the default slots of the printer's record.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"
#include "text/writer.h"

namespace cfcore {

/// True if no slot of the record was replaced.
bool isdefault(const cfprinter *prn);

/// Indentation of the children of `grp`: two blanks for each instance from `grp` up to the root.
/// NULL gives none.
inline size_t indentation(const cfgroup *grp) {
  size_t blanks = 0;
  for (; grp; grp = grp->link.group)
    if (grp->type == cf_grpinst)
      blanks += 2;
  return blanks;
}

inline void putempty(writer &out, size_t indent) {
  out.blanks(indent);
  out.put("\n");
}

inline void putremark(writer &out, size_t indent, const cfremark *rem) {
  out.blanks(indent);
  out.put("# ");
  out.put(rem->txt);
  out.put("\n");
}

inline void putgrpbeg(writer &out, size_t indent, const cfgroup *grp) {
  out.blanks(indent);
  if (*grp->cat) {
    out.put(grp->cat);
    out.put(" ");
  }
  out.put(grp->name);
  out.put(" {\n");
}

inline void putgrpend(writer &out, size_t indent) {
  out.blanks(indent);
  out.put("}\n");
}

inline void putparam(writer &out, size_t indent, const cfparam *par) {
  out.blanks(indent);
  out.put(par->key);
  out.put(" = ");
  out.put(par->val);
  out.put("\n");
}

} // namespace cfcore
