// Text comparison: equal as strcasecmp() tells, asked only where the first bytes leave it open.
// SPDX-License-Identifier: MIT
#pragma once

#include <strings.h>

namespace cf {

/// True if two bytes may be the same letter in some locale: in ASCII if they differ in nothing but the
/// bit of the case, and beyond ASCII always. One test of a sign: two took 4 % of a lookup in a tree more.
inline bool mayfold(unsigned char a, unsigned char b) {
  return static_cast<signed char>(((a ^ b) & ~0x20) | (a & 0x80)) <= 0;
}

inline bool equal(const char *text, const char *wanted) {
  return mayfold(static_cast<unsigned char>(*wanted), static_cast<unsigned char>(*text)) &&
         strcasecmp(text, wanted) == 0;
}

/// True if `text` is given as a criterion of a search.
inline bool given(const char *text) { return text && *text; }

} // namespace cf
