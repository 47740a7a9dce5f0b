/// @file convert.hpp
/// @brief Conversions between texts and the types of C++, without loss.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_CONVERT_HPP
#define CF_CONVERT_HPP

#include "rules.hpp"

#include <chrono>
#include <ratio>
#include <type_traits>

namespace cf::detail {

template <class T> inline constexpr bool is_duration = false;
template <class Rep, class Period>
inline constexpr bool is_duration<std::chrono::duration<Rep, Period>> = true;

template <class T>
concept textual = std::same_as<T, std::string> || std::same_as<T, std::string_view>;

/// What a program gives as a text; not NULL.
template <class T>
concept text_like =
    std::convertible_to<const T &, std::string_view> && !std::same_as<T, std::nullptr_t>;

/// What a program gives as a whole number: no bool and no character.
template <class T>
concept whole_like = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                     !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                     !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// What a program gives as a duration: a whole number of its unit.
template <class T>
concept duration_like = is_duration<T> && !std::chrono::treat_as_floating_point_v<typename T::rep>;

/// The kinds of types that get() may be asked for.
enum class want { text, boolean, integer, real, duration, word, custom };

template <class T> constexpr want want_of() {
  if constexpr (textual<T>)
    return want::text;
  else if constexpr (std::same_as<T, bool>)
    return want::boolean;
  else if constexpr (std::integral<T>)
    return want::integer;
  else if constexpr (std::floating_point<T>)
    return want::real;
  else if constexpr (is_duration<T>)
    return want::duration;
  else if constexpr (std::is_enum_v<T>)
    return want::word;
  else
    return want::custom;
}

inline std::string_view want_name(want wanted) {
  constexpr std::string_view names[] = {
      "a text",     "a bool",         "an integer",           "a floating-point number",
      "a duration", "an enumeration", "a type of the program"};
  return names[static_cast<std::size_t>(wanted)];
}

/// True if a key of this type gives or takes what is wanted. `tag` is that of the type.
inline bool fits(const key_rule &rule, want wanted, const void *tag) {
  if (rule.type == type::custom && rule.tag == tag)
    return true;
  switch (wanted) {
  case want::text: return true;
  case want::boolean: return rule.type == type::boolean;
  case want::integer: return rule.type == type::integer || rule.type == type::size;
  case want::real: return rule.type == type::real || rule.type == type::integer;
  case want::duration: return rule.type == type::duration;
  case want::word: return rule.type == type::word && rule.tag == tag;
  case want::custom: break;
  }
  return false;
}

/// A whole number as T; refused if it is not in the range of T.
template <std::integral T> outcome<T> as_integral(whole number, std::string_view text) {
  constexpr whole low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
  if (number < low || number > high)
    return refused(joined({shown(text), " is not in ", to_text(low), "..", to_text(high)}));
  return static_cast<T>(number.bits);
}

/// A whole number as T; refused if T cannot hold all its digits.
template <std::floating_point T> outcome<T> as_floating(whole number, std::string_view text) {
  const std::uint64_t magnitude = number.magnitude();
  if (magnitude &&
      std::bit_width(magnitude >> std::countr_zero(magnitude)) > std::numeric_limits<T>::digits)
    return refused(shown(text).append(" has more digits than the program's type"));
  return number.negative ? -static_cast<T>(magnitude) : static_cast<T>(magnitude);
}

/// Nanoseconds as T; refused if its unit or its range cannot express them.
template <class T> outcome<T> as_duration(whole nanoseconds, std::string_view text) {
  using rep = typename T::rep;
  using ticks = std::ratio_divide<std::nano, typename T::period>; // of T in a nanosecond
  const auto count = static_cast<std::int64_t>(nanoseconds.bits); // it is within 292 years
  if constexpr (std::chrono::treat_as_floating_point_v<rep>) {
    return T(static_cast<rep>(count) * static_cast<rep>(ticks::num) / static_cast<rep>(ticks::den));
  } else {
    std::int64_t product = 0;
    const bool fine = !__builtin_mul_overflow(count, std::int64_t{ticks::num}, &product);
    if (product % ticks::den != 0)
      return refused(shown(text).append(" is finer than the unit that the program asks for"));
    const whole result = product / ticks::den;
    if (!fine || result > whole(std::numeric_limits<rep>::max()))
      return refused(shown(text).append(" is more than the program's type holds"));
    return T(static_cast<rep>(result.bits));
  }
}

/// The rule that serves without a schema: the type that is asked for decides.
inline const key_rule &plain_rule(want wanted) {
  static const key_rule rules[] = {key_rule(type::text), key_rule(type::boolean),
                                   key_rule(type::integer), key_rule(type::real),
                                   key_rule(type::duration)};
  return rules[wanted <= want::duration ? static_cast<std::size_t>(wanted) : 0];
}

/// The result of `next` for a number, or why there is no number.
template <class Number, class Next> auto then(const outcome<Number> &from, Next next) {
  return from ? next(*from) : decltype(next(*from))(refused(from.reason()));
}

/// Converts a text of the file or the schema to T, which fits the rule.
template <class T> outcome<T> convert(const key_rule &rule, std::string_view text) {
  if (rule.type == type::custom && rule.tag == tag<T>()) {
    outcome<T> result = static_cast<const converter_to<T> &>(*rule.custom).convert(text);
    return result ? std::move(result) : refused(custom_reason(text, result.reason()));
  }
  if constexpr (std::same_as<T, bool>) {
    return to_boolean(text);
  } else if constexpr (std::integral<T>) {
    return then(whole_of(rule, text), [=](whole it) { return as_integral<T>(it, text); });
  } else if constexpr (std::floating_point<T>) {
    if (rule.type == type::integer)
      return then(whole_of(rule, text), [=](whole it) { return as_floating<T>(it, text); });
    return then(real_of(rule, text), [=](double) { return to_real<T>(text); });
  } else if constexpr (is_duration<T>) {
    return then(whole_of(rule, text), [=](whole it) { return as_duration<T>(it, text); });
  } else {
    if (std::string reason = refusal(rule, text); !reason.empty())
      return refused(std::move(reason));
    if constexpr (textual<T>)
      return T(text);
    else if constexpr (std::is_enum_v<T>)
      return static_cast<T>(rule.find_word(text)->value);
    else
      return refused("is of another type"); // not reached: it does not fit
  }
}

/// A value that the program gives, as a text.
struct draft {
  std::string text{};
  want given{};                // what it was
  const void *tag = nullptr;   // of an enumeration
  std::uint64_t number = 0;    // of an enumeration, whose text only the schema knows
  const char *fault = nullptr; // why no text can express it; NULL: one can
};

template <class T>
concept writable = text_like<T> || std::same_as<T, bool> || whole_like<T> ||
    std::floating_point<T> || duration_like<T> || std::is_enum_v<T>;

template <class Rep, class Period>
draft duration_draft(const std::chrono::duration<Rep, Period> &time) {
  using worth = std::ratio_divide<Period, std::nano>; // nanoseconds of a tick
  const whole count = time.count();
  std::int64_t product = 0;
  if ((!count.negative && count > whole(std::numeric_limits<std::int64_t>::max())) ||
      __builtin_mul_overflow(static_cast<std::int64_t>(count.bits), std::int64_t{worth::num},
                             &product))
    return {.given = want::duration, .fault = "the duration is out of range"};
  if (product % worth::den != 0)
    return {.given = want::duration, .fault = "the duration is finer than a nanosecond"};
  return {.text = duration_text(whole(product / worth::den)), .given = want::duration};
}

template <writable T> draft to_draft(const T &value) {
  if constexpr (text_like<T>)
    return {.text = std::string(std::string_view(value)), .given = want::text};
  else if constexpr (std::same_as<T, bool>)
    return {.text = value ? "true" : "false", .given = want::boolean};
  else if constexpr (std::integral<T>)
    return {.text = to_text(whole(value)), .given = want::integer};
  else if constexpr (std::floating_point<T>)
    return {.text = to_text(value), .given = want::real};
  else if constexpr (is_duration<T>)
    return duration_draft(value);
  else
    return {.given = want::word, .tag = tag<T>(), .number = static_cast<std::uint64_t>(value)};
}

} // namespace cf::detail

#endif
