// Line syntax: what kind a line is, and how it is cut.
// SPDX-License-Identifier: MIT
#pragma once

#include "text/classes.h"

#include <cstring>
#include <string_view>

namespace cf {

enum class linekind { none, empty, remark, grpbeg, grpend, param };

/// What one look at a line tells. No line is of two kinds.
struct line {
  linekind kind = linekind::none;
  std::string_view cat{};     ///< category of a group, empty if it has none
  std::string_view word{};    ///< name of a group, key of a parameter
  const char *mark = nullptr; ///< the # of a remark, the = of a parameter
};

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
inline line lookword(const char *p) {
  line it;
  it.word = cutword(p);
  if (it.word.empty())
    return it;
  p = skipspace(p);
  if (*p == '=') {
    it.kind = linekind::param;
    it.mark = p;
    return it;
  }
  if (const std::string_view name = cutword(p); !name.empty()) {
    it.cat = it.word;
    it.word = name;
    p = skipspace(p);
  }
  if (*p == '{' && isblank(p + 1))
    it.kind = linekind::grpbeg;
  return it;
}

inline line look(const char *row) {
  const char *p = skipspace(row);
  switch (*p) {
  case '\0': return {linekind::empty};
  case '#': return {.kind = linekind::remark, .mark = p};
  case '}': return {isblank(p + 1) ? linekind::grpend : linekind::none};
  default: return lookword(p);
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
