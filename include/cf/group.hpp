/// @file group.hpp
/// @brief Groups: handles through which values are read and edited.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_GROUP_HPP
#define CF_GROUP_HPP

#include "state.hpp"

namespace cf {

class group_range;
class key_range;
class item_range;
class index;

namespace detail {

struct group_cursor;

/// What is known about an absent group.
struct absence : counted {
  absence(std::string_view cat, std::string_view called, bool has_defaults,
          shared<const absence> in)
      : category(cat), name(called), defaults(has_defaults), above(std::move(in)) {}
  std::string category, name;
  bool defaults;               // its keys have their defaults
  shared<const absence> above; // the group that would hold it, if that is absent too
};

/// A key as it was looked up.
struct looked_up {
  const key_rule *rule;
  const cfparam *par; // NULL: absent
  std::string_view key;
  std::string_view text; // the value; if absent, the default
};

} // namespace detail

/// A handle of a group of a document: small, copied freely, and like a pointer in that a constant
/// handle changes its group too. It is valid as long as the document lives, also if that is moved,
/// and the group is not erased. A handle may refer to an absent group: then it converts to false,
/// has no keys and no groups, gives the defaults of the schema, and refuses edits.
///
/// Case does not count in names and keys. Keys and groups that the schema does not have are
/// mistakes of the program: std::logic_error. Asking for a type that does not fit the key is one
/// too.
///
/// T is one of: bool; an integer type (of integers and sizes); a floating-point type (of reals and
/// integers); std::string and std::string_view (of every key: its text); a duration of std::chrono;
/// the enumeration of the key's words; the type of `as<T>`.
class section {
public:
  /// Refers to no group of any document.
  section() = default;

  /// @return true if the group is there.
  explicit operator bool() const noexcept { return spot && !gone; }
  /// @return the name, also of a group that is not there; empty for the top. Valid as long as the
  ///     handle and the group.
  std::string_view name() const noexcept {
    return gone ? std::string_view(gone->name) : spot ? spot->name : "";
  }
  /// @return the category, empty if it has none; as name().
  std::string_view category() const noexcept {
    return gone ? std::string_view(gone->category) : spot ? spot->cat : "";
  }
  /// @return the line of its head; 0 for the top, a new group, and one that is not there.
  long line() const noexcept { return *this ? detail::row_of(&spot->link) : 0; }
  /// @return the group for functions of cf.h, owned by the document; NULL if it is not there.
  cfgroup *handle() const noexcept { return gone ? nullptr : spot; }

  /// @return true if the file gives the key; a default does not count.
  bool has(std::string_view key) const;

  /// @return the value; if the file does not give it, the default. Of several, the first.
  /// @throws cf::error with file, line and path if there is neither, or if the value is malformed
  ///     or not in the range of T; std::logic_error for a list, see values().
  template <class T> T get(std::string_view key) const {
    const detail::looked_up it = look_up(key, detail::want_of<T>(), detail::tag<T>());
    return value<T>(required(it), it.text);
  }
  /// @return the value, or nothing if the file does not give it; defaults do not count.
  /// @throws as get() for a value that is there.
  template <class T> std::optional<T> find(std::string_view key) const {
    const detail::looked_up it = look_up(key, detail::want_of<T>(), detail::tag<T>());
    return it.par ? std::optional<T>(value<T>(it, it.text)) : std::nullopt;
  }
  /// @return the value, or `otherwise` if the file does not give it, whatever the schema's default.
  /// @throws as get() for a value that is there.
  template <class T> T get_or(std::string_view key, T otherwise) const {
    std::optional<T> found = find<T>(key);
    return found ? *std::move(found) : std::move(otherwise);
  }
  /// As above, for a text.
  std::string get_or(std::string_view key, const char *otherwise) const {
    return get_or<std::string>(key, otherwise);
  }
  /// @return all values of a key, or the items of a list; if the file does not give it, the
  ///     default, or nothing if there is none.
  /// @throws as get().
  template <class T> std::vector<T> values(std::string_view key) const;

  /// @return the group without category of that name, which may be absent.
  section group(std::string_view name) const { return child({}, name); }
  /// @return the group of that category and name, which may be absent. Of several, the first.
  section group(std::string_view category, std::string_view name) const {
    return child(category, name);
  }
  /// As group().
  section operator[](std::string_view name) const { return child({}, name); }
  /// @return all groups, in the order of the file, as a range of handles, which is valid
  ///     until the group is edited.
  group_range groups() const;
  /// @return the groups of a category, as groups().
  group_range groups(std::string_view category) const;
  /// @return the keys that the file gives, in its order; a key occurs once for each value.
  key_range keys() const;
  /// @return the keys as keys() has them, each with its value as a text and its line. It costs less
  ///     than a get() for each key, which searches the group.
  item_range items() const;
  /// @return a table of the groups of a category, for finding very many by name; valid until the
  ///     document is edited.
  cf::index index(std::string_view category) const;

  /// @return an exception for a fault that the program itself finds with the value of a key, to be
  ///     thrown: with file, line, column and path. The key may be absent: then the place is that of
  ///     the group.
  cf::error error(std::string_view key, std::string text) const;

  /// Gives a key a value, which replaces all values that it has. A new key comes after the last key
  /// of the group, or before its first group.
  /// @param value a bool, an integer, a floating-point number, a duration, a value of the key's
  ///     enumeration, or a text, which is checked as from a file.
  /// @throws cf::error, and nothing changes, if the schema or the format does not take the value,
  ///     or the group is not there.
  template <detail::writable T> void set(std::string_view key, const T &value) const {
    put(key, detail::to_draft(value), true);
  }
  /// Adds a value to a key that may have several, after its last one; or as set().
  /// @throws as set(), and if the key has a value and may occur only once.
  template <detail::writable T> void add(std::string_view key, const T &value) const {
    put(key, detail::to_draft(value), false);
  }
  /// Removes a key with all its values and the remarks that belong to them.
  /// @return true if there was one. @throws cf::error if the group is not there.
  bool erase(std::string_view key) const;
  /// Adds an empty group at the end of this one. What the schema requires of it is to be set next.
  /// @return its handle.
  /// @throws cf::error, and nothing changes, if the name is not valid or is taken.
  section add_group(std::string_view category, std::string_view name) const;
  /// As above, for a group without category.
  section add_group(std::string_view name) const { return add_group({}, name); }
  /// Removes the group with all it holds and the remarks that belong to it; handles to it become
  /// invalid.
  /// @throws cf::error if the group is not there, std::logic_error for the top.
  void erase() const;

private:
  friend class document;
  friend class group_range;
  friend struct detail::group_cursor;
  friend class index;
  friend struct detail::access;

  detail::state *doc = nullptr;
  cfgroup *spot = nullptr; // the group; if that is not there, the nearest one that would hold it
  const detail::level *of = nullptr; // NULL: no schema, or unknown to it
  detail::shared<const detail::absence> gone{};

  section(detail::state *document, cfgroup *grp, const detail::level *level)
      : doc(document), spot(grp), of(level) {}

  std::string path(std::string_view key = {}) const;
  [[noreturn]] void misuse(std::string_view name, const std::string &why) const;
  [[noreturn]] void refuse(cf::fault fault, std::string path, std::string message) const;

  const detail::key_rule *rule_of(std::string_view key) const;
  const cfparam *param_of(std::string_view key, const detail::key_rule *rule) const;
  detail::looked_up look_up(std::string_view key, detail::want wanted, const void *tag,
                            bool list = false) const;
  const detail::looked_up &required(const detail::looked_up &it) const;
  bool next_value(detail::looked_up &it) const;
  template <class T> T value(const detail::looked_up &it, std::string_view text) const;
  [[noreturn]] void malformed(const detail::looked_up &it, std::string_view item,
                              std::string reason) const;

  const detail::level *level_of(std::string_view category, std::string_view name) const;
  section child(std::string_view category, std::string_view name) const;

  void require_there() const;
  void require_name(std::string_view text, const char *what, names allowed) const;
  void require_type(std::string_view key, const detail::key_rule *rule, detail::draft &given) const;
  void put(std::string_view key, detail::draft given, bool all) const;
};

/// See cf::section: the usual name.
using group = section;

} // namespace cf

#endif
