/// @file findings.hpp
/// @brief Findings: what a check meets, kept until it is known which of them become diagnostics.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_FINDINGS_HPP
#define CF_FINDINGS_HPP

#include "calls.hpp"
#include "rules.hpp"

namespace cf::detail {

/// The lines of a text, each found in constant time.
class line_table {
public:
  explicit line_table(std::string_view source) : text(source) {
    for (std::size_t at = 0; at < text.size(); ++at) {
      starts.push_back(at);
      at = std::min(text.find('\n', at), text.size());
    }
  }
  long count() const { return static_cast<long>(starts.size()); }
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

  /// The columns of the first byte that is no blank, and of the first byte of a value; 0: no such
  /// line.
  long column(long number) const {
    const std::string_view whole = line(number);
    return whole.empty() ? 0 : column_in(whole, 0);
  }
  long value_column(long number) const {
    const std::string_view whole = line(number);
    const std::size_t mark = whole.find('=');
    return mark == whole.npos ? column(number) : column_in(whole, mark + 1);
  }

private:
  std::string_view text;
  std::vector<std::size_t> starts;

  /// The column of the first byte from `from` on that is no blank, or behind the line.
  static long column_in(std::string_view whole, std::size_t from) {
    while (from < whole.size() && is_blank(whole[from]))
      ++from;
    return static_cast<long>(from + 1);
  }
};

/// Something wrong with an element: what costs little to note. Paths, columns and hints come later.
struct finding {
  cf::severity severity = cf::severity::error;
  cf::fault fault = cf::fault::value;
  long line = 0;
  const cfnode *at = nullptr; // the element, or the group that misses something; NULL: none
  std::string_view lacks{};   // what it misses
  long offset = -1;           // in the value; negative: the element itself is meant
  std::string message{};
  long first = 0;                 // line of the first of two
  const level *of = nullptr;      // whose names a misspelt one may have meant
  const key_rule *rule = nullptr; // whose words a misspelt one may have meant
  long column = 0;                // if known already

  /// Errors come before warnings, each by line.
  std::uint64_t order() const {
    return static_cast<std::uint64_t>(line) | std::uint64_t{severity == cf::severity::warning}
                                                  << 63;
  }
};

/// Gathers findings, but keeps only those that will be wanted: errors before warnings, each by
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
    if (kept.size() / 2 >= most && kept.size() >= 64)
      prune();
  }

  /// What is kept at the end, and how many errors and warnings are not.
  std::vector<finding> take() {
    prune();
    return std::move(kept);
  }

private:
  std::size_t most;
  std::vector<finding> kept;
  bool pruned = false; // what is wanted is kept, in order, and then what came since

  void prune() {
    kept = in_order(std::move(kept), most, [](const finding &it) {
      return item{it.order(), 0, "", 0};
    });
    pruned = kept.size() >= most;
  }
};

} // namespace cf::detail

#endif
