// Text comparison: equal as strcasecmp() tells, asked only where the first bytes leave it open.
// SPDX-License-Identifier: MIT
#pragma once

#include <strings.h>

namespace cf {

/// False if no locale takes two bytes for the two cases of one letter: in ASCII those differ in one
/// bit at most; beyond, any two may be. One test of a sign, since two took a tenth of a lookup more.
inline bool mayfold(unsigned char a, unsigned char b) {
  return static_cast<signed char>(((a ^ b) & ~0x20) | (a & 0x80)) <= 0;
}

inline bool equal(const char *a, const char *b) {
  return mayfold(static_cast<unsigned char>(*b), static_cast<unsigned char>(*a)) &&
         strcasecmp(a, b) == 0;
}

/// True if `text` is given as a criterion of a search.
inline bool given(const char *text) { return text && *text; }

} // namespace cf
