// Text comparison: equal as strcasecmp() tells, decided without a call for most texts.
// SPDX-License-Identifier: MIT
#pragma once

#include <cctype>

namespace cf {

/// True if two different bytes are the two cases of one letter. In ASCII those differ in one bit;
/// which letters the locale folds is still its own to say (a Turkish one keeps i and I apart).
inline bool samefold(unsigned char a, unsigned char b) {
  if ((a | b) < 0x80 && (a ^ b) != 0x20)
    return false;
  return std::tolower(a) == std::tolower(b);
}

inline bool equal(const char *a, const char *b) {
  for (;; ++a, ++b) {
    if (*a != *b && !samefold(static_cast<unsigned char>(*a), static_cast<unsigned char>(*b)))
      return false;
    if (*a == '\0')
      return true;
  }
}

/// True if `text` is given as a criterion of a search.
inline bool given(const char *text) { return text && *text; }

} // namespace cf
