// Text comparison: equal as strcasecmp() tells, asked only where the first bytes leave it open.
// SPDX-License-Identifier: MIT
#pragma once

#include <strings.h>

namespace cf {

/// False if no locale takes two bytes for the two cases of one letter: in ASCII those differ in one
/// bit.
inline bool mayfold(unsigned char a, unsigned char b) { return (a | b) >= 0x80 || (a ^ b) == 0x20; }

inline bool equal(const char *a, const char *b) {
  if (*a != *b && !mayfold(static_cast<unsigned char>(*a), static_cast<unsigned char>(*b)))
    return false;
  return strcasecmp(a, b) == 0;
}

/// True if `text` is given as a criterion of a search.
inline bool given(const char *text) { return text && *text; }

} // namespace cf
