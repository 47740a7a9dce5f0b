/// @file syntax.hpp
/// @brief Syntax faults: why a line does not follow the format.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_SYNTAX_HPP
#define CF_SYNTAX_HPP

#include "findings.hpp"
#include "reading.hpp"

namespace cf::detail {

/// What is wrong with a line, and in which column.
struct line_fault {
  std::string message;
  long column;
};

/// Finds the reason why a line does not follow the format.
class line_critic {
public:
  line_critic(std::string_view whole, names groups)
      : line(whole), text(trimmed(whole)), allowed(groups) {}

  line_fault judge() const {
    const std::size_t mark = text.find('='), brace = text.find('{');
    if (line.size() > longest_line)
      return at(text, joined({"the line has more than ", std::to_string(longest_line), " bytes"}));
    if (const std::size_t zero = line.find('\0'); zero != line.npos)
      return at(line.substr(zero), "the line has a zero byte");
    if (text.starts_with("\xef\xbb\xbf"))
      return at(text,
                "the text begins with a byte order mark, which does not belong to the format");
    if (text.starts_with("//") || text.starts_with(';'))
      return at(text, "a remark begins with #");
    if (text.starts_with('}'))
      return at(trimmed(text.substr(1)), "after } the line must end");
    if (mark < brace)
      return judge_key(trimmed(text.substr(0, mark)));
    if (brace != text.npos)
      return judge_head(trimmed(text.substr(0, brace)), trimmed(text.substr(brace + 1)));
    return at(text,
              quoted(text).append(" is neither a parameter (key = value) nor a group (name {)"));
  }

private:
  std::string_view line, text;
  names allowed;

  /// An empty part has no place in the line.
  line_fault at(std::string_view part, std::string message) const {
    return {std::move(message),
            part.empty() ? 1 : static_cast<long>(part.data() - line.data()) + 1};
  }
  line_fault no_name(std::string_view part, std::string_view what, names rule) const {
    return at(part, joined({quoted(part), " is not a ", what, ": ", name_rule(rule)}));
  }

  line_fault judge_key(std::string_view key) const {
    return key.empty() ? at(text, "there is no key before =")
                       : no_name(key, "key", names::identifiers);
  }

  line_fault judge_head(std::string_view before, std::string_view after) const {
    if (!after.empty())
      return at(after, after.starts_with('#') ? "a remark needs a line of its own"
                                              : "after { the line must end");
    const auto found = head(line, allowed);
    if (before.empty())
      return at(text, "there is no name before {");
    if (!found.category.empty() && !is_name(found.category, names::identifiers))
      return no_name(found.category, "category", names::identifiers);
    return no_name(found.name, "name", allowed);
  }
};

} // namespace cf::detail

#endif
