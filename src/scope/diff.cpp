// Comparison: two elements as streams of what counts.
// SPDX-License-Identifier: MIT
#include "node/fill.h"
#include "node/link.h"
#include "node/text.h"
#include "scope/names.h"

#include <cstring>

using namespace cf;

namespace {

int chkscope(const char *) { return 1; }

/// True if the application lets an element take part.
bool _cfdiffscope(const cfdiff *diff, const cfnode *i) {
  if (diff->chkscope == chkscope)
    return true;
  auto *nd =
      const_cast<cfnode *>(i); // the slot's type has no const; it must not write all the same
  textbuf buf;
  return diff->chkscope(askscope(buf, diff->genscope, nd)) != 0;
}

/// Where the walk over `nd` goes on behind the element or group `i`; on `nd` it has ended.
const cfnode *behind(const cfnode *nd, const cfnode *i) { return i == nd ? nd : i->next; }

/// The next element of the stream of `nd`, or NULL at its end. `it` is the cursor, NULL at the
/// start.
const cfnode *_cfdiffnext(const cfdiff *diff, const cfnode *nd, const cfnode *&it) {
  if (it == nd)
    return nullptr;
  if (!it)
    it = nd;
  do {
    const cfnode *i = it;
    switch (i->type) {
    case cf_anchor: it = behind(nd, &i->group->link); break;
    case cf_group: {
      const cfgroup *grp = asgrp(i);
      const bool inst = grp->type == cf_grpinst;
      const bool within = !inst || _cfdiffscope(diff, i);
      it = within ? grp->elem.next : behind(nd, i);
      if (inst && within)
        return i;
      break;
    }
    case cf_remark:
      it = behind(nd, i);
      if (diff->opt & cf_diffrem)
        return i;
      break;
    case cf_param:
      it = behind(nd, i);
      if (_cfdiffscope(diff, i))
        return i;
      break;
    }
  } while (it != nd);
  return nullptr;
}

/// True if two elements of one kind have the same texts.
bool issame(const cfnode *i1, const cfnode *i2) {
  switch (i1->type) {
  case cf_group:
    return equal(asgrp(i1)->cat, asgrp(i2)->cat) && equal(asgrp(i1)->name, asgrp(i2)->name);
  case cf_remark: return std::strcmp(asrem(i1)->txt, asrem(i2)->txt) == 0;
  case cf_param:
    return equal(aspar(i1)->key, aspar(i2)->key) && equal(aspar(i1)->val, aspar(i2)->val);
  default: return true;
  }
}

/// True if the streams of two elements differ.
// NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
bool differs(cfdiff *diff, const cfnode *nd1, const cfnode *nd2) {
  if (!nd1 || !nd2)
    return nd1 != nd2;
  const cfnode *it1 = nullptr;
  const cfnode *it2 = nullptr;
  for (;;) {
    const cfnode *i1 = _cfdiffnext(diff, nd1, it1);
    const cfnode *i2 = _cfdiffnext(diff, nd2, it2);
    if (!i1 || !i2)
      return i1 != i2;
    if (i1->type != i2->type)
      return true;
    if (diff->opt & cf_diffref && cfdiffnd(diff, i1->ref, i2->ref))
      return true;
    if (!issame(i1, i2))
      return true;
  }
}

} // namespace

cfdiff *cfdiffdfl(cfdiff *diff) {
  fill(diff->genscope, genscope);
  fill(diff->chkscope, chkscope);
  return diff;
}

// NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
int cfdiffnd(cfdiff *diff, const cfnode *nd1, const cfnode *nd2) {
  diff->diff = differs(diff, nd1, nd2) ? 1 : 0;
  return diff->diff;
}
