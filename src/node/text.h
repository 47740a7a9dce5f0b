// Text comparison: two texts are equal when strcasecmp() gives 0.
// SPDX-License-Identifier: MIT
#pragma once

#include <strings.h>

namespace cfcore {

/// False if two bytes are different characters for certain, even when case is ignored. True if they
/// differ at most in the bit of the case, or if one of them is not ASCII and the locale decides.
inline bool maybe_equal(unsigned char a, unsigned char b) {
  // As a signed byte: 0 without a difference, negative if either byte has its highest bit set.
  const auto difference = static_cast<signed char>(((a ^ b) & ~0x20) | (a & 0x80));
  return difference <= 0;
}

/// True if two texts are equal. In a search most texts differ in their first byte, so it is
/// compared before strcasecmp() is called.
inline bool equal(const char *text, const char *wanted) {
  return maybe_equal(static_cast<unsigned char>(*wanted), static_cast<unsigned char>(*text)) &&
         strcasecmp(text, wanted) == 0;
}

/// True if `text` is a criterion of a search: neither NULL nor empty.
inline bool given(const char *text) { return text && *text; }

} // namespace cfcore
