// Character classes: a table for ASCII, the locale for all other bytes.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cctype>

namespace cfcore {

enum charclass : unsigned char {
  in_space = 1,  // white space
  in_letter = 2, // letter
  in_word = 4,   // letter, digit or underscore
  in_locale = 8  // 0x80 and above: the locale decides
};

inline constexpr std::array<unsigned char, 256> char_classes = [] {
  std::array<unsigned char, 256> classes{};
  for (unsigned c = 0; c < 256; ++c) {
    const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    const bool digit = c >= '0' && c <= '9';
    const bool space = c == ' ' || (c >= '\t' && c <= '\r');
    classes[c] = static_cast<unsigned char>((space ? in_space : 0) | (letter ? in_letter : 0) |
                                            (letter || digit || c == '_' ? in_word : 0) |
                                            (c >= 0x80 ? in_locale : 0));
  }
  return classes;
}();

/// True if `ch` is of class `wanted`; for bytes beyond ASCII `inlocale` decides.
template <class InLocale> bool isin(charclass wanted, char ch, InLocale inlocale) {
  const auto c = static_cast<unsigned char>(ch);
  if (char_classes[c] & wanted)
    return true;
  return char_classes[c] & in_locale && inlocale(c);
}

inline bool isspacechar(char ch) {
  return isin(in_space, ch, [](int c) { return std::isspace(c) != 0; });
}

inline bool isletter(char ch) {
  return isin(in_letter, ch, [](int c) { return std::isalpha(c) != 0; });
}

inline bool iswordchar(char ch) {
  return isin(in_word, ch, [](int c) { return std::isalnum(c) != 0; });
}

} // namespace cfcore
