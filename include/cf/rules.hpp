/// @file rules.hpp
/// @brief Rules: the stored form of what a schema says about keys and groups.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_RULES_HPP
#define CF_RULES_HPP

#include "names.hpp"
#include "number.hpp"
#include "ownership.hpp"

namespace cf::detail {

/// The type of a key.
enum class type { text, boolean, integer, real, duration, size, word, custom };

/// A distinct address for each T. The variable is not const, because a linker may merge constants
/// and functions.
template <class T> inline char tag_of{};
template <class T> inline const void *tag() { return &tag_of<T>; }

/// A word of an enumeration.
struct word {
  std::string text;
  std::uint64_t value;
};

/// A conversion of the application's own.
struct converter : counted {
  virtual ~converter() = default;
  /// Why a text is not a value; empty if it is.
  virtual std::string refusal(std::string_view text) const = 0;
};

inline std::string custom_reason(std::string_view text, const std::string &reason) {
  return joined({quoted(text), reason.empty() ? " is refused" : ": ", reason});
}

template <class T> struct converter_to : converter {
  virtual outcome<T> convert(std::string_view text) const = 0;
  std::string refusal(std::string_view text) const override {
    const outcome<T> result = convert(text);
    return result ? std::string() : custom_reason(text, result.reason());
  }
};

/// The default of a key whose type is the application's own.
struct custom_default : counted {
  virtual ~custom_default() = default;
};
template <class T> struct default_of : custom_default {
  explicit default_of(T given) : value(std::move(given)) {}
  T value;
};

/// What the schema says about one key.
struct key_rule {
  key_rule() = default;
  explicit key_rule(detail::type of) : type(of) {}

  std::string name{};
  detail::type type = type::text;
  const void *tag = nullptr; // the C++ type of words and custom values; NULL: text
  bool required = false, many = false, nonempty = false;
  char separator = '\0';                              // of a list; '\0': no list
  whole low = whole::least(), high = whole::most();   // of integers, sizes, nanoseconds
  double least = -std::numeric_limits<double>::max(); // of reals
  double most = std::numeric_limits<double>::max();
  std::vector<word> words{};
  shared<const converter> custom{};
  bool has_default = false;
  shared<const custom_default> custom_default_value{}; // the default of a custom type
  std::string default_text{};                          // the default as a text of a file
  std::string help{}, example{}, notice{};             // `notice`: of a deprecated key
  bool deprecated = false;

  const word *find_word(std::string_view text) const {
    for (const word &it : words)
      if (equal(it.text.c_str(), text))
        return &it;
    return nullptr;
  }
  const word *find_value(std::uint64_t value) const {
    for (const word &it : words)
      if (it.value == value)
        return &it;
    return nullptr;
  }
};

/// Writes a whole number in the notation of the key's type.
inline std::string written(const key_rule &rule, whole number) {
  switch (rule.type) {
  case type::duration: return duration_text(number);
  case type::size: return size_text(number);
  default: return to_text(number);
  }
}

/// "is not in 1..256", or the side of the range that is crossed if the other one is open.
inline std::string beyond(bool below, const std::string &low, const std::string &high) {
  if (!low.empty() && !high.empty())
    return joined({" is not in ", low, "..", high});
  return joined({below ? " is less than " : " is more than ", below ? low : high});
}

inline std::string low_text(const key_rule &rule) {
  if (rule.type == type::real)
    return rule.least == key_rule().least ? "" : to_text(rule.least);
  return rule.low == whole::least() ? "" : written(rule, rule.low);
}
inline std::string high_text(const key_rule &rule) {
  if (rule.type == type::real)
    return rule.most == key_rule().most ? "" : to_text(rule.most);
  return rule.high == whole::most() ? "" : written(rule, rule.high);
}

/// Reads an integer, a size or a duration, and checks its range.
inline outcome<whole> whole_of(const key_rule &rule, std::string_view text) {
  outcome<whole> result = rule.type == type::duration ? to_duration(text)
                          : rule.type == type::size   ? to_size(text)
                                                      : to_integer(text);
  if (result && (*result < rule.low || *result > rule.high))
    return refused(
        joined({shown(text), beyond(*result < rule.low, low_text(rule), high_text(rule))}));
  return result;
}

/// Reads a real number, and checks its range.
inline outcome<double> real_of(const key_rule &rule, std::string_view text) {
  outcome<double> result = to_real<double>(text);
  if (result && (*result < rule.least || *result > rule.most))
    return refused(
        joined({shown(text), beyond(*result < rule.least, low_text(rule), high_text(rule))}));
  return result;
}

inline std::string list_of(const std::vector<word> &words) {
  std::string list;
  for (const word &it : words)
    list += joined({list.empty() ? "" : ", ", it.text});
  return list;
}

/// Why a text is not a value of this key, or not an item if that is a list; empty if it is.
inline std::string refusal(const key_rule &rule, std::string_view text) {
  switch (rule.type) {
  case type::text: return rule.nonempty && text.empty() ? "must not be empty" : "";
  case type::boolean: return to_boolean(text).reason();
  case type::real: return real_of(rule, text).reason();
  case type::integer:
  case type::duration:
  case type::size: return whole_of(rule, text).reason();
  case type::custom: return rule.custom->refusal(text);
  case type::word: break;
  }
  return rule.find_word(text) ? "" : joined({quoted(text), " is not one of ", list_of(rule.words)});
}

/// Takes the next item from the front of a list, without the blanks around it. False if it was the
/// last.
inline bool take_item(std::string_view &rest, char separator, std::string_view &item) {
  const std::size_t end = separator ? rest.find(separator) : rest.npos;
  item = separator ? trimmed(rest.substr(0, end)) : rest;
  rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  return end != rest.npos;
}

/// Why a text is not a value of this key; empty if it is. `item` becomes the part at fault.
inline std::string refusal(const key_rule &rule, std::string_view text, std::string_view &item) {
  for (bool more = true; more;) {
    more = take_item(text, rule.separator, item);
    if (rule.separator && item.empty())
      return "an item of the list is empty";
    if (std::string reason = refusal(rule, item); !reason.empty())
      return reason;
  }
  return {};
}

/// The type of a key in a word or two.
inline std::string_view type_name(type kind) {
  constexpr std::string_view names[] = {"text",     "boolean", "integer", "real",
                                        "duration", "size",    "word",    "custom"};
  return names[static_cast<std::size_t>(kind)];
}

/// What a level of the schema describes.
enum class role {
  top,  ///< the file
  one,  ///< a group without category, by its name
  each, ///< the groups of a category
  any   ///< the groups without category of any name
};

/// What the schema says about the contents of a group.
struct level {
  detail::role role = role::top;
  std::string name{}; // of `one`, category of `each`, else empty
  bool many = false, required = false;
  std::size_t at_least = 0;
  bool hosts = false; // host names are allowed
  std::string help{};
  std::vector<key_rule> keys{};
  std::vector<level> groups{};

  // Set by seal().
  const level *above = nullptr;
  std::size_t id = 0;       // of the first key; its other keys and its groups follow
  bool reads_hosts = false; // at the top: a level allows host names
  std::size_t ids = 0;      // at the top: how many there are in all
  name_table table{};       // keys, and groups by their role
  const level *any_group = nullptr;
  bool demands = false; // a key or a group of it is required

  const key_rule *find_key(std::string_view key) const {
    const std::size_t place = table.find(key);
    return place == name_table::none ? nullptr : &keys[place];
  }
  /// The level of a group by category and name; NULL: unknown.
  const level *find_group(std::string_view category, std::string_view named) const {
    if (category.empty())
      if (const level *hit = find_role(role::one, named))
        return hit;
    return category.empty() ? any_group : find_role(role::each, category);
  }
  const level *find_role(detail::role wanted, std::string_view named) const {
    const std::size_t place = table.find(named, static_cast<std::size_t>(wanted));
    return place == name_table::none ? nullptr : &groups[place];
  }

  std::size_t id_of(const key_rule &rule) const {
    return id + static_cast<std::size_t>(&rule - keys.data());
  }
  std::size_t id_of(const level &group) const {
    return id + keys.size() + static_cast<std::size_t>(&group - groups.data());
  }
};

} // namespace cf::detail

#endif
