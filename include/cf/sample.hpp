/// @file sample.hpp
/// @brief Samples and tables: what a schema says, for people.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_SAMPLE_HPP
#define CF_SAMPLE_HPP

#include "calls.hpp"
#include "schema.hpp"

namespace cf {

namespace detail {

/// The range of a key: " 1..256", " from 1"; empty if it has none.
inline std::string range_text(const key_rule &rule) {
  const std::string low = low_text(rule), high = high_text(rule);
  if (!low.empty() && !high.empty())
    return joined({" ", low, "..", high});
  if (!low.empty())
    return joined({" from ", low});
  return high.empty() ? high : joined({" up to ", high});
}

/// The type and range of a key: "integer 1..256", "one of debug, info".
inline std::string type_text(const key_rule &rule) {
  const std::string kind = rule.type == type::word ? joined({"one of ", list_of(rule.words)})
                                                   : std::string(type_name(rule.type));
  const std::string whole = joined({rule.nonempty ? "nonempty " : "", kind, range_text(rule)});
  if (!rule.separator)
    return whole;
  return joined({"list of ", whole, ", separated by ", std::string(1, rule.separator)});
}

/// How a key may be used: "required", "default 4, any number of times".
inline std::string usage_text(const key_rule &rule) {
  std::string text = rule.required ? "required" : "optional";
  if (rule.has_default && rule.type == type::custom)
    text = "has a default";
  else if (rule.has_default)
    text = joined({"default ", rule.default_text.empty() ? "empty" : shown(rule.default_text)});
  if (rule.many)
    text += ", any number of times";
  return rule.deprecated ? joined({text, ", deprecated: ", rule.notice}) : text;
}

/// How a group may be used: "required", "at least 2, equal names allowed"; "optional" if nothing
/// more is to be said.
inline std::string usage_text(const level &group) {
  std::string text = group.required ? "required" : "optional";
  if (group.at_least > 0)
    text = joined({"at least ", std::to_string(group.at_least)});
  return group.many ? text.append(", equal names allowed") : text;
}

/// A value for the sample file; nothing if none can be made.
inline std::optional<std::string> example_of(const key_rule &rule) {
  if (!rule.example.empty())
    return rule.example;
  if (rule.has_default && rule.type != type::custom)
    return rule.default_text;
  const auto within = [&](whole wanted) { return std::clamp(wanted, rule.low, rule.high); };
  switch (rule.type) {
  case type::text: return "text";
  case type::boolean: return "true";
  case type::integer: return to_text(within(0));
  case type::size: return to_text(within(65536));
  case type::duration: return duration_text(within(1'000'000'000));
  case type::real: return to_text(std::clamp(0.0, rule.least, rule.most));
  case type::word: return rule.words.front().text;
  case type::custom: break;
  }
  return std::nullopt;
}

/// Writes a schema as a file. It goes as deep as the schema.
class sample_writer {
public:
  std::string text{};

  void write(const level &of) { // NOLINT(misc-no-recursion)
    for (const key_rule &rule : of.keys)
      write_key(rule, of);
    for (const level &it : of.groups)
      for (std::size_t i = 0; i < std::max<std::size_t>(it.at_least, 1); ++i)
        write_group(it, name_for(it, of, i));
  }

private:
  static constexpr std::size_t width = 90; // of a remark

  std::string indent{};

  void line(std::initializer_list<std::string_view> parts) {
    text += joined({indent, joined(parts), "\n"});
  }

  /// Lines of a remark, without bytes that no line can hold. Long lines are broken at blanks.
  void remark(std::string_view words) {
    for (bool more = !words.empty(); more;) {
      std::string_view part;
      more = take_item(words, '\n', part);
      while (part.size() > width) {
        const std::size_t end = part.rfind(' ', width);
        if (end == part.npos)
          break;
        line({"# ", shown(trimmed(part.substr(0, end)), everything)});
        part = trimmed(part.substr(end));
      }
      line({"# ", shown(part, longest_line / 2)});
    }
  }

  /// An empty line, except at the beginning of the file or of a group.
  void begin_block() {
    if (!text.empty() && !text.ends_with("{\n"))
      text += '\n';
  }

  /// A key that the file need not give, or for which there is no value, becomes a remark.
  void write_key(const key_rule &rule, const level &of) {
    const std::optional<std::string> value = example_of(rule);
    if (!value && rule.required)
      contradiction(below(of.name, rule.name), "a sample needs an example()");
    begin_block();
    remark(rule.help);
    remark(joined({type_text(rule), "; ", usage_text(rule)}));
    // A default that would be warned of is no line either.
    const bool shows_default =
        rule.has_default && !rule.deprecated && !suspicion(rule.default_text);
    if ((rule.required || shows_default) && value)
      line({rule.name, " = ", *value});
    else
      line({"# ", rule.name, " = ", value ? *value : "..."});
  }

  /// "NAME" or "CATEGORY NAME": the head of the group number `number` of a level in `of`.
  static std::string name_for(const level &it, const level &of, std::size_t number) {
    if (it.role == role::one)
      return it.name;
    std::string name = number ? joined({"example", std::to_string(number + 1)}) : "example";
    while (it.role == role::any && of.find_role(role::one, name))
      name += '_';
    return it.role == role::each ? title(it.name.c_str(), name) : name;
  }

  void write_group(const level &it, const std::string &head) { // NOLINT(misc-no-recursion)
    begin_block();
    remark(it.help);
    if (const std::string use = usage_text(it); use != "optional")
      remark(use);
    line({head, " {"});
    indent += "  ";
    write(it);
    indent.resize(indent.size() - 2);
    line({"}"});
  }
};

/// A text in a cell of a table.
inline std::string cell(std::string_view content) {
  std::string result;
  for (const char c : content)
    if (c == '|')
      result += "\\|";
    else
      result += c == '\n' ? ' ' : c;
  return result;
}

/// Writes the rows of a level and of those below it. It goes as deep as the schema.
inline void write_rows(const level &of, const std::string &path, // NOLINT(misc-no-recursion)
                       std::string &to) {
  for (const key_rule &rule : of.keys)
    to += joined({"| `", below(path, rule.name), "` | ", cell(type_text(rule)), " | ",
                  cell(usage_text(rule)), " | ", cell(rule.help), " |\n"});
  for (const level &it : of.groups) {
    const std::string name = it.role == role::one ? it.name : title(it.name.c_str(), "NAME");
    const std::string use = usage_text(it);
    if (!it.help.empty() || it.keys.empty() || use != "optional")
      to += joined({"| `", below(path, name), "` | group | ", use, " | ", cell(it.help), " |\n"});
    write_rows(it, below(path, name), to);
  }
}

} // namespace detail

inline std::string schema::sample() const {
  detail::sample_writer writer;
  writer.write(rules->top);
  return std::move(writer.text);
}

inline std::string schema::markdown() const {
  std::string table = "| Key | Type | Use | Meaning |\n| --- | --- | --- | --- |\n";
  detail::write_rows(rules->top, {}, table);
  return table;
}

} // namespace cf

#endif
