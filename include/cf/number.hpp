/// @file number.hpp
/// @brief Numbers, durations and sizes as texts: read free of the locale, with a reason if refused.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_NUMBER_HPP
#define CF_NUMBER_HPP

#include "text.hpp"

#include <bit>
#include <charconv>
#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

#ifndef __cpp_lib_to_chars
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <locale.h>
#endif

namespace cf {

/// The reason why a text is not a value; what a function of `as<T>` returns to refuse it.
struct refused {
  std::string reason; ///< Completes the message; may be empty.
  /// @param why the reason.
  explicit refused(std::string why) : reason(std::move(why)) {}
};

/// A value of type T, or the reason why a text is none.
template <class T> class outcome {
public:
  /// Holds a value.
  template <std::convertible_to<T> U = T> outcome(U &&value) : held(std::forward<U>(value)) {}
  /// Holds no value.
  outcome(refused why) : why_not(std::move(why.reason)) {}

  /// @return true if there is a value.
  explicit operator bool() const noexcept { return held.has_value(); }
  /// @return the value, which must be there.
  T &operator*() & { return *held; }
  /// @return the value, which must be there.
  const T &operator*() const & { return *held; }
  /// @return the value, which must be there.
  T &&operator*() && { return *std::move(held); }
  /// @return the value. @throws std::bad_optional_access if there is none.
  const T &value() const { return held.value(); }
  /// @return why there is no value; empty if there is one.
  const std::string &reason() const noexcept { return why_not; }

private:
  std::optional<T> held;
  std::string why_not;
};

} // namespace cf

namespace cf::detail {

/// A whole number of any type: from -2^63 to 2^64 - 1.
struct whole {
  std::uint64_t bits = 0; // two's complement if negative
  bool negative = false;

  constexpr whole() = default;
  template <std::integral I>
  constexpr whole(I number) : bits(static_cast<std::uint64_t>(number)), negative(number < 0) {}
  constexpr whole(bool minus, std::uint64_t magnitude)
      : bits(minus ? 0 - magnitude : magnitude), negative(minus && magnitude > 0) {}

  constexpr std::uint64_t magnitude() const { return negative ? 0 - bits : bits; }

  constexpr std::strong_ordering operator<=>(const whole &other) const {
    if (negative != other.negative)
      return negative ? std::strong_ordering::less : std::strong_ordering::greater;
    return bits <=> other.bits; // of two negative ones too
  }
  constexpr bool operator==(const whole &) const = default;

  static constexpr whole least() { return std::numeric_limits<std::int64_t>::min(); }
  static constexpr whole most() { return std::numeric_limits<std::uint64_t>::max(); }
};

inline std::string to_text(whole number) {
  return joined({number.negative ? "-" : "", std::to_string(number.magnitude())});
}

inline refused not_a(std::string_view text, std::string_view what) {
  return refused(joined({quoted(text), " is not ", what}));
}

/// Why a text is not a number: not all of it is digits, or the number is out of range.
inline refused bad_digits(std::string_view text, std::errc error, std::string_view what) {
  return error == std::errc::result_out_of_range ? refused(shown(text).append(" is out of range"))
                                                 : not_a(text, what);
}

/// Removes "0x" before hexadecimal digits. True if it was there.
inline bool cut_hex(std::string_view &digits) {
  const bool hex = digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
  digits.remove_prefix(hex ? 2 : 0);
  return hex;
}

inline bool has_leading_zero(std::string_view digits) {
  return digits.size() > 1 && digits[0] == '0' && is_digit(digits[1]);
}

/// Takes an unsigned number from the front of `rest`.
inline std::errc take_digits(std::string_view &rest, std::uint64_t &number, int base) {
  const char *const end = rest.data() + rest.size();
  const auto [stop, error] = std::from_chars(rest.data(), end, number, base);
  rest = {stop, static_cast<std::size_t>(end - stop)};
  return error;
}

inline outcome<whole> to_integer(std::string_view text) {
  std::string_view rest = text;
  const bool minus = rest.starts_with('-');
  rest.remove_prefix(minus ? 1 : 0);
  if (has_leading_zero(rest))
    return refused(quoted(text).append(" has a leading zero"));
  std::uint64_t magnitude = 0;
  std::errc error = take_digits(rest, magnitude, cut_hex(rest) ? 16 : 10);
  if (!rest.empty())
    error = std::errc::invalid_argument;
  else if (error == std::errc() && minus && magnitude > whole::least().magnitude())
    error = std::errc::result_out_of_range;
  if (error != std::errc())
    return bad_digits(text, error, "an integer");
  return whole(minus, magnitude);
}

#ifdef __cpp_lib_to_chars
template <class T> std::from_chars_result take_real(const char *begin, const char *end, T &number) {
  const bool minus = begin != end && *begin == '-';
  std::string_view digits(begin + minus, static_cast<std::size_t>(end - begin - minus));
  const auto format = cut_hex(digits) ? std::chars_format::hex : std::chars_format::general;
  if (format == std::chars_format::general)
    return std::from_chars(begin, end, number);
  const auto result = std::from_chars(digits.data(), end, number, format);
  number = minus ? -number : number;
  return result;
}
#else
/// By the C library in the C locale, for standard libraries whose from_chars() takes no real
/// numbers.
template <class T> std::from_chars_result take_real(const char *begin, const char *end, T &number) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string text(begin, end);
  char *stop = nullptr;
  errno = 0;
  const double read = strtod_l(text.c_str(), &stop, plain);
  number = static_cast<T>(read);
  const bool infinite = number - number != T();
  const bool vanished = number == T() && (errno == ERANGE || read != 0);
  return {begin + (stop - text.c_str()),
          infinite || vanished ? std::errc::result_out_of_range : std::errc()};
}
#endif

/// True if a text begins as a number does: not with a blank, a sign or a word as "inf".
inline bool begins_number(std::string_view digits) {
  if (cut_hex(digits))
    return digits[0] == '.' || std::isxdigit(static_cast<unsigned char>(digits[0]));
  return !digits.empty() && (digits[0] == '.' || is_digit(digits[0]));
}

template <std::floating_point T> outcome<T> to_real(std::string_view text) {
  const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
  if (has_leading_zero(digits))
    return refused(quoted(text).append(" has a leading zero"));
  T number = 0;
  const char *const end = text.data() + text.size();
  if (!begins_number(digits))
    return not_a(text, "a number");
  const auto [stop, error] = take_real(text.data(), end, number);
  if (stop != end || error != std::errc())
    return bad_digits(text, stop == end ? error : std::errc::invalid_argument, "a number");
  return number;
}

template <std::floating_point T> std::string to_text(T number) {
  char buffer[128];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

/// A unit after a number, and what it is worth.
struct unit {
  std::string_view name;
  std::uint64_t worth;
};

inline constexpr unit time_units[] = {{"d", 86'400'000'000'000},
                                      {"h", 3'600'000'000'000},
                                      {"m", 60'000'000'000},
                                      {"s", 1'000'000'000},
                                      {"ms", 1'000'000},
                                      {"us", 1'000},
                                      {"ns", 1}};
inline constexpr unit size_units[] = {
    {"t", 1ULL << 40}, {"g", 1 << 30}, {"m", 1 << 20}, {"k", 1 << 10}};

/// Reads a duration such as "1h30m", in nanoseconds: each unit at most once, the larger first. It
/// may be as long as std::chrono::nanoseconds can hold, about 292 years.
inline outcome<whole> to_duration(std::string_view text) {
  constexpr std::uint64_t longest = std::numeric_limits<std::int64_t>::max();
  if (text == "0")
    return whole(0);
  std::uint64_t sum = 0;
  const unit *next = std::begin(time_units); // the first unit that may still come
  std::string_view rest = text;
  do {
    if (has_leading_zero(rest))
      return refused(quoted(text).append(" has a leading zero"));
    std::uint64_t number = 0;
    if (const auto error = take_digits(rest, number, 10); error != std::errc())
      return bad_digits(text, error, "a duration such as 250ms, 5s or 1h30m");
    if (rest.empty())
      return refused(quoted(text).append(" has no unit: d, h, m, s or ms"));
    const auto length =
        static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), is_digit) - rest.begin());
    next = std::find_if(next, std::end(time_units),
                        [&](const unit &it) { return it.name == rest.substr(0, length); });
    if (next == std::end(time_units))
      return not_a(text, "a duration such as 250ms, 5s or 1h30m");
    if (__builtin_mul_overflow(number, next->worth, &number) ||
        __builtin_add_overflow(sum, number, &sum) || sum > longest)
      return bad_digits(text, std::errc::result_out_of_range, "");
    rest.remove_prefix(length);
    ++next;
  } while (!rest.empty());
  return whole(sum);
}

/// A duration as text, the largest unit first.
inline std::string duration_text(whole nanoseconds) {
  if (nanoseconds == whole(0))
    return "0s";
  std::string text = nanoseconds.negative ? "-" : "";
  std::uint64_t rest = nanoseconds.magnitude();
  for (const unit &it : time_units) {
    if (rest >= it.worth)
      (text += std::to_string(rest / it.worth)) += it.name;
    rest %= it.worth;
  }
  return text;
}

/// Reads a size such as "64k", in bytes: a number, and at most one of the letters k, m, g and t in
/// either case.
inline outcome<whole> to_size(std::string_view text) {
  constexpr std::string_view what = "a size such as 4096, 64k or 10M";
  std::string_view rest = text;
  if (has_leading_zero(rest))
    return refused(quoted(text).append(" has a leading zero"));
  std::uint64_t number = 0;
  if (const auto error = take_digits(rest, number, cut_hex(rest) ? 16 : 10); error != std::errc())
    return bad_digits(text, rest.size() > 1 ? std::errc::invalid_argument : error, what);
  if (rest.empty())
    return whole(number);
  for (const unit &it : size_units)
    if (rest.size() == 1 && std::tolower(static_cast<unsigned char>(rest[0])) == it.name[0]) {
      if (__builtin_mul_overflow(number, it.worth, &number))
        return refused(shown(text).append(" is out of range"));
      return whole(number);
    }
  return not_a(text, what);
}

/// A size as text, with a unit where that is exact.
inline std::string size_text(whole bytes) {
  for (const unit &it : size_units)
    if (!bytes.negative && bytes.bits >= it.worth && bytes.bits % it.worth == 0)
      return std::to_string(bytes.bits / it.worth) +
             static_cast<char>(it.name[0] == 'k' ? 'k' : it.name[0] - 'a' + 'A');
  return to_text(bytes);
}

inline outcome<bool> to_boolean(std::string_view text) {
  const bool yes = equal("true", text);
  if (!yes && !equal("false", text))
    return not_a(text, "a boolean: true or false");
  return yes;
}

} // namespace cf::detail

#endif
