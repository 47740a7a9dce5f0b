/// @file builders.hpp
/// @brief Builders: how a key may be used, and what each type takes as its default.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_BUILDERS_HPP
#define CF_BUILDERS_HPP

#include "convert.hpp"

#include <initializer_list>
#include <stdexcept>

namespace cf {

namespace detail {

/// Throws std::logic_error: the schema contradicts itself.
[[noreturn]] inline void contradiction(const std::string &name, const std::string &why) {
  throw std::logic_error(joined({"schema: ", name, ": ", why}));
}

/// Throws std::logic_error unless a condition holds.
inline void demand(bool holds, const std::string &name, const char *why) {
  if (!holds)
    contradiction(name, why);
}

/// Throws std::logic_error unless a file can give the text as a value of the key.
inline void verify_text(const key_rule &rule, std::string_view text, std::string_view what) {
  std::string_view item;
  std::string reason = unwritable(text, rule.name.size() + 3);
  if (reason.empty())
    reason = refusal(rule, text, item);
  if (!reason.empty())
    contradiction(rule.name, joined({what, " ", reason}));
}

/// True for what can separate items: not letters, digits, blanks, and what else numbers contain.
inline bool is_separator(char c) {
  return std::ispunct(static_cast<unsigned char>(c)) && c != '-' && c != '.' && c != '_';
}

/// Throws std::logic_error if a rule contradicts itself.
inline void verify(const key_rule &rule) {
  const std::string &name = rule.name;
  demand(is_name(name, names::identifiers), name,
         "a key consists of letters, digits and underscores");
  demand(rule.low <= rule.high && rule.least <= rule.most, name, "the range is empty");
  demand(rule.type != type::size || rule.high >= whole(0), name, "the range is below zero");
  demand(rule.type != type::word || !rule.words.empty(), name, "the list of words is empty");
  demand(!rule.required || !rule.has_default, name, "required, but with a default");
  demand(!rule.required || !rule.deprecated, name, "required, but deprecated");
  demand(!rule.many || !rule.separator, name, "either many values or a list");
  demand(!rule.separator || is_separator(rule.separator), name, "items may contain the separator");
  for (const word &it : rule.words) {
    demand(rule.find_word(it.text) == &it, name, "a word occurs twice");
    verify_text(rule, it.text, "the word");
  }
  if (rule.has_default && !rule.custom_default_value)
    verify_text(rule, rule.default_text, "the default");
  if (!rule.example.empty())
    verify_text(rule, rule.example, "the example");
}

/// What the builders of all types have in common.
class key_base {
public:
  const key_rule &rule() const { return made; } ///< What was declared so far.

protected:
  key_rule made;
};

/// The calls that the builders of all types share. Each returns the builder itself.
template <class Self> class key_builder : public key_base {
public:
  /// The key must be there, in each group that is there.
  Self &required() { return set(made.required, true); }
  /// The key may be there any number of times.
  Self &many() { return set(made.many, true); }
  /// The value is a list in one line. Blanks around an item do not count; no item may be empty.
  Self &list(char separator = ',') { return set(made.separator, separator); }
  /// What the key is for; used in samples and tables. Lines are separated by line ends.
  Self &help(std::string text) { return set(made.help, std::move(text)); }
  /// A value for the sample file, needed where none can be made: see schema::sample().
  Self &example(std::string text) { return set(made.example, std::move(text)); }
  /// Using the key is worth a warning, with this text.
  Self &deprecated(std::string text) {
    made.deprecated = true;
    return set(made.notice, std::move(text));
  }

protected:
  Self &self() { return static_cast<Self &>(*this); }
  template <class Member, class Value> Self &set(Member &member, Value &&value) {
    member = std::forward<Value>(value);
    return self();
  }
  /// Sets the default.
  Self &by_default(const draft &given) {
    if (given.fault)
      contradiction(made.name, given.fault);
    made.has_default = true;
    return set(made.default_text, given.text);
  }
  key_builder(std::string name, detail::type type) {
    made.name = std::move(name);
    made.type = type;
  }
};

/// A key of type text.
class text_key : public key_builder<text_key> {
public:
  explicit text_key(std::string name) : key_builder(std::move(name), type::text) {}
  /// An empty text is an error.
  text_key &nonempty() { return set(made.nonempty, true); }
  /// The value if the file does not say.
  template <text_like T> text_key &otherwise(const T &value) { return by_default(to_draft(value)); }
};

/// A key of type boolean.
class boolean_key : public key_builder<boolean_key> {
public:
  explicit boolean_key(std::string name) : key_builder(std::move(name), type::boolean) {}
  /// The value if the file does not say.
  template <std::same_as<bool> T> boolean_key &otherwise(T value) {
    return by_default(to_draft(value));
  }
};

/// A key of type integer or size.
class whole_key : public key_builder<whole_key> {
public:
  whole_key(std::string name, detail::type type, whole low, whole high)
      : key_builder(std::move(name), type) {
    made.low = low;
    made.high = high;
  }
  /// The value if the file does not say.
  template <whole_like T> whole_key &otherwise(T value) { return by_default(to_draft(value)); }
};

/// A key of type real.
class real_key : public key_builder<real_key> {
public:
  real_key(std::string name, double low, double high) : key_builder(std::move(name), type::real) {
    made.least = low;
    made.most = high;
  }
  /// The value if the file does not say.
  template <class T>
  requires std::floating_point<T> || whole_like<T> real_key &otherwise(T value) {
    return by_default(to_draft(value));
  }
};

/// A key of type duration. Its limits are in nanoseconds.
class duration_key : public key_builder<duration_key> {
public:
  duration_key(std::string name, whole low, whole high)
      : key_builder(std::move(name), type::duration) {
    made.low = low;
    made.high = high;
  }
  /// The value if the file does not say.
  template <duration_like T> duration_key &otherwise(T value) {
    return by_default(to_draft(value));
  }
};

/// A key whose value is one of some words.
class word_key : public key_builder<word_key> {
public:
  word_key(std::string name, std::initializer_list<const char *> words)
      : key_builder(std::move(name), type::word) {
    for (const char *it : words)
      made.words.push_back({it, 0});
  }
  /// The value if the file does not say.
  template <text_like T> word_key &otherwise(const T &value) { return by_default(to_draft(value)); }
};

/// A key whose value is one of some words, each for a value of the enumeration E.
template <class E> class enum_key : public key_builder<enum_key<E>> {
public:
  enum_key(std::string name, std::initializer_list<std::pair<const char *, E>> words)
      : key_builder<enum_key>(std::move(name), type::word) {
    this->made.tag = tag<E>();
    for (const auto &[text, value] : words)
      this->made.words.push_back({text, static_cast<std::uint64_t>(value)});
  }
  /// The value if the file does not say.
  enum_key &otherwise(E value) {
    const word *it = this->made.find_value(static_cast<std::uint64_t>(value));
    demand(it != nullptr, this->made.name, "the default is not one of the words");
    return this->by_default({.text = it->text});
  }
};

/// Calls the application's function, with the text in the form that it takes.
template <class T, class F> struct calling : converter_to<T> {
  explicit calling(F function) : call(std::move(function)) {}
  outcome<T> convert(std::string_view text) const override {
    if constexpr (std::is_invocable_v<const F &, std::string_view>)
      return call(text);
    else
      return call(std::string(text).c_str());
  }
  F call;
};

/// A key of a type of the application.
template <class T> class custom_key : public key_builder<custom_key<T>> {
public:
  custom_key(std::string name, shared<const converter> function)
      : key_builder<custom_key>(std::move(name), type::custom) {
    this->made.tag = tag<T>();
    this->made.custom = std::move(function);
  }
  /// The value if the file does not say.
  custom_key &otherwise(T value) {
    this->made.custom_default_value =
        shared<const custom_default>(new default_of<T>(std::move(value)));
    return this->set(this->made.has_default, true);
  }
};

} // namespace detail

} // namespace cf

#endif
