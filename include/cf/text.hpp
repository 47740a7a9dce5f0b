/// @file text.hpp
/// @brief Texts: equality without case, names, and how texts of a file are shown in messages.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_TEXT_HPP
#define CF_TEXT_HPP

#include <algorithm>
#include <cctype>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <strings.h>

namespace cf {

/// What the name of a group may consist of. Keys and categories are always identifiers.
enum class names {
  identifiers, ///< A letter, then letters, digits and underscores.
  hosts ///< Also `-`, `.` and `:`, and a digit first, for names such as `app-01.example.com`.
};

} // namespace cf

namespace cf::detail {

/// Concatenates texts.
inline std::string joined(std::initializer_list<std::string_view> parts) {
  std::string whole;
  for (const std::string_view part : parts)
    whole += part;
  return whole;
}

/// Compares two texts without case. The sign of the result is that of strcasecmp().
inline int compare(const char *text, std::string_view other) {
  const int sign = other.empty() ? 0 : strncasecmp(text, other.data(), other.size());
  return sign ? sign : std::strlen(text) != other.size();
}

/// True if two texts are equal without case, as everywhere in the library.
inline bool equal(const char *text, std::string_view wanted) {
  return std::strlen(text) == wanted.size() && compare(text, wanted) == 0;
}

inline bool is_blank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
inline bool is_letter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
inline bool is_digit(char c) { return c >= '0' && c <= '9'; }
inline bool is_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }
inline bool is_host(char c) { return is_word(c) || c == '-' || c == '.' || c == ':'; }

inline bool is_name(std::string_view text, names allowed) {
  if (text.empty())
    return false;
  if (allowed == names::hosts)
    return is_word(text[0]) && text[0] != '_' && std::all_of(text.begin(), text.end(), is_host);
  return is_letter(text[0]) && std::all_of(text.begin(), text.end(), is_word);
}

/// What a name consists of, for messages.
inline std::string_view name_rule(names allowed) {
  return allowed == names::hosts ? "letters, digits, - . : and underscores, a letter or digit first"
                                 : "letters, digits and underscores, a letter first";
}

inline std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back()))
    text.remove_suffix(1);
  return text;
}

inline constexpr auto everything = static_cast<std::size_t>(-1);

/// A text of a file in a form for messages: control bytes become \xNN, and after `most` bytes the
/// text is cut.
inline std::string shown(std::string_view text, std::size_t most = 60) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (result.size() >= most && (byte & 0xc0) != 0x80) // not inside a character of UTF-8
      return result.append("...");
    if (byte < 0x20 || byte == 0x7f)
      (((result += "\\x") += digits[byte >> 4]) += digits[byte & 15]);
    else
      result += c;
  }
  return result;
}

inline std::string quoted(std::string_view text) { return joined({"\"", shown(text), "\""}); }

/// The longest line that can be read, in bytes, without the line end.
inline constexpr std::size_t longest_line = 4094;

/// Why a line of `length` bytes cannot be read; empty if it can.
inline std::string length_reason(std::size_t length) {
  if (length <= longest_line)
    return {};
  return joined({"the line would have more than ", std::to_string(longest_line), " bytes"});
}

/// Why a text cannot be the value in a line in which `before` bytes precede it; empty if it can.
inline std::string unwritable(std::string_view text, std::size_t before) {
  if (text.find_first_of(std::string_view("\n\0", 2)) != text.npos)
    return quoted(text).append(" has a line end or a zero byte");
  if (trimmed(text) != text)
    return quoted(text).append(" begins or ends with a blank");
  return length_reason(before + text.size());
}

inline constexpr std::size_t longest_word = 40;

/// The number of edits that make `wanted` of `text`: bytes added, removed, changed or swapped with
/// their neighbour; case does not count. For texts of at most `longest_word` bytes.
inline std::size_t distance(std::string_view text, std::string_view wanted) {
  std::size_t row[3][longest_word + 1]; // the last rows of the table: before last, last, this
  const auto fold = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
  for (std::size_t i = 0; i <= text.size(); ++i) {
    std::size_t *const now = row[i % 3], *const last = row[(i + 2) % 3],
                       *const older = row[(i + 1) % 3];
    now[0] = i;
    for (std::size_t j = 1; j <= wanted.size(); ++j) {
      if (i == 0) {
        now[j] = j;
        continue;
      }
      const bool same = fold(text[i - 1]) == fold(wanted[j - 1]);
      now[j] = std::min({last[j] + 1, now[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      if (i > 1 && j > 1 && fold(text[i - 1]) == fold(wanted[j - 2]) &&
          fold(text[i - 2]) == fold(wanted[j - 1]))
        now[j] = std::min(now[j], older[j - 2] + 1);
    }
  }
  return row[text.size() % 3][wanted.size()];
}

/// Finds the name that a misspelt word probably means, among those that are offered.
class spelling {
public:
  explicit spelling(std::string_view word)
      : text(word), limit(word.size() > longest_word ? 0 : (word.size() + 1) / 3 + 1) {}

  void offer(std::string_view name) {
    const std::size_t size = name.size();
    if (size > longest_word || size >= text.size() + limit || text.size() >= size + limit)
      return;
    if (const std::size_t edits = distance(text, name); edits < limit) {
      limit = edits;
      best = name;
    }
  }

  /// "did you mean NAME?", or nothing.
  std::string hint() const {
    return best.empty() ? std::string() : joined({"did you mean ", best, "?"});
  }

private:
  std::string_view text, best;
  std::size_t limit; // a name must need fewer edits than this
};

} // namespace cf::detail

#endif
