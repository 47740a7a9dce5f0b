// Scope strings during a check: kept along the walk, or asked of the application's function.
// SPDX-License-Identifier: MIT
#include "scope/names.h"

namespace cf {

const char *askscope(textbuf &buf, genscope_t genscope, cfnode *nd) {
  // Cleared, so that a function that writes less than it announced still leaves a text.
  const size_t size = size_t{genscope(nullptr, nd)} + 1;
  char *text = buf.reserve(size, 0);
  std::memset(text, 0, size);
  genscope(text, nd);
  return text;
}

kept_names::kept_names(const cfparser *parser) {
  const cfgroup *above = parser->top->link.group;
  end = _grpscope(nullptr, above);
  _grpscope(buf.reserve(end + 1, 0), above);
}

/// Writes a text at `at`. Gives the place of its terminator.
inline size_t kept_names::put(size_t at, const char *text) {
  const size_t size = std::strlen(text) + 1;
  std::memcpy(buf.reserve(at + size, at) + at, text, size);
  return at + size - 1;
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
