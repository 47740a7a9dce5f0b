// Scope strings of the elements that a walk meets.
// SPDX-License-Identifier: MIT
#include "scope/names.h"

#include "scope/scope.h"

namespace cfcore {

void direct_names::begin(const cfgroup *holder) {
  push();
  const size_t size = _grpscope(nullptr, holder);
  _grpscope(buf.reserve(first + size + 1, first) + first, holder);
  last = first + size;
}

void direct_names::enter(const cfgroup *grp) {
  if (grp->type == cf_grpinst && !*grp->cat) {
    last = put(put(last, grp->name), ".");
  } else {
    push();
    last = put(grp->type == cf_grpinst ? put(first, grp->cat) : first, "::");
  }
}

void direct_names::leave(const cfgroup *grp) {
  if (grp->type == cf_grpinst && !*grp->cat)
    last -= std::strlen(grp->name) + 1;
  else
    pop();
}

const char *direct_names::name(const cfparam *par) {
  put(last, par->key);
  return buf.text() + first;
}

const char *direct_names::name(const cfgroup *grp) {
  const size_t at = put(put(last, grp->name), ".");
  if (*grp->cat)
    put(put(at, grp->cat), "::");
  return buf.text() + first;
}

/// Begins a prefix after the present one. Stores between them where the present one begins.
void direct_names::push() {
  std::memcpy(buf.reserve(last + sizeof first, last) + last, &first, sizeof first);
  first = last + sizeof first;
}

void direct_names::pop() {
  last = first - sizeof first;
  std::memcpy(&first, buf.text() + last, sizeof first);
}

const char *slot_names::name(const cfnode *nd) {
  auto *elem = const_cast<cfnode *>(nd); // the slot must not change it
  // One byte more than announced, and all cleared: so there is a terminator, even if the function
  // writes less than it announced or counts without the terminator.
  const size_t size = size_t{genscope(nullptr, elem)} + 1;
  char *text = buf.reserve(size);
  std::memset(text, 0, size);
  genscope(text, elem);
  return text;
}

} // namespace cfcore
