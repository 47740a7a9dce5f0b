/// @file changes.hpp
/// @brief Changes: what differs between two documents, for programs that read their file again.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_CHANGES_HPP
#define CF_CHANGES_HPP

#include "load.hpp"

namespace cf {

/// What happened to a value or a group.
enum class kind { added, removed, changed };

/// One difference between two documents. An added or removed group is one
/// difference, whatever it holds.
struct change {
  using enum cf::kind;

  cf::kind kind = changed; ///< What happened.
  std::string path;        ///< Which element, as in diagnostic::path.
  long old_line = 0;       ///< Its line in the older document; 0: none.
  long new_line = 0;       ///< Its line in the newer document; 0: none.
  std::string old_text;    ///< Its former value; empty for a group, and if it was not there.
  std::string new_text;    ///< Its value now; empty for a group, and if it is not there.
};

/// @return the one-line form, without line end: "PATH: OLD -> NEW (line N)" for a changed value,
///     "PATH: added NEW (line N)" or "PATH: removed OLD (line N)" for others; a group has no value.
///     The line is that of the newer document, if the element is there.
inline std::string to_string(const change &c) {
  const std::string was = detail::shown(c.old_text), is = detail::shown(c.new_text);
  const long line = c.new_line ? c.new_line : c.old_line;
  std::string text = c.path + ": ";
  if (c.kind == change::changed)
    text += detail::joined({was, " -> ", is});
  else if (c.kind == change::added)
    text += detail::joined({"added", is.empty() ? "" : " ", is});
  else
    text += detail::joined({"removed", was.empty() ? "" : " ", was});
  return line ? detail::joined({text, " (line ", std::to_string(line), ")"}) : text;
}

/// Writes the one-line form, without line end. @return `out`.
template <class Traits>
std::basic_ostream<char, Traits> &operator<<(std::basic_ostream<char, Traits> &out,
                                             const change &c) {
  return out << to_string(c).c_str();
}

namespace detail {

/// True if two texts are the same item of a key: as values, or as texts where there are none.
inline bool same_item(const key_rule &rule, std::string_view one, std::string_view other) {
  if (one == other || !refusal(rule, one).empty() || !refusal(rule, other).empty())
    return one == other;
  switch (rule.type) {
  case type::boolean: return *to_boolean(one) == *to_boolean(other);
  case type::real:
    return !(*to_real<double>(one) < *to_real<double>(other)) &&
           !(*to_real<double>(other) < *to_real<double>(one));
  case type::integer:
  case type::duration:
  case type::size: return *whole_of(rule, one) == *whole_of(rule, other);
  case type::word:
    return rule.find_word(one) == rule.find_word(other) ||
           (rule.tag && rule.find_word(one)->value == rule.find_word(other)->value);
  default: return false;
  }
}

inline bool same_value(const key_rule &rule, std::string_view one, std::string_view other) {
  for (bool more = true; more;) {
    std::string_view item, counterpart;
    more = take_item(one, rule.separator, item);
    if (more != take_item(other, rule.separator, counterpart) ||
        !same_item(rule, item, counterpart))
      return false;
  }
  return true;
}

/// The elements of a group, in an order in which those of two groups can be paired.
struct family {
  std::vector<cfnode *> members{};
  std::vector<std::string> titles{}; // of groups
  name_table table{};

  explicit family(const cfgroup *owner) {
    for (cfnode *nd = first_element(owner); nd; nd = next_element(owner, nd))
      members.push_back(nd);
    titles.reserve(members.size());
    for (std::size_t i = 0; i < members.size(); ++i)
      if (members[i]->type == cf_param)
        table.add(as_param(members[i])->key, i, cf_param);
      else
        table.add(titles.emplace_back(title(as_group(members[i])->cat, as_group(members[i])->name))
                      .c_str(),
                  i, cf_group);
    table.sort();
  }
};

class comparison {
public:
  std::vector<change> list{};

  /// @param rules those of both documents; NULL: they differ, or there are none.
  void run(cfgroup *before, cfgroup *after, const level *rules) {
    pending.push_back({before, after, rules});
    while (!pending.empty()) {
      const task next = pending.back();
      pending.pop_back();
      compare(next);
    }
    list = in_order(std::move(list), everything, [](const change &it) {
      return sort_key{static_cast<std::uint64_t>(it.new_line ? it.new_line : it.old_line),
                      !it.new_line, "", 0};
    });
  }

private:
  struct task {
    cfgroup *before, *after;
    const level *of;
  };
  std::vector<task> pending{};

  /// Walks both families in their common order. Equal names are paired by their position.
  void compare(const task &it) {
    const family older(it.before), newer(it.after);
    const auto &olds = older.table.all(), &news = newer.table.all();
    std::size_t i = 0, j = 0;
    while (i < olds.size() || j < news.size()) {
      const int sign = i == olds.size()   ? 1
                       : j == news.size() ? -1
                                          : detail::compare(olds[i], news[j]);
      cfnode *was = sign <= 0 ? older.members[olds[i].place] : nullptr;
      cfnode *is = sign >= 0 ? newer.members[news[j].place] : nullptr;
      // True if the other side has an element of this name too.
      const bool others = was ? j > 0 && detail::compare(news[j - 1], olds[i]) == 0
                              : i > 0 && detail::compare(olds[i - 1], news[j]) == 0;
      pair(was, is, others, it.of);
      i += was != nullptr;
      j += is != nullptr;
    }
  }

  void pair(cfnode *was, cfnode *is, bool others, const level *of) {
    cfnode *any = is ? is : was;
    if (any->type == cf_param)
      return pair_values(was, is, of ? of->find_key(as_param(any)->key) : nullptr, others);
    if (was && is)
      pending.push_back({as_group(was), as_group(is),
                         of ? of->find_group(as_group(is)->cat, as_group(is)->name) : nullptr});
    else
      note(was, is);
  }

  void pair_values(const cfnode *was, const cfnode *is, const key_rule *rule, bool others) {
    const bool defaults = rule && rule->has_default && rule->type != type::custom && !others;
    if ((!was || !is) && !defaults)
      return note(was, is);
    const std::string_view before = was ? std::string_view(as_param(was)->val) : rule->default_text;
    const std::string_view after = is ? std::string_view(as_param(is)->val) : rule->default_text;
    if (rule ? !same_value(*rule, before, after) : before != after)
      note(was, is);
  }

  static std::string text_of(const cfnode *nd) {
    return nd && nd->type == cf_param ? as_param(nd)->val : std::string();
  }

  void note(const cfnode *was, const cfnode *is) {
    list.push_back({!was  ? kind::added
                    : !is ? kind::removed
                          : kind::changed,
                    path_of(is ? is : was), was ? row_of(was) : 0, is ? row_of(is) : 0,
                    text_of(was), text_of(is)});
  }
};

} // namespace detail

/// Compares two documents. Groups and values are paired by category, name or key and, among equals,
/// by position; otherwise the order does not count. If the documents share a schema, values are
/// compared by their types, and an absent key equals its default; if not, values are compared as
/// texts.
/// @return the differences, sorted by line.
inline std::vector<change> changes(const document &before, const document &after) {
  const detail::state &older = detail::access::of(before), &newer = detail::access::of(after);
  detail::comparison compared;
  compared.run(older.tree.get(), newer.tree.get(),
               older.book.get() == newer.book.get() ? newer.rules() : nullptr);
  return std::move(compared.list);
}

} // namespace cf

#endif
