// Comparison: two elements, each as the stream of the elements in it that are compared.
// SPDX-License-Identifier: MIT
#include "node/link.h"
#include "node/slots.h"
#include "scope/names.h"
#include "scope/scope.h"

#include <cstring>
#include <strings.h>

using namespace cfcore;

namespace {

int chkscope(const char *) { return 1; }

constexpr slots defaults{slot{&cfdiff::genscope, genscope}, slot{&cfdiff::chkscope, chkscope}};

bool differs_unfiltered(cfdiff *diff, const cfnode *nd1, const cfnode *nd2);
bool differs_direct(cfdiff *diff, const cfnode *nd1, const cfnode *nd2);
bool differs_slot(cfdiff *diff, const cfnode *nd1, const cfnode *nd2);

} // namespace

cfdiff *cfdiffdfl(cfdiff *diff) {
  defaults.fill(diff);
  return diff;
}

int cfdiffnd(cfdiff *diff, const cfnode *nd1, const cfnode *nd2) {
  bool differ;
  if (diff->chkscope == chkscope)
    differ = differs_unfiltered(diff, nd1, nd2);
  else if (diff->genscope == genscope)
    differ = differs_direct(diff, nd1, nd2);
  else
    differ = differs_slot(diff, nd1, nd2);
  diff->diff = differ ? 1 : 0;
  return diff->diff;
}

namespace {

/// The filter of a comparison that excludes no element.
struct no_filter {
  void begin(const cfgroup *) {}
  void end() {}
  void enter(const cfgroup *) {}
  void leave(const cfgroup *) {}
  bool _cfdiffscope(const void *) { return true; }
};

/// The filter that asks the application whether an element is compared.
template <class Names> class filter : public Names {
public:
  template <class... Arg>
  explicit filter(const cfdiff *record, Arg... arg) : Names(arg...), diff(record) {}
  template <class Element> bool _cfdiffscope(const Element *elem) {
    return diff->chkscope(this->name(elem)) != 0;
  }

private:
  const cfdiff *diff;
};

/// One side of a comparison: of an element and all below it, those that are compared, in order.
/// `Filter` is no_filter or a reference to another filter.
template <class Filter> class stream {
public:
  stream(const cfdiff *diff, const cfnode *nd, Filter check)
      : it(nd), end(nd->next), remarks(diff->opt & cf_diffrem), filter(check) {
    filter.begin(nd->group);
  }

  const cfnode *_cfdiffnext(); ///< NULL at the end

private:
  const cfnode *it;  // the next node to look at
  const cfnode *end; // the node after the element, or NULL; its anchor leads there, too
  bool remarks;
  [[no_unique_address]] Filter filter;
};

template <class Filter> const cfnode *stream<Filter>::_cfdiffnext() {
  while (it != end) {
    const cfnode *nd = it;
    it = nd->next;
    if (nd->type == cf_param) {
      if (filter._cfdiffscope(aspar(nd)))
        return nd;
    } else if (nd->type == cf_anchor) {
      if (isowner(nd->group))
        filter.leave(nd->group);
      it = nd->group->link.next;
    } else if (nd->type == cf_remark) {
      if (remarks)
        return nd;
    } else if (asgrp(nd)->type != cf_grpinst) {
      it = asgrp(nd)->elem.next;
      if (asgrp(nd)->type == cf_grptop)
        filter.enter(asgrp(nd));
    } else if (filter._cfdiffscope(asgrp(nd))) {
      it = asgrp(nd)->elem.next;
      filter.enter(asgrp(nd));
      return nd;
    }
  }
  return nullptr;
}

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

/// True if the streams of two elements differ. The streams of targets share the filters of their
/// sides, so that a step along `link.ref` takes little of the stack.
template <class Filter> // NOLINTNEXTLINE(misc-no-recursion): one frame for each step along link.ref
bool differs(const cfdiff *diff, const cfnode *nd1, const cfnode *nd2, Filter one, Filter two) {
  if (!nd1 || !nd2)
    return nd1 != nd2;
  stream<Filter> side1(diff, nd1, one);
  stream<Filter> side2(diff, nd2, two);
  const bool refs = diff->opt & cf_diffref;
  for (;;) {
    const cfnode *i1 = side1._cfdiffnext();
    const cfnode *i2 = side2._cfdiffnext();
    if (!i1 || !i2) {
      // If these are targets, the streams of their references go on. After a difference none does.
      one.end();
      two.end();
      return i1 != i2;
    }
    if (i1->type != i2->type)
      return true;
    if (refs && differs<Filter>(diff, i1->ref, i2->ref, one, two))
      return true;
    if (!issame(i1, i2))
      return true;
  }
}

bool differs_unfiltered(cfdiff *diff, const cfnode *nd1, const cfnode *nd2) {
  return differs(diff, nd1, nd2, no_filter(), no_filter());
}

bool differs_direct(cfdiff *diff, const cfnode *nd1, const cfnode *nd2) {
  filter<direct_names> one(diff);
  filter<direct_names> two(diff);
  return differs<filter<direct_names> &>(diff, nd1, nd2, one, two);
}

bool differs_slot(cfdiff *diff, const cfnode *nd1, const cfnode *nd2) {
  filter<slot_names> both(diff, diff->genscope);
  return differs<filter<slot_names> &>(diff, nd1, nd2, both, both);
}

} // namespace
