/// @file ranges.hpp
/// @brief Ranges over the groups and keys of a group, and the index of very many groups.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_RANGES_HPP
#define CF_RANGES_HPP

#include "lookup.hpp"

#include <iterator>

namespace cf {

/// The groups of a group, or those of one category: a range of handles, made as they are asked for.
/// Valid, like its iterators, until the group is edited.
class group_range {
public:
  /// A forward iterator, which gives handles by value.
  class iterator {
  public:
    using iterator_concept = std::forward_iterator_tag;
    using iterator_category = std::input_iterator_tag;
    using value_type = section;
    using difference_type = std::ptrdiff_t;
    using reference = section;
    /// Holds the handle that `->` refers to.
    struct pointer {
      section it;
      const section *operator->() const { return &it; }
    };

    iterator() = default;
    section operator*() const {
      const detail::level *of = in.of ? in.of->find_group(at->cat, at->name) : nullptr;
      return {in.doc, at, of};
    }
    pointer operator->() const { return {**this}; }
    iterator &operator++() {
      at = wanted(detail::next_element(in.spot, &at->link));
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const iterator &one, const iterator &other) {
      return one.at == other.at;
    }

  private:
    friend class group_range;
    section in{};
    const char *category = nullptr; // NULL: any
    cfgroup *at = nullptr;

    cfgroup *wanted(cfnode *nd) const {
      cfgroup *grp = detail::group_from(in.spot, nd);
      while (grp && category && !detail::equal(grp->cat, category))
        grp = detail::group_from(in.spot, detail::next_element(in.spot, &grp->link));
      return grp;
    }
  };

  /// The first; steps go through the file.
  iterator begin() const { return first; }
  /// The end.
  iterator end() const { return {}; }
  /// @return true if there is none.
  bool empty() const { return first == iterator(); }

private:
  friend class section;
  iterator first;

  group_range(const section &in, const char *category) {
    if (in.gone || !in.spot)
      return;
    first.in = in;
    first.category = category;
    first.at = first.wanted(detail::first_element(in.spot));
    if (first.at && category)
      first.category = first.at->cat; // which lives as long as the group
  }
};

/// The keys of a group: a range of std::string_view. Valid, like its iterators, until the group is
/// edited.
class key_range {
public:
  /// A forward iterator, which gives texts by value.
  class iterator {
  public:
    using iterator_concept = std::forward_iterator_tag;
    using iterator_category = std::input_iterator_tag;
    using value_type = std::string_view;
    using difference_type = std::ptrdiff_t;
    using reference = std::string_view;
    using pointer = void;

    iterator() = default;
    std::string_view operator*() const { return detail::as_param(at)->key; }
    iterator &operator++() {
      at = wanted(detail::next_element(owner, at));
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const iterator &one, const iterator &other) {
      return one.at == other.at;
    }

  private:
    friend class key_range;
    const cfgroup *owner = nullptr;
    const cfnode *at = nullptr;

    explicit iterator(const cfgroup *grp) : owner(grp), at(wanted(detail::first_element(grp))) {}
    const cfnode *wanted(const cfnode *nd) const {
      while (nd && nd->type != cf_param)
        nd = detail::next_element(owner, nd);
      return nd;
    }
  };

  /// The first; steps go through the file.
  iterator begin() const { return first; }
  /// The end.
  iterator end() const { return {}; }
  /// @return true if there is none.
  bool empty() const { return first == iterator(); }

private:
  friend class section;
  iterator first;

  explicit key_range(const cfgroup *grp) {
    if (grp)
      first = iterator(grp);
  }
};

inline group_range section::groups() const { return {*this, nullptr}; }

inline group_range section::groups(std::string_view category) const {
  if (of && !of->find_role(detail::role::each, category))
    misuse(category, "the schema does not have this category");
  return {*this, std::string(category).c_str()};
}

inline key_range section::keys() const { return key_range(handle()); }

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
template <> inline constexpr bool std::ranges::enable_view<cf::group_range> = true;
template <> inline constexpr bool std::ranges::enable_view<cf::key_range> = true;

#endif
