/// @file check.hpp
/// @brief The check: a tree against a schema. It visits each element once, whatever the file holds.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_CHECK_HPP
#define CF_CHECK_HPP

#include "state.hpp"

namespace cf::detail {

/// One check, which adds what is wrong to a list.
class checking {
public:
  /// @param heads as recovery::doubtful.
  checking(const state &document, const std::vector<std::size_t> &heads, findings &list)
      : doc(document), doubtful(heads), found(list) {}

  void run() {
    if (!doc.rules())
      return look_at_values();
    seen.resize(doc.rules()->ids);
    pending.push_back({doc.tree.get(), doc.rules(), false});
    while (!pending.empty()) {
      const task next = pending.back();
      pending.pop_back();
      check(next);
    }
  }

  /// Groups whose names only groups of another level may have. They are not checked.
  std::vector<cfnode *> spoiled{};

private:
  /// A group and its level. Groups wait in a list, so that the check needs no recursion.
  struct task {
    cfgroup *grp;
    const level *of;
    bool again; // another group of its name came before
  };
  /// The elements of a rule in the group that was checked last: the first, and how many.
  struct sight {
    const cfgroup *owner = nullptr;
    const cfnode *first = nullptr;
    std::size_t count = 0;
  };

  const state &doc;
  const std::vector<std::size_t> &doubtful;
  findings &found;
  std::vector<sight> seen{}; // by the ids of the schema
  std::vector<task> pending{};
  std::vector<std::size_t>
      groups{};       // in one group, those whose names must differ: places in `pending`
  name_table table{}; // their names
  bool hides = false; // a name at fault in that group may hide what seems to be missing

  void check(const task it) {
    hides = false;
    table.clear();
    groups.clear();
    for (cfnode *nd = first_element(it.grp); nd; nd = next_element(it.grp, nd))
      if (nd->type == cf_param)
        check(*as_param(nd), it);
      else
        check(as_group(nd), it);
    if (groups.size() > 1)
      check_names();
    if (it.of->demands && !it.again && !hides)
      check_missing(it);
  }

  /// Counts an element of a rule. Returns what is known of the rule in that group.
  sight &see(std::size_t id, const task &in, const cfnode *nd) {
    sight &it = seen[id];
    if (it.owner != in.grp)
      it = {in.grp, nd, 0};
    ++it.count;
    return it;
  }

  void check(const cfparam &par, const task &in) {
    const key_rule *rule = in.of->find_key(par.key);
    if (!rule)
      return report_unknown(&par.link, "unknown key", in.of);
    const sight &first = see(in.of->id_of(*rule), in, &par.link);
    if (first.count > 1 && !rule->many)
      report_twice(&par.link, first.first);
    if (rule->deprecated)
      found.add({.severity = severity::warning,
                 .fault = fault::suspicious,
                 .line = row_of(&par.link),
                 .at = &par.link,
                 .message = rule->notice.empty() ? "deprecated" : rule->notice});
    check_value(par, *rule);
  }

  void check_value(const cfparam &par, const key_rule &rule) {
    const std::string_view value = par.val;
    std::string_view item;
    std::string reason = refusal(rule, value, item);
    if (!reason.empty())
      found.add({.line = row_of(&par.link),
                 .at = &par.link,
                 .offset = item.data() - value.data(),
                 .message = std::move(reason),
                 .rule = rule.type == type::word ? &rule : nullptr});
    else if (rule.type == type::text || rule.type == type::custom)
      look_at(par);
  }

  void look_at(const cfparam &par) {
    if (!doc.options.warnings)
      return;
    if (const char *message = suspicion(par.val))
      found.add({.severity = severity::warning,
                 .fault = fault::suspicious,
                 .line = row_of(&par.link),
                 .at = &par.link,
                 .offset = 0,
                 .message = message});
  }

  void check(cfgroup *grp, const task &in) {
    const level *of = in.of->find_group(grp->cat, grp->name);
    if (!of)
      return report_unknown(&grp->link, "unknown group", in.of);
    const sight first = see(in.of->id_of(*of), in, &grp->link);
    if (!is_readable(grp, of))
      return report_name(grp);
    if (of->role != role::one && !of->many) {
      table.add(grp->name, groups.size(), in.of->id_of(*of));
      groups.push_back(pending.size());
    }
    pending.push_back({grp, of, of->role == role::one && first.count > 1});
    if (pending.back().again)
      report_twice(&grp->link, first.first);
  }

  void check_names() {
    table.sort();
    table.repeated([this](const sort_key &again, const sort_key &first) {
      task &it = pending[groups[again.place]];
      it.again = true;
      report_twice(&it.grp->link, &pending[groups[first.place]].grp->link);
    });
  }

  /// False if the reader let a name through because groups of another level may have it.
  bool is_readable(const cfgroup *grp, const level *of) const {
    return !doc.rules()->reads_hosts || is_name(grp->name, doc.allowed(of));
  }

  void report_name(cfgroup *grp) {
    const long row = row_of(&grp->link);
    const line_fault fault = line_critic(doc.lines().line(row), doc.options.names).judge();
    found.add(
        {.fault = fault::syntax, .line = row, .message = fault.message, .column = fault.column});
    spoiled.push_back(&grp->link);
    hides = true;
  }

  void report_unknown(const cfnode *nd, const char *message, const level *of) {
    if (doc.options.unknown == unknown::ignored)
      return;
    found.add(
        {.severity = doc.options.unknown == unknown::error ? severity::error : severity::warning,
         .fault = fault::unknown,
         .line = row_of(nd),
         .at = nd,
         .message = message,
         .of = of});
  }

  void report_twice(const cfnode *nd, const cfnode *first) {
    found.add({.fault = fault::duplicate,
               .line = row_of(nd),
               .at = nd,
               .message = "appears twice",
               .first = row_of(first)});
  }

  void check_missing(const task &it) {
    const long row = it.of->role == role::top ? 0 : row_of(&it.grp->link);
    if (static_cast<std::size_t>(row) < doubtful.size() && doubtful[static_cast<std::size_t>(row)])
      return;
    for (const key_rule &rule : it.of->keys)
      if (rule.required && seen[it.of->id_of(rule)].owner != it.grp)
        report_missing(it, rule.name, "required, but missing");
    for (const level &group : it.of->groups) {
      const sight &there = seen[it.of->id_of(group)];
      const std::size_t count = there.owner == it.grp ? there.count : 0;
      if (group.required && count == 0)
        report_missing(it, group.name, "required, but missing");
      if (count < group.at_least)
        report_missing(it, group.role == role::any ? std::string_view("any group") : group.name,
                       joined({"at least ", std::to_string(group.at_least), " required, found ",
                               std::to_string(count)}));
    }
  }

  void report_missing(const task &in, std::string_view name, std::string message) {
    found.add({.fault = fault::missing,
               .line = in.of->role == role::top ? 0 : row_of(&in.grp->link),
               .at = &in.grp->link,
               .lacks = name,
               .message = std::move(message)});
  }

  /// Without a schema: looks at every value of the tree.
  void look_at_values() {
    const cfgroup *top = doc.tree.get();
    for (const cfnode *nd = top->elem.next; nd != &top->elem; nd = next_node(nd))
      if (nd->type == cf_param)
        look_at(*as_param(nd));
  }
};

} // namespace cf::detail

#endif
