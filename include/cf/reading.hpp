/// @file reading.hpp
/// @brief Reading: a tree out of a text.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_READING_HPP
#define CF_READING_HPP

#include "calls.hpp"

namespace cf::detail {

/// The head of a group in a line: category and name.
struct head {
  std::string_view category{}, name{};
  bool valid = false;

  head(std::string_view line, names allowed) {
    const std::string_view text = trimmed(line);
    if (!text.ends_with('{'))
      return;
    name = trimmed(text.substr(0, text.size() - 1));
    const std::size_t end =
        static_cast<std::size_t>(std::find_if(name.begin(), name.end(), is_blank) - name.begin());
    if (end < name.size()) {
      category = name.substr(0, end);
      name = trimmed(name.substr(end));
    }
    valid = is_name(name, allowed) && (category.empty() || is_name(category, names::identifiers));
  }
};

// Slots for a reader that accepts host names as names of groups.

inline int is_host_head(cflexer *lex) { return head(lex->row, names::hosts).valid; }
inline cfgroup *scan_host_head(cflexer *lex) {
  const head found(lex->row, names::hosts);
  return cfnewgrp(std::string(found.category).c_str(), std::string(found.name).c_str(), cf_grpinst,
                  lex->nrow);
}

/// Reads a text. Returns NULL if braces do not match or if lines do not follow the format; `faults`
/// then lists those lines.
inline owned_group read_text(std::string_view text, names allowed, reading_faults &faults) {
  if (text.empty())
    text = "\n"; // not every system makes a stream of nothing
  // A stream for reading does not change the text.
  const stream source = checked(fmemopen(const_cast<char *>(text.data()), text.size(), "r"));
  struct record {
    cflexer lex{};
    ~record() { owned_group(lex.top); }
  } reader;
  cflexer &lex = reader.lex;
  if (allowed == names::hosts) {
    lex.isgrpbeg = is_host_head;
    lex.scangrp = scan_host_head;
  }
  const caught_messages guard(&faults);
  const bool clean = cflex(&lex, source.get(), "") != 0;
  if (std::ferror(source.get()))
    throw std::bad_alloc(); // a stream over memory fails for no other reason
  return owned_group(clean ? std::exchange(lex.top, nullptr) : nullptr);
}

} // namespace cf::detail

#endif
