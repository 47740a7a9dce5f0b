// Line syntax: the kind of a line, and where it is cut.
// SPDX-License-Identifier: MIT
#pragma once

#include "text/classes.h"

#include <cstring>
#include <string_view>

namespace cfcore {

/// The kind of a line; `none` is a syntax error.
enum class linekind { none, empty, remark, grpbeg, grpend, param };

/// What classify() finds in a line.
struct line {
  linekind kind = linekind::none;
  std::string_view cat{};     ///< category of a group, empty if it has none
  std::string_view word{};    ///< name of a group, key of a parameter
  const char *mark = nullptr; ///< the # of a remark, the = of a parameter
};

/// The first character from `p` on that is no white space.
inline const char *skipspace(const char *p) {
  while (isspacechar(*p))
    ++p;
  return p;
}

/// The end of the text from `begin` to `end`, without white space at its end.
inline const char *cutspace(const char *begin, const char *end) {
  while (end > begin && isspacechar(end[-1]))
    --end;
  return end;
}

inline bool isblank(const char *p) { return *skipspace(p) == '\0'; }

inline std::string_view between(const char *begin, const char *end) {
  return {begin, static_cast<size_t>(end - begin)};
}

/// Cuts the identifier at `p`, empty if there is none, and moves `p` after it.
inline std::string_view cutword(const char *&p) {
  const char *begin = p;
  if (isletter(*p))
    do
      ++p;
    while (iswordchar(*p));
  return between(begin, p);
}

/// Classifies a line that can only be a group head or a parameter, as both begin with a word.
inline line classifyword(const char *p) {
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

/// The kind of a line and its parts. A line is of one kind at most, so no order of tests matters.
inline line classify(const char *row) {
  const char *p = skipspace(row);
  switch (*p) {
  case '\0': return {linekind::empty};
  case '#': return {.kind = linekind::remark, .mark = p};
  case '}': return {isblank(p + 1) ? linekind::grpend : linekind::none};
  default: return classifyword(p);
  }
}

/// The text of a remark: from its mark to the newline, without the mark and one blank after it.
inline std::string_view cutremark(const char *mark) {
  const char *begin = mark + 1;
  if (*begin == ' ')
    ++begin;
  std::string_view text = begin;
  return text.substr(0, text.find('\n'));
}

/// The value of a parameter: what follows its mark, without white space at either end.
inline std::string_view cutvalue(const char *mark) {
  const char *begin = skipspace(mark + 1);
  return between(begin, cutspace(begin, begin + std::strlen(begin)));
}

} // namespace cfcore
