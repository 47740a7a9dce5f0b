/// @file names.hpp
/// @brief A table of names: each found in constant time, whatever names a file chooses.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_NAMES_HPP
#define CF_NAMES_HPP

#include "text.hpp"

#include <bit>
#include <cstdint>
#include <utility>
#include <vector>

namespace cf::detail {

/// Maps bytes so that texts that are equal without case, in whatever locale, become the same. All
/// bytes beyond ASCII become i: in a Turkish locale of single bytes, I is the capital of one.
inline unsigned char fold(char c) {
  const auto byte = static_cast<unsigned char>(c);
  const auto lower = static_cast<unsigned char>(byte | 0x20);
  return byte >= 0x80 ? 'i' : lower;
}

inline std::uint64_t hash(std::string_view text, std::uint64_t seed = 0) {
  std::uint64_t sum = seed ^ 0xcbf29ce484222325;
  for (const char c : text)
    sum = (sum ^ fold(c)) * 0x100000001b3;
  return sum * 0x9e3779b97f4a7c15; // the upper bits choose the bucket
}

/// A key to sort by: a number, a kind, a name without case, and a place in a list.
struct sort_key {
  std::uint64_t number;
  std::size_t kind;
  const char *name;  // borrowed
  std::size_t place; // in the list that is sorted
};

inline int compare(const sort_key &one, const sort_key &other) {
  if (one.number != other.number)
    return one.number < other.number ? -1 : 1;
  if (one.kind != other.kind)
    return one.kind < other.kind ? -1 : 1;
  return strcasecmp(one.name, other.name);
}

inline void sort(std::vector<sort_key> &items) {
  std::sort(items.begin(), items.end(), [](const sort_key &one, const sort_key &other) {
    const int sign = compare(one, other);
    return sign ? sign < 0 : one.place < other.place;
  });
}

/// The first `most` elements of a list, in the order of the keys that `key` makes of them. Equal
/// elements keep their order.
template <class T, class Key>
std::vector<T> in_order(std::vector<T> list, std::size_t most, Key key) {
  std::vector<sort_key> items;
  for (std::size_t i = 0; i < list.size(); ++i) {
    items.push_back(key(list[i]));
    items.back().place = i;
  }
  sort(items);
  items.resize(std::min(most, items.size()));
  std::vector<T> sorted;
  sorted.reserve(items.size());
  for (const sort_key &it : items)
    sorted.push_back(std::move(list[it.place]));
  return sorted;
}

/// Names sorted by their hashes, with a directory of where each bucket begins. Within a bucket,
/// names with equal hashes are in alphabetical order. So a name is found in logarithmic time even
/// among names that were chosen to collide.
class name_table {
public:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  void reserve(std::size_t count) { items.reserve(count); }
  void add(const char *name, std::size_t place, std::size_t kind = 0) {
    items.push_back({hash(name, kind), kind, name, place});
  }
  void clear() { items.clear(); }

  /// Sorts what was added; of equal names the first place comes first.
  void sort() { detail::sort(items); }

  /// After sort(): calls `twice(again, first)` for each item whose name has occurred before.
  template <class Twice> void repeated(Twice twice) const {
    for (std::size_t i = 1, first = 0; i < items.size(); ++i)
      if (compare(items[first], items[i]) == 0)
        twice(items[i], items[first]);
      else
        first = i;
  }

  /// After sort(): makes the directory.
  void index() {
    shift = 64 - static_cast<int>(std::bit_width(items.size() | 1));
    starts.assign((std::size_t{1} << (64 - shift)) + 1, 0);
    for (const sort_key &it : items)
      ++starts[bucket(it.number) + 1];
    for (std::size_t i = 1; i < starts.size(); ++i)
      starts[i] += starts[i - 1];
  }

  /// After index(): the first place of a name, or `none`.
  std::size_t find(std::string_view name, std::size_t kind = 0) const {
    if (items.empty())
      return none;
    const std::uint64_t sum = hash(name, kind);
    const sort_key *low = items.data() + starts[bucket(sum)];
    const sort_key *const end = items.data() + starts[bucket(sum) + 1];
    for (const sort_key *high = end; low < high;) {
      const sort_key *middle = low + (high - low) / 2;
      if (side(*middle, sum, kind, name) < 0)
        low = middle + 1;
      else
        high = middle;
    }
    return low != end && side(*low, sum, kind, name) == 0 ? low->place : none;
  }

  /// All items. After sort(), tables with the same names have them in the same order.
  const std::vector<sort_key> &all() const { return items; }

private:
  std::size_t bucket(std::uint64_t number) const {
    return static_cast<std::size_t>(number >> shift);
  }

  std::vector<sort_key> items{};
  std::vector<std::size_t> starts{};
  int shift = 63;

  static int side(const sort_key &it, std::uint64_t sum, std::size_t kind, std::string_view name) {
    if (it.number != sum)
      return it.number < sum ? -1 : 1;
    if (it.kind != kind)
      return it.kind < kind ? -1 : 1;
    return detail::compare(it.name, name);
  }
};

} // namespace cf::detail

#endif
