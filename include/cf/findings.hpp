/// @file findings.hpp
/// @brief Findings: faults that a check notes, until it is known which of them become diagnostics.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_FINDINGS_HPP
#define CF_FINDINGS_HPP

#include "calls.hpp"
#include "rules.hpp"

namespace cf::detail {

/// The lines of a text, numbered from 1, each found in constant time.
class line_table {
public:
  explicit line_table(std::string_view source) : text(source) {
    for (std::size_t at = 0; at < text.size(); ++at) {
      starts.push_back(at);
      at = std::min(text.find('\n', at), text.size());
    }
  }
  long count() const { return static_cast<long>(starts.size()); }
  /// Where a line begins; the end of the text if there is no such line.
  std::size_t start(long line) const {
    return line <= count() ? starts[static_cast<std::size_t>(line - 1)] : text.size();
  }

  /// A line without its end. Empty if there is no such line.
  std::string_view line(long number) const {
    if (number < 1 || number > count())
      return {};
    const std::string_view rest = text.substr(start(number), start(number + 1) - start(number));
    return rest.substr(0, rest.find('\n'));
  }

  /// The column of the first byte that is not a blank; 0 if there is no such line, or it is empty.
  long column(long number) const {
    const std::string_view whole = line(number);
    return whole.empty() ? 0 : column_in(whole, 0);
  }
  /// The column of the first byte of the value; that of the line if it has no value.
  long value_column(long number) const {
    const std::string_view whole = line(number);
    const std::size_t mark = whole.find('=');
    return mark == whole.npos ? column(number) : column_in(whole, mark + 1);
  }

private:
  std::string_view text;
  std::vector<std::size_t> starts;

  /// The column of the first byte from `from` on that is not a blank, or the one after the line.
  static long column_in(std::string_view whole, std::size_t from) {
    while (from < whole.size() && is_blank(whole[from]))
      ++from;
    return static_cast<long>(from + 1);
  }
};

/// A fault, in a form that costs little to note. Its path, column and hint are made only if it is
/// reported.
struct finding {
  cf::severity severity = cf::severity::error;
  cf::fault fault = cf::fault::value;
  long line = 0;
  const cfnode *at = nullptr; // the element, or the group that lacks something; NULL: none
  std::string_view lacks{};   // what that group lacks
  long offset = -1;           // in the value; negative: the whole element is at fault
  std::string message{};
  long first = 0;                 // of two equal names, the line of the first; 0: no such fault
  const level *of = nullptr;      // has the names that a misspelt one may mean; NULL: none
  const key_rule *rule = nullptr; // has the words that a misspelt one may mean; NULL: none
  long column = 0;                // 0: found from `line`, `at` and `offset`
  std::string path{};             // if `at` is NULL

  /// Errors come before warnings, each by line.
  std::uint64_t order() const {
    return static_cast<std::uint64_t>(line) | std::uint64_t{severity == cf::severity::warning}
                                                  << 63;
  }
};

/// Collects findings. It keeps only the first `limit` of them: errors before warnings, each by
/// line.
class findings {
public:
  explicit findings(std::size_t limit) : most(limit) {}

  std::size_t errors = 0, warnings = 0;

  void add(finding found) {
    ++(found.severity == cf::severity::error ? errors : warnings);
    if (pruned && (most == 0 || found.order() >= kept[most - 1].order()))
      return;
    kept.push_back(std::move(found));
    if (kept.size() / 2 >= most && kept.size() >= fewest_to_sort)
      prune();
  }

  /// The findings that were kept, in order.
  std::vector<finding> take() {
    prune();
    return std::move(kept);
  }

private:
  static constexpr std::size_t fewest_to_sort = 64; // so that a low limit does not sort each time

  std::size_t most;
  std::vector<finding> kept;
  bool pruned = false; // `kept` begins with the first `most`, in order; newer ones follow

  void prune() {
    kept = in_order(std::move(kept), most, [](const finding &it) {
      return sort_key{it.order(), 0, "", 0};
    });
    pruned = kept.size() >= most;
  }
};

} // namespace cf::detail

#endif
