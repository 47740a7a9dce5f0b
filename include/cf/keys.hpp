/// @file keys.hpp
/// @brief Keys of a schema: their types.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_KEYS_HPP
#define CF_KEYS_HPP

#include "builders.hpp"

namespace cf {

/// A key of a schema: its type comes first, then how it may be used. For the types see also
/// group::get().
class key {
public:
  /// @param name an identifier.
  explicit key(std::string name) : called(std::move(name)) {}

  /// Any text of one line.
  detail::text_key text() const { return detail::text_key(called); }
  /// `true` or `false`, in any case.
  detail::boolean_key boolean() const { return detail::boolean_key(called); }
  /// An integer of any size that 64 bits hold, decimal or hexadecimal after 0x.
  detail::whole_key integer() const { return whole(detail::type::integer); }
  /// An integer of at least `low`.
  template <detail::whole_like L> detail::whole_key integer(L low) const {
    return whole(detail::type::integer, low);
  }
  /// An integer from `low` to `high`.
  template <detail::whole_like L, detail::whole_like H>
  detail::whole_key integer(L low, H high) const {
    return whole(detail::type::integer, low, high);
  }
  /// A number with a point, in any locale.
  detail::real_key real(double low = std::numeric_limits<double>::lowest(),
                        double high = std::numeric_limits<double>::max()) const {
    return {called, low, high};
  }
  /// A time as 250ms, 5s, 1h30m or 14d: the units d, h, m, s, ms, us and ns, the larger first.
  detail::duration_key duration() const {
    return {called, detail::whole::least(), detail::whole::most()};
  }
  /// A time from `low` to `high`.
  template <detail::duration_like L, detail::duration_like H>
  detail::duration_key duration(L low, H high) const {
    return {called, nanoseconds(low), nanoseconds(high)};
  }
  /// A number of bytes as 4096, 64k, 10M or 1G: the units are powers of 1024.
  detail::whole_key bytes() const { return whole(detail::type::size); }
  /// A number of bytes from `low` to `high`.
  template <detail::whole_like L, detail::whole_like H>
  detail::whole_key bytes(L low, H high) const {
    return whole(detail::type::size, low, high);
  }
  /// One of these words, in any case.
  detail::word_key words(std::initializer_list<const char *> list) const { return {called, list}; }
  /// One of these words, in any case, which stand for values of the enumeration E.
  template <class E>
  requires std::is_enum_v<E> detail::enum_key<E>
  words(std::initializer_list<std::pair<const char *, E>> list)
  const { return {called, list}; }
  /// A type of the application. The function is called at the load and by each get(), in the
  /// thread that makes the call.
  /// @param function takes a text, as std::string_view or anything made of a C string, and returns
  ///     a T or cf::outcome<T>. What it throws is passed on.
  template <class T, class F> detail::custom_key<T> as(F function) const {
    return {called, detail::shared<const detail::converter>(
                        new detail::calling<T, F>(std::move(function)))};
  }

private:
  std::string called;

  detail::whole_key whole(detail::type type, detail::whole low = detail::whole::least(),
                          detail::whole high = detail::whole::most()) const {
    return {called, type, low, high};
  }
  template <class D> detail::whole nanoseconds(D time) const {
    const detail::draft given = detail::to_draft(time);
    const outcome<detail::whole> limit = detail::to_duration(given.text);
    if (given.fault || !limit)
      detail::contradiction(called, given.fault ? given.fault : limit.reason());
    return *limit;
  }
};

} // namespace cf

#endif
