/// @file edit.hpp
/// @brief Edits of a group: tree and catalog together, all or nothing.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_EDIT_HPP
#define CF_EDIT_HPP

#include "ranges.hpp"

namespace cf {

namespace detail {

/// How many groups are around what a group holds. The count ends at longest_line, since in deeper
/// groups any line is too long.
inline std::size_t depth_of(const cfgroup *grp) {
  std::size_t depth = 0;
  for (; depth < longest_line && grp && grp->type == cf_grpinst; grp = parent_of(&grp->link))
    ++depth;
  return depth;
}

/// The group that functions of the core take so that tree and catalog change together: its
/// reference in the catalog, or the group itself if there is no catalog.
inline cfgroup *counterpart(const state &doc, cfgroup *grp) {
  if (!doc.catalog)
    return grp;
  std::vector<cfnode *> way;
  for (cfgroup *it = grp; it->type == cf_grpinst; it = parent_of(&it->link))
    way.push_back(&it->link);
  cfgroup *owner = doc.catalog.get();
  for (; !way.empty(); way.pop_back()) {
    const cfgroup *wanted = as_group(way.back());
    // References of equal names share a level.
    cfgroup *ref = cfcatgetgrp(owner, wanted->cat, wanted->name);
    while (ref && ref->link.ref != &wanted->link)
      ref = cfgrp(ref->link.next);
    if (!ref)
      return grp; // C functions made it, and the catalog lacks it
    owner = ref;
  }
  return owner;
}

/// The references of all values of a key, or the values themselves, as above.
inline std::vector<cfnode *> counterparts(const state &doc, cfgroup *grp,
                                          std::vector<cfnode *> pars) {
  cfgroup *owner = counterpart(doc, grp);
  if (owner == grp || pars.empty())
    return pars;
  cfparam *ref = cfcatgetpar(owner, as_param(pars[0])->key, nullptr);
  for (cfnode *&par : pars) { // both are in the order of the tree
    while (ref && ref->link.ref != par)
      ref = cfpar(ref->link.next);
    par = ref ? &ref->link : par;
  }
  return pars;
}

/// The element itself or the block around it, whichever is in the list of `owner`.
inline cfnode *outermost(const cfgroup *owner, cfnode *nd) {
  while (nd->group != owner)
    nd = &nd->group->link;
  return nd;
}

/// The values that a key has.
inline std::vector<cfnode *> params_of(const cfgroup *grp, std::string_view key) {
  std::vector<cfnode *> list;
  for (cfnode *nd = first_element(grp); nd; nd = next_element(grp, nd))
    if (nd->type == cf_param && equal(as_param(nd)->key, key))
      list.push_back(nd);
  return list;
}

/// The node before which a new value belongs, so that it comes after the key's last value, else
/// after the last key, else before the first group.
inline cfnode *place_for(cfgroup *grp, cfnode *after) {
  cfnode *last = after, *group = nullptr;
  for (cfnode *nd = first_element(grp); nd && !after; nd = next_element(grp, nd))
    if (nd->type == cf_param)
      last = nd;
    else if (!group)
      group = nd;
  if (last)
    return outermost(grp, last)->next;
  return group ? outermost(grp, group) : &grp->elem;
}

/// Adds a value in its place, in tree and catalog.
inline void insert(const state &doc, cfgroup *grp, owned_param par, cfnode *after) {
  cfnode *place = place_for(grp, after);
  cfcataddpar(counterpart(doc, grp), par.get());
  cfnode *const nd = &par.release()->link;
  if (place->type != cf_anchor)
    cfchainnd(place, nd);
}

/// Replaces all values of a key, given as elements or as their references, by one.
inline void replace(owned_param par, const std::vector<cfnode *> &old) {
  for (std::size_t i = old.size(); i-- > 1;)
    cfcatdelnd(old[i]);
  cfcatxcgnd(old[0], &par->link);
  par.release();
}

/// True if a key accepts the type of what the program gives.
inline bool takes(const key_rule &rule, const draft &given) {
  switch (given.given) {
  case want::text: return true;
  case want::integer: return rule.type == type::real || fits(rule, want::integer, nullptr);
  case want::real: return rule.type == type::real;
  case want::word: return rule.type == type::word && rule.tag == given.tag;
  default: return fits(rule, given.given, given.tag);
  }
}

/// Why a key does not accept a value; empty if it does. `before`: the bytes before it in its line.
inline std::string value_reason(const key_rule *rule, const draft &given, std::size_t before) {
  std::string_view item;
  std::string reason = given.fault ? given.fault : unwritable(given.text, before);
  if (reason.empty() && rule)
    reason = refusal(*rule, given.text, item);
  if (reason.empty() && rule && rule->type == type::real && given.given == want::integer)
    reason = as_floating<double>(*to_integer(given.text), given.text).reason();
  return reason;
}

/// What state::taken holds for a group whose names it has, and for a name in it.
inline std::uint64_t mark(const cfgroup *grp) {
  return hash({}, reinterpret_cast<std::uintptr_t>(grp));
}
inline std::uint64_t mark(const cfgroup *grp, std::string_view category, std::string_view name) {
  return hash(name, hash(category, mark(grp)));
}

/// True if a group of that category and name is in `grp`; if not, one will be added. The names in
/// `grp` are kept, so that many additions do not search the list for each. They are kept in a tree
/// of hashes, not in a hash table: a file could choose names that collide.
inline bool is_taken(state &doc, cfgroup *grp, std::string_view category, std::string_view name) {
  if (!doc.taken.contains(mark(grp))) {
    for (cfgroup *it = group_from(grp, first_element(grp)); it;
         it = group_from(grp, next_element(grp, &it->link)))
      doc.taken.insert(mark(grp, it->cat, it->name));
    doc.taken.insert(mark(grp)); // last, in case memory is exhausted before
  }
  return !doc.taken.insert(mark(grp, category, name)).second &&
         find_group(grp, first_element(grp), category, name);
}

/// Removes a group and all below it from state::taken, before they are deleted.
inline void forget_names(state &doc, const cfgroup *top) {
  const auto forget = [&](const cfgroup *grp) {
    doc.taken.erase(mark(grp));
    doc.taken.erase(mark(parent_of(&grp->link), grp->cat, grp->name));
  };
  if (doc.taken.empty())
    return;
  forget(top);
  for (const cfnode *nd = top->elem.next; nd != &top->elem; nd = next_node(nd))
    if (nd->type == cf_group)
      forget(as_group(nd));
}

} // namespace detail

inline void section::require_there() const {
  if (gone || !spot)
    refuse(fault::missing, path(), "the group is missing");
}

/// Refuses a text that is no name. `what`: what it should be.
inline void section::require_name(std::string_view text, const char *what, names allowed) const {
  if (!detail::is_name(text, allowed))
    refuse(fault::syntax, path(),
           detail::joined(
               {detail::quoted(text), " is not a ", what, ": ", detail::name_rule(allowed)}));
}

/// Refuses a value whose type is not the key's, and finds the word for one of an enumeration.
inline void section::require_type(std::string_view key, const detail::key_rule *rule,
                                  detail::draft &given) const {
  if (rule ? !detail::takes(*rule, given) : given.given == detail::want::word)
    misuse(key, detail::joined({"the program gives ", detail::want_name(given.given),
                                ", but the schema says ",
                                detail::type_name(rule ? rule->type : detail::type::text)}));
  if (given.given != detail::want::word)
    return;
  const detail::word *word = rule->find_value(given.number);
  if (!word)
    misuse(key, "the schema has no word for this value of the enumeration");
  given.text = word->text;
}

/// Replaces all values of a key, or adds one.
inline void section::put(std::string_view key, detail::draft given, bool all) const {
  const detail::key_rule *rule = rule_of(key);
  require_there();
  require_type(key, rule, given);
  if (!rule)
    require_name(key, "key", names::identifiers);
  const std::vector<cfnode *> old = detail::params_of(spot, key);
  if (!all && !old.empty() && rule && !rule->many)
    refuse(fault::duplicate, path(key), "may occur only once");
  const std::size_t before = 2 * detail::depth_of(spot) + key.size() + 3;
  if (std::string reason = detail::value_reason(rule, given, before); !reason.empty())
    refuse(fault::value, path(key), std::move(reason));
  const std::string spelled = !old.empty() ? detail::as_param(old[0])->key
                              : rule       ? rule->name
                                           : std::string(key);
  const detail::caught_messages guard;
  detail::owned_param par(cfnewpar(spelled.c_str(), given.text.c_str(), -1));
  if (all && !old.empty())
    detail::replace(std::move(par), detail::counterparts(*doc, spot, old));
  else
    detail::insert(*doc, spot, std::move(par), old.empty() ? nullptr : old.back());
}

inline bool section::erase(std::string_view key) const {
  rule_of(key);
  require_there();
  const std::vector<cfnode *> old = detail::counterparts(*doc, spot, detail::params_of(spot, key));
  const detail::caught_messages guard;
  for (auto it = old.rbegin(); it != old.rend(); ++it)
    cfcatdelnd(*it);
  return !old.empty();
}

inline section section::add_group(std::string_view category, std::string_view name) const {
  const detail::level *level = level_of(category, name);
  require_there();
  require_name(name, "name", doc->allowed(level));
  if (!category.empty())
    require_name(category, "category", names::identifiers);
  const std::string cat(category), called(name), title = detail::title(cat.c_str(), name);
  if (level && !level->many && detail::is_taken(*doc, spot, category, name))
    refuse(fault::duplicate, detail::below(path(), detail::shown(title)), "may occur only once");
  const std::size_t length = 2 * detail::depth_of(spot) + title.size() + 2;
  if (std::string reason = detail::length_reason(length); !reason.empty())
    refuse(fault::value, detail::below(path(), detail::shown(title)), std::move(reason));
  const detail::caught_messages guard;
  detail::owned_group grp(cfnewgrp(cat.c_str(), called.c_str(), cf_grpinst, -1));
  cfcataddgrp(detail::counterpart(*doc, spot), grp.get());
  return {doc, grp.release(), level};
}

inline void section::erase() const {
  require_there();
  if (!spot->link.group)
    misuse({}, "the top cannot be erased");
  detail::forget_names(*doc, spot);
  const detail::caught_messages guard;
  cfcatdelgrp(detail::counterpart(*doc, spot));
}

} // namespace cf

#endif
