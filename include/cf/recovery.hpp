/// @file recovery.hpp
/// @brief Recovery: what is left of a text with syntax faults.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_RECOVERY_HPP
#define CF_RECOVERY_HPP

#include "syntax.hpp"

namespace cf::detail {

/// Goes through a text with syntax faults, and finds what they spoil: the lines themselves, what is
/// in a group with a faulty head, and what braces that do not match put into the wrong group.
class recovery {
public:
  recovery(std::string_view source, const line_table &table, names groups)
      : doubtful(static_cast<std::size_t>(table.count()) + 1), text(source), lines(table),
        allowed(groups), kept(doubtful.size(), whole_line) {}

  /// Reports the faults and gives what is left of the text.
  std::string run(const reading_faults &faults, findings &found) {
    more_ends = balance(faults) < 0;
    auto fault = faults.lines.begin();
    for (long row = 1; row <= lines.count(); ++row) {
      const bool bad = fault != faults.lines.end() && *fault == static_cast<std::size_t>(row);
      fault += bad;
      take(row, bad, found);
    }
    if (!open.empty())
      finish(found);
    return rest();
  }

  /// For the line of each group's head, and at 0 for the file: 1 if a fault may hide what the group
  /// seems to lack; else 0.
  std::vector<std::size_t> doubtful;
  /// The line of the source for each line of what is left.
  std::vector<std::size_t> rows{};

private:
  /// A group that is open, by the line of its head.
  struct opened {
    long row;
    bool bad;   // its head or a group around it is faulty
    bool brace; // its head has a brace
  };
  /// A group that has ended, by the lines of its head and its end.
  struct ended {
    long head, end;
  };
  /// What a line does: first it ends groups, then it begins some.
  struct steps {
    std::ptrdiff_t ends = 0, begins = 0;
  };
  // What is kept of a line: so many braces that end groups, or the whole line.
  static constexpr auto whole_line = static_cast<std::size_t>(-1);

  std::string_view text;
  const line_table &lines;
  names allowed;
  std::vector<std::size_t> kept; // what is kept of each line
  std::vector<opened> open{};    // the groups around the line
  std::vector<ended> closed{};   // groups at the top that ended since the last stray brace
  bool loose = false;            // after the last of them, there is a parameter at the top
  bool more_ends = false;        // more lines end groups than begin some
  long brace_of_head = 0;        // a line with the brace of a head that is in the line before

  void report(long row, std::string message, findings &found) {
    found.add({.fault = fault::syntax, .line = row, .message = std::move(message)});
  }
  std::size_t &keep(long row) { return kept[static_cast<std::size_t>(row)]; }
  void doubt(long head_row) { doubtful[static_cast<std::size_t>(head_row)] = 1; }
  void doubt_open() { doubt(open.empty() ? 0 : open.back().row); }

  /// Takes the next line. `bad`: the reader refused it.
  void take(long row, bool bad, findings &found) {
    const std::string_view line = trimmed(lines.line(row));
    const bool inside = !open.empty() && open.back().bad;
    const bool assigns = !bad && more_ends && is_assigned_brace(line);
    if (bad || assigns || inside)
      keep(row) = 0;
    if (row == brace_of_head)
      return; // taken with the line before
    const steps done = assigns ? steps{0, 1} : bad ? faulty_steps(line, row) : plain_steps(line);
    if (bad || assigns)
      report(row, reason(row, assigns), found);
    if ((bad || assigns) && !inside)
      doubt_open();
    if (open.empty() && !done.ends && !done.begins && !line.empty() && line[0] != '#')
      loose = true;
    for (std::ptrdiff_t i = 0; i < done.ends && close(row, bad, found); ++i) {
    }
    if (done.begins > 0)
      open.push_back({row, bad || assigns || inside, line.find('{') != line.npos});
  }

  /// The reason if the line alone does not show it; else empty.
  std::string reason(long row, bool assigns) const {
    if (assigns)
      return "no = belongs between the name of a group and its {";
    return brace_of_head > row ? "the { of a group belongs in the line of its name" : "";
  }

  /// What a line without a fault does.
  static steps plain_steps(std::string_view line) {
    if (line.starts_with('#') || line.find('=') != line.npos)
      return {};
    return {line.starts_with('}'), line.ends_with('{')};
  }

  /// True for "name = {", which the reader takes for a parameter.
  static bool is_assigned_brace(std::string_view line) {
    return !line.starts_with('#') && line.ends_with('{') &&
           trimmed(line.substr(0, line.size() - 1)).ends_with('=');
  }

  /// What a faulty line most probably was meant to do.
  steps faulty_steps(std::string_view line, long row) {
    const std::size_t brace = line.find_first_of("{}");
    if (line.starts_with('#') || line.starts_with("//") || line.find('=') < brace)
      return {};
    if (brace == line.npos)
      return {0, begins_below(line, row)};
    steps sum;
    for (const char c : line.substr(brace))
      if (c == '{')
        ++sum.begins;
      else if (c == '}')
        sum.begins > 0 ? --sum.begins : ++sum.ends;
    return sum;
  }

  /// True for a head whose brace is in the next line, or was forgotten before lines that are
  /// indented.
  bool begins_below(std::string_view line, long row) {
    const long next = row + 1;
    const std::string_view after = trimmed(lines.line(next));
    if (after == "{") {
      brace_of_head = next;
      return true;
    }
    const bool name = head(joined({line, " {"}), allowed).valid;
    return name && !after.empty() && lines.column(next) > lines.column(row);
  }

  /// How many more lines begin groups than end some.
  long balance(const reading_faults &faults) const {
    long sum = 0;
    auto fault = faults.lines.begin();
    for (long row = 1; row <= lines.count(); ++row)
      if (fault != faults.lines.end() && *fault == static_cast<std::size_t>(row))
        ++fault;
      else if (const steps it = plain_steps(trimmed(lines.line(row))); it.ends || it.begins)
        sum += it.begins - it.ends;
    return sum;
  }

  /// Ends the innermost open group. False if none is open.
  bool close(long row, bool bad, findings &found) {
    if (open.empty())
      return stray(row, bad, found), false;
    const opened last = open.back();
    open.pop_back();
    if (bad && !last.bad)
      ++keep(row);
    if (bad)
      doubt_open();
    if (open.empty()) {
      closed.push_back({last.row, row});
      loose = false;
    }
    return true;
  }

  /// A brace that ends no group: one before it may have ended a group too early. That is the last
  /// group whose head is indented as the brace is, and what follows it may belong to it.
  void stray(long row, bool bad, findings &found) {
    if (!bad)
      report(row, "} without a group", found);
    std::size_t hit = closed.size();
    while (hit > 0 && lines.column(closed[hit - 1].head) != lines.column(row))
      --hit;
    if (hit == 0 && loose)
      hit = closed.size();
    long from = row;
    if (hit > 0 && (hit < closed.size() || loose)) {
      from = closed[hit - 1].end + 1;
      doubt(closed[hit - 1].head);
      doubt(0);
    }
    drop(from, row);
    closed.clear();
    loose = false;
  }

  /// Keeps nothing of some lines.
  void drop(long from, long to) {
    for (; from <= to; ++from)
      keep(from) = 0;
  }

  /// Groups that are not ended: what follows may be in the wrong group.
  void finish(findings &found) {
    std::size_t last = open.size();
    while (last > 0 && (open[last - 1].bad || !open[last - 1].brace))
      --last;
    if (last > 0)
      found.add({.fault = fault::syntax,
                 .line = open[last - 1].row,
                 .message = "this group is not closed by a }",
                 .path = path_to(last)});
    drop(open.front().row, lines.count());
    doubt(0);
  }

  /// The path of the open group number `count`, as path_of().
  std::string path_to(std::size_t count) const {
    const std::size_t first = count > longest_path ? count - longest_path : 0;
    std::string path(first ? ".." : ""); // and a point
    for (std::size_t i = first; i < count; ++i) {
      const head found(lines.line(open[i].row), allowed);
      path = below(std::move(path), shown(title(std::string(found.category).c_str(), found.name)));
    }
    return path;
  }

  /// What is kept of all lines. A line of which nothing is kept becomes an empty one.
  std::string rest() {
    std::string left;
    const auto add = [&](std::string_view line, long row) {
      left += line;
      rows.push_back(static_cast<std::size_t>(row));
    };
    for (long row = 1; row <= lines.count(); ++row)
      if (keep(row) == whole_line)
        add(text.substr(lines.start(row), lines.start(row + 1) - lines.start(row)), row);
      else if (keep(row) == 0)
        add("\n", row);
      else
        for (std::size_t i = 0; i < keep(row); ++i)
          add("}\n", row);
    return left;
  }
};

/// Gives the elements their lines in the source, since recovery may turn a line into several.
inline void renumber(cfgroup *top, const std::vector<std::size_t> &rows) {
  for (cfnode *nd = top->elem.next; nd != &top->elem; nd = next_node(nd))
    if (nd->type != cf_anchor) {
      long &row = nd->type == cf_group   ? as_group(nd)->row
                  : nd->type == cf_param ? as_param(nd)->row
                                         : as_remark(nd)->row;
      if (row > 0)
        row = static_cast<long>(rows[static_cast<std::size_t>(row) - 1]);
    }
}

} // namespace cf::detail

#endif
