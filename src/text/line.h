// Line syntax: what kind a line is, and how it is cut.
// SPDX-License-Identifier: MIT
#pragma once

#include "text/classes.h"

#include <cstring>
#include <string_view>

namespace cf {

inline const char *skipspace(const char *p) {
  while (isspacechar(*p))
    ++p;
  return p;
}

inline bool isblank(const char *p) { return *skipspace(p) == '\0'; }

inline std::string_view between(const char *begin, const char *end) {
  return {begin, static_cast<size_t>(end - begin)};
}

/// Cuts the identifier at `p`, empty if there is none, and moves `p` behind it.
inline std::string_view cutword(const char *&p) {
  const char *begin = p;
  if (isletter(*p))
    do
      ++p;
    while (iswordchar(*p));
  return between(begin, p);
}

/// Looks at a line that begins with a word, if with any: a group head or a parameter.
template <class Told> auto lookword(const char *p, Told told) {
  const std::string_view first = cutword(p);
  if (first.empty())
    return told.none();
  p = skipspace(p);
  if (*p == '=')
    return told.param(first, p);
  const std::string_view second = cutword(p);
  p = skipspace(p);
  if (*p != '{' || !isblank(p + 1))
    return told.none();
  return second.empty() ? told.grpbeg({}, first) : told.grpbeg(first, second);
}

/// Looks once at a line and tells its kind, with the words and the mark (# or =) found on the way. No
/// line is of two kinds.
template <class Told> auto look(const char *row, Told told) {
  const char *p = skipspace(row);
  switch (*p) {
  case '\0': return told.empty();
  case '#': return told.remark(p);
  case '}': return isblank(p + 1) ? told.grpend() : told.none();
  default: return lookword(p, told);
  }
}

/// The text of a remark, behind its mark: up to the line's end, less one blank in front.
inline std::string_view cutremark(const char *mark) {
  const char *begin = mark + 1;
  if (*begin == ' ')
    ++begin;
  std::string_view text = begin;
  return text.substr(0, text.find('\n'));
}

/// The value of a parameter, behind its mark, without the white space around it.
inline std::string_view cutvalue(const char *mark) {
  const char *begin = skipspace(mark + 1);
  const char *end = begin + std::strlen(begin);
  while (end > begin && isspacechar(end[-1]))
    --end;
  return between(begin, end);
}

} // namespace cf
