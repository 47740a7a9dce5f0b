// Scope strings during a check: kept along the walk, or asked of the application's function.
// SPDX-License-Identifier: MIT
#include "scope/names.h"

namespace cf {

const char *askscope(textbuf &buf, genscope_t genscope, cfnode *nd) {
  // Cleared, so that a function that writes less than it announced still leaves a text.
  const size_t size = size_t{genscope(nullptr, nd)} + 1;
  char *text = buf.reserve(size);
  std::memset(text, 0, size);
  genscope(text, nd);
  return text;
}

kept_names::kept_names(const cfparser *parser) : end(_grpscope(nullptr, parser->top->link.group)) {
  _grpscope(buf.reserve(end + 1), parser->top->link.group);
}

void kept_names::enter(const cfgroup *grp) {
  if (grp->type == cf_grpinst && !*grp->cat) {
    end = put(put(end, grp->name), ".");
  } else if (grp->type == cf_grpinst || grp->type == cf_grptop) {
    std::memcpy(buf.reserve(end + sizeof begin, end) + end, &begin, sizeof begin);
    begin = end + sizeof begin;
    end = put(grp->type == cf_grpinst ? put(begin, grp->cat) : begin, "::");
  }
}

void kept_names::leave(const cfgroup *grp) {
  if (grp->type == cf_grpinst && !*grp->cat) {
    end -= std::strlen(grp->name) + 1;
  } else if (grp->type == cf_grpinst || grp->type == cf_grptop) {
    end = begin - sizeof begin;
    std::memcpy(&begin, buf.text() + end, sizeof begin);
  }
}

const char *kept_names::of(const cfparam *par) {
  put(end, par->key);
  return buf.text() + begin;
}

const char *kept_names::of(const cfgroup *grp) {
  const size_t at = put(put(end, grp->name), ".");
  if (*grp->cat)
    put(put(at, grp->cat), "::");
  return buf.text() + begin;
}

} // namespace cf
