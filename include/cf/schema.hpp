/// @file schema.hpp
/// @brief Schema: what a file may say, declared once.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_SCHEMA_HPP
#define CF_SCHEMA_HPP

#include "keys.hpp"

namespace cf {

namespace detail {

struct access;

/// What the builders of all kinds of groups have in common.
class group_base {
public:
  const level &made() const { return built; } ///< What was declared so far.

protected:
  level built;
  template <class... Entries> group_base(role kind, std::string name, const Entries &...entries);
};

} // namespace detail

/// A key or a group of a schema: what cf::key, cf::one, cf::each and cf::any make. For schemas that
/// a program puts together while it runs.
class entry {
public:
  /// A key. @throws std::logic_error if it contradicts itself.
  entry(const detail::key_base &key) : keys{key.rule()} { detail::verify(keys[0]); }
  /// A group.
  entry(const detail::group_base &group) : groups{group.made()} {}
  /// All of these at once.
  entry(const std::vector<entry> &list) {
    detail::level all;
    for (const entry &it : list)
      it.add_to(all);
    keys = std::move(all.keys);
    groups = std::move(all.groups);
  }

  /// Adds itself to a level.
  void add_to(detail::level &to) const {
    for (const detail::key_rule &it : keys)
      to.keys.push_back(it);
    for (const detail::level &it : groups)
      to.groups.push_back(it);
  }

private:
  std::vector<detail::key_rule> keys{};
  std::vector<detail::level> groups{};
};

namespace detail {

template <class... Entries>
group_base::group_base(role kind, std::string name, const Entries &...entries) {
  built.role = kind;
  built.name = std::move(name);
  if (kind != role::any)
    demand(is_name(built.name, names::identifiers), built.name,
           "the name of a group in a schema consists of letters, digits and underscores");
  (entry(entries).add_to(built), ...);
}

/// What cf::one returns.
class one_group : public group_base {
public:
  template <class... Entries>
  explicit one_group(std::string name, const Entries &...entries)
      : group_base(role::one, std::move(name), entries...) {}
  /// The group must be there.
  one_group &required() { return built.required = true, *this; }
  /// What the group is for.
  one_group &help(std::string text) { return built.help = std::move(text), *this; }
};

/// What cf::each and cf::any return.
class many_group : public group_base {
public:
  /// Equal names are allowed.
  many_group &many() { return built.many = true, *this; }
  /// There must be at least `count` of them.
  many_group &at_least(std::size_t count) { return built.at_least = count, *this; }
  /// What their names may be, here alone. See also cf::options.
  many_group &names(cf::names allowed) { return built.hosts = allowed == cf::names::hosts, *this; }
  /// What the groups are for.
  many_group &help(std::string text) { return built.help = std::move(text), *this; }

  template <class... Entries>
  many_group(role kind, std::string name, const Entries &...entries)
      : group_base(kind, std::move(name), entries...) {}
};

/// The rules of a schema, which documents share.
struct rulebook : counted {
  level top{};
};

/// Prepares a level that has its final place in memory, and all below it. The recursion is as deep
/// as the schema.
inline void seal(level &it, level &top, const level *above) { // NOLINT(misc-no-recursion)
  it.above = above;
  it.id = top.ids;
  top.ids += it.keys.size() + it.groups.size();
  top.reads_hosts |= it.hosts;
  it.demands = false;
  it.table.clear();
  std::size_t place = 0;
  for (const key_rule &rule : it.keys) {
    it.table.add(rule.name.c_str(), place++);
    it.demands |= rule.required;
  }
  place = 0;
  for (level &group : it.groups) {
    it.table.add(group.name.c_str(), place++, static_cast<std::size_t>(group.role));
    it.demands |= group.required || group.at_least > 0;
    if (group.role == role::any)
      it.any_group = &group;
  }
  it.table.sort();
  it.table.repeated([](const sort_key &again, const sort_key &) {
    contradiction(*again.name ? again.name : "any", "occurs twice");
  });
  it.table.index();
  for (level &group : it.groups)
    seal(group, top, &it);
}

} // namespace detail

/// A group without category, by its name. If it is absent, the keys that it requires are not
/// missing.
/// @param entries keys and groups: what it may hold.
template <class... Entries> detail::one_group one(std::string name, const Entries &...entries) {
  return detail::one_group(std::move(name), entries...);
}

/// The groups of a category, each name once.
/// @param entries keys and groups: what each of them may hold.
template <class... Entries>
detail::many_group each(std::string category, const Entries &...entries) {
  return detail::many_group(detail::role::each, std::move(category), entries...);
}

/// The groups without category of any name, except those that have a cf::one of their own.
/// @param entries keys and groups: what each of them may hold.
template <class... Entries> detail::many_group any(const Entries &...entries) {
  return detail::many_group(detail::role::any, {}, entries...);
}

/// What a file may say. A value of a few bytes that is copied freely; documents share what is in
/// it.
class schema {
public:
  /// @param entries keys and groups: what the file may hold. Without entries, every key and every
  ///     group is an unknown one.
  /// @throws std::logic_error if it contradicts itself: an entry twice, a default out of range.
  schema(std::initializer_list<entry> entries) : schema(entries.begin(), entries.end()) {}
  /// As above, for entries that a program gathers while it runs.
  explicit schema(const std::vector<entry> &entries)
      : schema(entries.data(), entries.data() + entries.size()) {}

  /// @return a commented sample file with every key: its type, range, default and help. It reads
  ///     back without a fault.
  /// @throws std::logic_error if a required key of the application's own type has no example.
  std::string sample() const;
  /// @return a table of all keys for a manual, in Markdown.
  std::string markdown() const;

private:
  friend struct detail::access;
  detail::shared<const detail::rulebook> rules;

  schema(const entry *begin, const entry *end) {
    const detail::shared<detail::rulebook> made(new detail::rulebook);
    for (; begin != end; ++begin)
      begin->add_to(made->top);
    detail::seal(made->top, made->top, nullptr);
    rules = made;
  }
};

} // namespace cf

#endif
