/// @file lookup.hpp
/// @brief Look-ups: how a group finds its keys and groups, and turns texts into values.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_LOOKUP_HPP
#define CF_LOOKUP_HPP

#include "group.hpp"

namespace cf {

namespace detail {

/// The first group of `owner` from `nd` on, which may be NULL, of that category and name.
inline cfgroup *find_group(const cfgroup *owner, cfnode *nd, std::string_view category,
                           std::string_view name) {
  cfgroup *grp = group_from(owner, nd);
  while (grp && !(equal(grp->name, name) && equal(grp->cat, category)))
    grp = group_from(owner, next_element(owner, &grp->link));
  return grp;
}

inline std::string path_of(const absence &gone) {
  std::string path = title(gone.category.c_str(), gone.name);
  for (const absence *it = gone.above.get(); it; it = it->above.get())
    path = below(title(it->category.c_str(), it->name), path);
  return shown(path);
}

} // namespace detail

inline std::string section::path(std::string_view key) const {
  std::string path = spot ? detail::path_of(&spot->link) : std::string();
  if (gone)
    path = detail::below(path, detail::path_of(*gone));
  return detail::below(path, detail::shown(key));
}

/// Throws for a mistake of the program.
inline void section::misuse(std::string_view name, const std::string &why) const {
  const std::string subject = path(name);
  throw std::logic_error(detail::joined({subject, subject.empty() ? "" : ": ", why}));
}

/// Throws for a fault of the file, in the line of the group or, if that is absent, of the nearest
/// one around it.
inline void section::refuse(cf::fault fault, std::string path, std::string message) const {
  const long row = spot ? detail::row_of(&spot->link) : 0;
  diagnostic d{severity::error,    fault, doc ? doc->options.name : "", row, 0, std::move(path),
               std::move(message), {}};
  d.column = doc ? doc->lines().column(d.line) : 0;
  throw cf::error({std::move(d)});
}

/// The rule of a key; NULL without a schema.
inline const detail::key_rule *section::rule_of(std::string_view key) const {
  if (!doc)
    misuse(key, "this handle refers to no group");
  const detail::key_rule *rule = of ? of->find_key(key) : nullptr;
  if (of && !rule)
    misuse(key, "the schema does not have this key");
  return rule;
}

inline const cfparam *section::param_of(std::string_view key, const detail::key_rule *rule) const {
  if (gone)
    return nullptr;
  if (rule)
    return cfcatgetpar(spot, rule->name.c_str(), nullptr);
  if (key.empty() || key.find('\0') != key.npos)
    return nullptr;
  return cfcatgetpar(spot, std::string(key).c_str(), nullptr);
}

inline bool section::has(std::string_view key) const { return param_of(key, rule_of(key)); }

/// Looks a key up for a type, which must be that of its rule.
inline detail::looked_up section::look_up(std::string_view key, detail::want wanted,
                                          const void *tag, bool list) const {
  const detail::key_rule *rule = rule_of(key);
  const detail::key_rule &by = rule ? *rule : detail::plain_rule(wanted);
  if (!detail::fits(by, wanted, tag))
    misuse(key, detail::joined({"the schema says ", detail::type_name(by.type),
                                ", but the program asks for ", detail::want_name(wanted)}));
  if (by.separator && !list)
    misuse(key, "a list is read by values()");
  const cfparam *par = param_of(key, rule);
  return {&by, par, key, par ? std::string_view(par->val) : std::string_view(by.default_text)};
}

/// Throws unless there is a value or a default.
inline const detail::looked_up &section::required(const detail::looked_up &it) const {
  if (gone && !gone->defaults)
    refuse(fault::missing, path(it.key), "the group is missing");
  if (!it.par && !it.rule->has_default)
    refuse(fault::missing, path(it.key),
           it.rule->required ? "required, but missing" : "missing, and it has no default");
  return it;
}

/// Throws for a value that is not what is asked for. `item`: the part at fault.
inline void section::malformed(const detail::looked_up &it, std::string_view item,
                               std::string reason) const {
  if (!it.par)
    refuse(fault::value, path(it.key), detail::joined({"the default ", reason}));
  throw doc->fault({.line = detail::row_of(&it.par->link),
                    .at = &it.par->link,
                    .offset = item.data() - it.par->val,
                    .message = std::move(reason)});
}

/// The value of a text, which is that of the key or an item of it.
template <class T> T section::value(const detail::looked_up &it, std::string_view text) const {
  if constexpr (std::is_copy_constructible_v<T>)
    if (!it.par && it.rule->type == detail::type::custom && it.rule->tag == detail::tag<T>())
      return static_cast<const detail::default_of<T> &>(*it.rule->custom_default_value).value;
  outcome<T> result = detail::convert<T>(*it.rule, text);
  if (!result)
    malformed(it, text, result.reason());
  return *std::move(result);
}

template <class T> std::vector<T> section::values(std::string_view key) const {
  detail::looked_up it = look_up(key, detail::want_of<T>(), detail::tag<T>(), true);
  std::vector<T> result;
  if (gone && !gone->defaults)
    required(it);
  if (!it.par && !it.rule->has_default)
    return result;
  if (!it.par && it.rule->type == detail::type::custom) {
    result.push_back(value<T>(it, it.text));
    return result;
  }
  do {
    std::string_view rest = it.text, item;
    for (bool more = true; more;) {
      more = detail::take_item(rest, it.rule->separator, item);
      if (it.rule->separator && item.empty())
        malformed(it, item, "an item of the list is empty");
      result.push_back(value<T>(it, item));
    }
  } while (it.par && next_value(it));
  return result;
}

/// Goes on to the next value of a key. False: there is none.
inline bool section::next_value(detail::looked_up &it) const {
  const std::string_view key = it.par->key;
  for (const cfnode *nd = &it.par->link; (nd = detail::next_element(spot, nd));)
    if (nd->type == cf_param && detail::equal(detail::as_param(nd)->key, key)) {
      it.par = detail::as_param(nd);
      it.text = it.par->val;
      return true;
    }
  return false;
}

/// The level of a group below this one; NULL without a schema.
inline const detail::level *section::level_of(std::string_view category,
                                              std::string_view name) const {
  if (!doc)
    misuse(name, "this handle refers to no group");
  const detail::level *level = of ? of->find_group(category, name) : nullptr;
  if (of && !level)
    misuse(detail::title(std::string(category).c_str(), name),
           "the schema does not have this group");
  return level;
}

inline section section::child(std::string_view category, std::string_view name) const {
  const detail::level *level = level_of(category, name);
  if (!gone)
    if (cfgroup *hit = detail::find_group(spot, detail::first_element(spot), category, name))
      return {doc, hit, level};
  section none{doc, spot, level};
  const bool defaults = level && level->role == detail::role::one && (!gone || gone->defaults);
  none.gone =
      detail::shared<const detail::absence>(new detail::absence(category, name, defaults, gone));
  return none;
}

inline cf::error section::error(std::string_view key, std::string text) const {
  const cfparam *par = param_of(key, rule_of(key));
  detail::finding it{
      .line = line(), .at = spot ? &spot->link : nullptr, .message = std::move(text)};
  if (par) {
    it.line = detail::row_of(&par->link);
    it.at = &par->link;
    it.offset = 0;
  }
  diagnostic d = doc->describe(it);
  d.path = path(key);
  return cf::error({std::move(d)});
}

} // namespace cf

#endif
