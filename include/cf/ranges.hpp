/// @file ranges.hpp
/// @brief Ranges over the groups, keys and values of a group, and the index of very many groups.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_RANGES_HPP
#define CF_RANGES_HPP

#include "lookup.hpp"

#include <iterator>

namespace cf {

/// A line of a group that gives a value to a key. The texts are valid until the group is edited.
struct item {
  std::string_view key;  ///< The key, as the file spells it.
  std::string_view text; ///< The value as a text.
  long line = 0;         ///< The line of the file; 0: none.
};

namespace detail {

/// A range over some elements of a group. A cursor is at one of them: `at` is the element, or NULL
/// after the last one, value() is what the range gives for it, and advance() goes to the next.
template <class Cursor> class element_range {
public:
  /// A forward iterator, which gives values, not references.
  class iterator {
  public:
    using iterator_concept = std::forward_iterator_tag;
    using iterator_category = std::input_iterator_tag;
    using value_type = decltype(std::declval<const Cursor &>().value());
    using difference_type = std::ptrdiff_t;
    using reference = value_type;
    /// Holds the value that `->` refers to.
    struct pointer {
      value_type it;
      const value_type *operator->() const { return &it; }
    };

    iterator() = default;
    value_type operator*() const { return cursor.value(); }
    pointer operator->() const { return {**this}; }
    iterator &operator++() {
      cursor.advance();
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const iterator &one, const iterator &other) {
      return one.cursor.at == other.cursor.at;
    }

  private:
    friend class element_range;
    Cursor cursor{};

    explicit iterator(const Cursor &place) : cursor(place) {}
  };

  /// The first, in the order of the file.
  iterator begin() const { return iterator(first); }
  /// The end.
  iterator end() const { return {}; }
  /// @return true if there is none.
  bool empty() const { return !first.at; }

protected:
  explicit element_range(const Cursor &begin) : first(begin) {}

private:
  Cursor first;
};

/// At a group, or at one of a category.
struct group_cursor {
  section in{};
  const char *category = nullptr; // NULL: any
  cfgroup *at = nullptr;

  section value() const {
    return {in.doc, at, in.of ? in.of->find_group(at->cat, at->name) : nullptr};
  }
  void advance() { find(next_element(in.spot, &at->link)); }
  /// Goes to the first one from `nd` on.
  void find(cfnode *nd) {
    at = group_from(in.spot, nd);
    while (at && category && !equal(at->cat, category))
      at = group_from(in.spot, next_element(in.spot, &at->link));
  }
};

/// At a parameter.
struct param_cursor {
  const cfgroup *owner = nullptr;
  const cfparam *at = nullptr;

  void advance() { find(next_element(owner, &at->link)); }
  /// Goes to the first one from `nd` on.
  void find(const cfnode *nd) {
    while (nd && nd->type != cf_param)
      nd = next_element(owner, nd);
    at = nd ? as_param(nd) : nullptr;
  }
  /// A cursor at the first parameter of a group, which may be NULL.
  template <class Cursor> static Cursor first(const cfgroup *grp) {
    Cursor begin;
    begin.owner = grp;
    if (grp)
      begin.find(first_element(grp));
    return begin;
  }
};

struct key_cursor : param_cursor {
  std::string_view value() const { return at->key; }
};

struct item_cursor : param_cursor {
  item value() const { return {at->key, at->val, row_of(&at->link)}; }
};

} // namespace detail

/// The groups of a group, or those of one category: a range of handles, made as they are asked for,
/// with begin(), end() and empty(). Valid, like its iterators, until the group is edited.
class group_range : public detail::element_range<detail::group_cursor> {
  friend class section;
  using element_range::element_range;

  static detail::group_cursor first(const section &in, const char *category) {
    detail::group_cursor begin;
    if (in.gone || !in.spot)
      return begin;
    begin = {in, category, nullptr};
    begin.find(detail::first_element(in.spot));
    if (begin.at && category)
      begin.category = begin.at->cat; // which lives as long as the group
    return begin;
  }
};

/// The keys of a group: a range of std::string_view, with begin(), end() and empty(). Valid, like
/// its iterators, until the group is edited.
class key_range : public detail::element_range<detail::key_cursor> {
  friend class section;
  using element_range::element_range;
};

/// The keys of a group with their values: a range of cf::item, with begin(), end() and empty().
/// Valid, like its iterators, until the group is edited.
class item_range : public detail::element_range<detail::item_cursor> {
  friend class section;
  using element_range::element_range;
};

inline group_range section::groups() const {
  return group_range(group_range::first(*this, nullptr));
}

inline group_range section::groups(std::string_view category) const {
  if (of && !of->find_role(detail::role::each, category))
    misuse(category, "the schema does not have this category");
  return group_range(group_range::first(*this, std::string(category).c_str()));
}

inline key_range section::keys() const {
  return key_range(detail::param_cursor::first<detail::key_cursor>(handle()));
}

inline item_range section::items() const {
  return item_range(detail::param_cursor::first<detail::item_cursor>(handle()));
}

/// The groups of a category by name: for finding very many of them. Valid until the document is
/// edited.
class index {
public:
  /// @return the group of that name, the first of several; nothing if there is none. In constant
  ///     time.
  std::optional<section> find(std::string_view name) const {
    const std::size_t place = table.find(name);
    if (place == detail::name_table::none)
      return std::nullopt;
    return all[place];
  }
  /// @return how many groups there are.
  std::size_t size() const noexcept { return all.size(); }

private:
  friend class section;
  std::vector<section> all;
  detail::name_table table;

  explicit index(const group_range &groups) {
    for (const section it : groups) {
      table.add(it.handle()->name, all.size());
      all.push_back(it);
    }
    table.sort();
    table.index();
  }
};

inline cf::index section::index(std::string_view category) const {
  return cf::index(groups(category));
}

} // namespace cf

// Iterators stay valid without their range, and copying a range costs nothing.
template <> inline constexpr bool std::ranges::enable_borrowed_range<cf::group_range> = true;
template <> inline constexpr bool std::ranges::enable_borrowed_range<cf::key_range> = true;
template <> inline constexpr bool std::ranges::enable_borrowed_range<cf::item_range> = true;
template <> inline constexpr bool std::ranges::enable_view<cf::group_range> = true;
template <> inline constexpr bool std::ranges::enable_view<cf::key_range> = true;
template <> inline constexpr bool std::ranges::enable_view<cf::item_range> = true;

#endif
