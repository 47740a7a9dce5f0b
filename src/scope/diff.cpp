// Comparison: two elements as streams of what counts.
// SPDX-License-Identifier: MIT
#include "node/fill.h"
#include "node/link.h"
#include "scope/names.h"

#include <cstring>
#include <strings.h>

using namespace cf;

namespace {

int chkscope(const char *) { return 1; }

/// True if the application lets an element take part. Apart from the stream, whose loop it would burden
/// with its buffer.
[[gnu::noinline]] bool _cfdiffscope(const cfdiff *diff, const cfnode *i) {
  auto *nd =
      const_cast<cfnode *>(i); // the slot's type has no const; it must not write all the same
  textbuf buf;
  return diff->chkscope(askscope(buf, diff->genscope, nd)) != 0;
}

/// One side of a comparison: of an element and all below it what counts, one after the other. What
/// stands behind the element, or NULL, is where every way out of it leads.
class stream {
public:
  stream(const cfdiff *record, const cfnode *nd)
      : diff(record), it(nd), end(nd->next), asks(record->chkscope != chkscope),
        remarks(record->opt & cf_diffrem) {}

  const cfnode *_cfdiffnext(); ///< NULL at the end

private:
  const cfdiff *diff;
  const cfnode *it; // what is looked at next
  const cfnode *end;
  bool asks;
  bool remarks;

  bool takespart(const cfnode *nd) const { return !asks || _cfdiffscope(diff, nd); }
};

const cfnode *stream::_cfdiffnext() {
  while (it != end) {
    const cfnode *nd = it;
    if (nd->type == cf_param) {
      it = nd->next;
      if (takespart(nd))
        return nd;
    } else if (nd->type == cf_anchor) {
      it = nd->group->link.next;
    } else if (nd->type == cf_remark) {
      it = nd->next;
      if (remarks)
        return nd;
    } else if (asgrp(nd)->type != cf_grpinst) {
      it = asgrp(nd)->elem.next;
    } else if (takespart(nd)) {
      it = asgrp(nd)->elem.next;
      return nd;
    } else {
      it = nd->next;
    }
  }
  return nullptr;
}

/// Texts that stand opposite each other are nearly always the same, so no look at their first bytes
/// goes ahead: it would be one more step for each.
bool issametext(const char *a, const char *b) { return strcasecmp(a, b) == 0; }

/// True if two elements of one kind have the same texts.
bool issame(const cfnode *i1, const cfnode *i2) {
  if (i1->type == cf_param)
    return issametext(aspar(i1)->key, aspar(i2)->key) && issametext(aspar(i1)->val, aspar(i2)->val);
  if (i1->type == cf_group)
    return issametext(asgrp(i1)->cat, asgrp(i2)->cat) &&
           issametext(asgrp(i1)->name, asgrp(i2)->name);
  return std::strcmp(asrem(i1)->txt, asrem(i2)->txt) == 0;
}

/// True if the streams of two elements differ.
// NOLINTNEXTLINE(misc-no-recursion): a step for each link.ref
bool differs(cfdiff *diff, const cfnode *nd1, const cfnode *nd2) {
  if (!nd1 || !nd2)
    return nd1 != nd2;
  stream one(diff, nd1);
  stream two(diff, nd2);
  const bool refs = diff->opt & cf_diffref;
  for (;;) {
    const cfnode *i1 = one._cfdiffnext();
    const cfnode *i2 = two._cfdiffnext();
    if (!i1 || !i2)
      return i1 != i2;
    if (i1->type != i2->type)
      return true;
    if (refs && cfdiffnd(diff, i1->ref, i2->ref))
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
