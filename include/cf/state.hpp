/// @file state.hpp
/// @brief State: what a document owns, and diagnostics about it.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_STATE_HPP
#define CF_STATE_HPP

#include "hints.hpp"
#include "printing.hpp"
#include "recovery.hpp"
#include "schema.hpp"

#include <set>

namespace cf {

/// What a load does with keys and groups that the schema does not have.
enum class unknown {
  error,   ///< Each is an error.
  warning, ///< Each is a warning.
  ignored  ///< They are accepted.
};

/// How a file is read. Every member has a default.
struct options {
  std::string name{};      ///< The file in messages; empty: the path.
  std::size_t limit = 100; ///< At most this many diagnostics, and one that counts the rest.
  cf::unknown unknown = cf::unknown::error; ///< Keys and groups that the schema does not have.
  cf::names names = cf::names::identifiers; ///< What names of groups may be.
  bool warnings = true;                     ///< Warn of quotes and of remarks after a value.
  /// In bytes: a larger file or text is refused. The default is no limit.
  std::size_t max_size = static_cast<std::size_t>(-1);
};

namespace detail {

/// A summary of the bytes of a file, to notice a change.
struct fingerprint {
  bool exists = false; // false: there is no file
  std::size_t size = 0;
  std::uint64_t sum = 0;

  fingerprint() = default;
  explicit fingerprint(std::string_view bytes) : exists(true), size(bytes.size()) {
    for (; bytes.size() >= sizeof sum; bytes.remove_prefix(sizeof sum))
      add(bytes.substr(0, sizeof sum));
    if (!bytes.empty())
      add(bytes);
  }
  bool operator==(const fingerprint &) const = default;

private:
  void add(std::string_view bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data(), bytes.size());
    sum = std::rotl(sum ^ word, 29) * 0x9e3779b97f4a7c15;
  }
};

/// What a document owns. Its address stays the same when the document moves.
struct state {
  shared<const rulebook> book; // NULL: no schema
  cf::options options;
  std::string text;
  owned_group tree, catalog; // `catalog` is NULL until it is asked for
  std::vector<diagnostic> warnings{};
  std::set<std::uint64_t> taken{}; // the names of groups that is_taken() looked through, as hashes
  bool damaged = false;            // the text had syntax faults
  std::string origin{};            // the file that was loaded or saved last; empty: none
  fingerprint known{};             // its bytes

  state(shared<const rulebook> schema, cf::options how, std::string source)
      : book(std::move(schema)), options(std::move(how)), text(std::move(source)) {}
  state(const state &) = delete;
  state &operator=(const state &) = delete;
  ~state() { delete table; }

  /// The level of the top; NULL: no schema.
  const level *rules() const { return book ? &book->top : nullptr; }

  /// The names of groups that the reader of this document accepts.
  names readable() const { return book && book->top.reads_hosts ? names::hosts : options.names; }
  /// The names that groups of a level may have. NULL is a level that the schema does not have.
  names allowed(const level *group) const {
    return group && group->hosts ? names::hosts : options.names;
  }

  /// The lines of the text, made when they are first needed. Threads may ask at once.
  const line_table &lines() const {
    line_table *made = __atomic_load_n(&table, __ATOMIC_ACQUIRE);
    if (made)
      return *made;
    owned<line_table, destroy<line_table>> fresh(new line_table(text));
    if (__atomic_compare_exchange_n(&table, &made, fresh.get(), false, __ATOMIC_ACQ_REL,
                                    __ATOMIC_ACQUIRE))
      return *fresh.release();
    return *made;
  }

  /// The diagnostic for a finding.
  diagnostic describe(const finding &it) const;
  /// Those for all findings, by line, and one more that counts what was not kept.
  std::vector<diagnostic> describe(findings &found) const;

  /// The exception for one finding.
  error fault(finding it) const { return error({describe(it)}); }

private:
  mutable line_table *table = nullptr;
};

using owned_state = owned<state, destroy<state>>;

/// The line of an element; 0 if it came from no file.
inline long row_of(const cfnode *nd) {
  const long row = nd->type == cf_param    ? as_param(nd)->row
                   : nd->type == cf_remark ? as_remark(nd)->row
                                           : as_group(nd)->row;
  return row > 0 ? row : 0;
}

inline diagnostic state::describe(const finding &it) const {
  diagnostic d{it.severity, it.fault, options.name, it.line, it.column, {}, it.message, {}};
  if (it.fault == cf::fault::syntax && d.message.empty()) {
    line_fault reason = line_critic(lines().line(it.line), readable()).judge();
    d.message = std::move(reason.message);
    d.column = reason.column;
  } else if (it.line > 0 && d.column == 0) {
    d.column = it.offset < 0 ? lines().column(it.line) : lines().value_column(it.line) + it.offset;
  }
  d.path = it.at ? below(path_of(it.at), it.lacks) : it.path;
  d.hint = hint_for(it);
  return d;
}

inline std::vector<diagnostic> state::describe(findings &found) const {
  std::vector<diagnostic> list;
  for (const finding &it : found.take())
    list.push_back(describe(it));
  list = in_order(std::move(list), everything, [](const diagnostic &d) {
    return sort_key{static_cast<std::uint64_t>(d.line), static_cast<std::size_t>(d.column), "", 0};
  });
  if (const std::size_t more = found.errors + found.warnings - list.size()) {
    const bool error = found.errors > list.size();
    list.push_back({error ? severity::error : severity::warning,
                    cf::fault::value,
                    options.name,
                    0,
                    0,
                    {},
                    joined({"and ", std::to_string(more), " more"}),
                    {}});
  }
  return list;
}

/// The size of the document as text, in bytes, without its empty lines. Throws if a line would be
/// too long to be read back.
inline std::size_t printable_size(const state &doc) {
  const printed_size size(doc.tree.get());
  if (!size.too_long)
    return size.bytes;
  const bool remark = size.too_long->type == cf_remark;
  throw doc.fault({.line = row_of(size.too_long),
                   .at = remark ? nullptr : size.too_long,
                   .message = length_reason(everything)});
}

} // namespace detail
} // namespace cf

#endif
