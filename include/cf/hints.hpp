/// @file hints.hpp
/// @brief Hints: what the author of a file probably meant. Made only for faults that are reported.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_HINTS_HPP
#define CF_HINTS_HPP

#include "findings.hpp"

namespace cf::detail {

/// What looks like a mistake in a valid value; NULL if nothing does.
inline const char *suspicion(std::string_view value) {
  if (value.size() > 1 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0])
    return "the quotes are part of the value";
  for (std::size_t at = value.find('#'); at != value.npos; at = value.find('#', at + 1))
    if (at > 0 && is_blank(value[at - 1]))
      return "the # and what follows are part of the value";
  return nullptr;
}

/// Suggests the word of a key that an item of its value resembles.
inline std::string word_hint(const key_rule &rule, std::string_view value, long offset) {
  std::string_view item;
  value.remove_prefix(static_cast<std::size_t>(offset));
  take_item(value, rule.separator, item);
  spelling search(item);
  for (const word &it : rule.words)
    search.offer(it.text);
  return search.hint();
}

/// Suggests what an unknown key of a level probably means.
inline std::string key_hint(const level &of, std::string_view key) {
  if (of.find_role(role::one, key))
    return joined({key, " is a group: ", key, " {"});
  spelling search(key);
  for (const key_rule &it : of.keys)
    search.offer(it.name);
  return search.hint();
}

/// Suggests what an unknown group of a level probably means.
inline std::string group_hint(const level &of, const cfgroup &grp) {
  const std::string_view category = grp.cat, name = grp.name;
  if (category.empty() && of.find_key(name))
    return joined({name, " is a key: ", name, " = ..."});
  if (category.empty() && of.find_role(role::each, name))
    return joined({"it needs a name: ", name, " NAME {"});
  if (!category.empty() && of.find_role(role::one, category))
    return joined({"it has no name: ", category, " {"});
  spelling search(category.empty() ? name : category);
  for (const level &it : of.groups)
    if ((it.role == role::each) == !category.empty())
      search.offer(it.name);
  return search.hint();
}

/// The hint for a finding; empty if there is none.
inline std::string hint_for(const finding &it) {
  constexpr std::size_t most = 1000; // among more names the search would take too long
  const cfparam *par = it.at && it.at->type == cf_param ? as_param(it.at) : nullptr;
  if (it.first > 0)
    return joined({"first in line ", std::to_string(it.first)});
  if (it.of)
    return it.of->keys.size() + it.of->groups.size() > most ? std::string()
           : par                                            ? key_hint(*it.of, par->key)
                                                            : group_hint(*it.of, *as_group(it.at));
  std::string hint = it.rule ? word_hint(*it.rule, par->val, it.offset) : std::string();
  if (hint.empty() && it.fault == fault::value && par)
    if (const char *doubt = suspicion(par->val))
      hint = doubt;
  return hint;
}

} // namespace cf::detail

#endif
