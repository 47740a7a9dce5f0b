/// @file diagnostics.hpp
/// @brief Diagnostics: what is wrong with a file, where, and why; and the exception that carries
///     them.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_DIAGNOSTICS_HPP
#define CF_DIAGNOSTICS_HPP

#include "ownership.hpp"
#include "text.hpp"

#include <iosfwd>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cf {

/// How grave a diagnostic is. Warnings alone never make a load fail.
enum class severity { warning, error };

/// What kind of fault a diagnostic reports.
enum class fault {
  file,      ///< A file cannot be read or written, is too large, or was changed by someone else.
  syntax,    ///< A line does not follow the format, or braces do not match.
  unknown,   ///< The schema does not have this key or group.
  duplicate, ///< A key or group that may occur once occurs again.
  value,     ///< A value is not of its type, or not in its range.
  missing,   ///< A required key or group is absent.
  suspicious ///< Valid, but probably a mistake: quotes, a remark after a value, a deprecated key.
};

/// One fault of a file.
struct diagnostic {
  cf::severity severity = cf::severity::error; ///< Error or warning.
  cf::fault fault = cf::fault::value;          ///< Kind of the fault.
  std::string file;    ///< Name of the file as given to the load; empty for a text without a name.
  long line = 0;       ///< Line, from 1; 0 if there is none, as for a key that the file lacks.
  long column = 0;     ///< Column in bytes, from 1; 0 if there is none.
  std::string path;    ///< Which element: "tls.cert", "upstream app03.port"; may be empty.
  std::string message; ///< What is wrong with it.
  std::string hint;    ///< A suggestion such as "did you mean workers?"; may be empty.
};

/// @return the one-line form, without line end: "FILE:LINE:COLUMN: SEVERITY: PATH: MESSAGE (HINT)";
///     parts that are empty or 0 are left out.
inline std::string to_string(const diagnostic &d) {
  std::string line = detail::shown(d.file, detail::everything);
  for (const long place : {d.line, d.column})
    if (place > 0)
      line += detail::joined({line.empty() ? "" : ":", std::to_string(place)});
  line += line.empty() ? "" : ": ";
  line += d.severity == severity::error ? "error: " : "warning: ";
  line += detail::joined({d.path, d.path.empty() ? "" : ": ", d.message});
  return d.hint.empty() ? line : line.append(detail::joined({" (", d.hint, ")"}));
}

/// Writes the one-line form, without line end. @return `out`.
template <class Traits>
std::basic_ostream<char, Traits> &operator<<(std::basic_ostream<char, Traits> &out,
                                             const diagnostic &d) {
  return out << to_string(d).c_str();
}

/// Thrown for faults of a file, of its contents, or of an edit. A mistake of the program itself is
/// a std::logic_error instead.
class error : public std::runtime_error {
public:
  /// @param list at least one diagnostic. what() returns their one-line forms, one per line.
  explicit error(std::vector<diagnostic> list)
      : std::runtime_error(lines(list)), all(new shared_list{{}, std::move(list)}) {}

  /// @return what is wrong, sorted by line; valid as long as this exception or a copy of it lives.
  const std::vector<diagnostic> &diagnostics() const noexcept { return all->list; }

private:
  struct shared_list : detail::counted {
    std::vector<diagnostic> list;
  };
  detail::shared<const shared_list> all; // shared, so that a copy cannot throw

  static std::string lines(const std::vector<diagnostic> &list) {
    std::string text;
    for (const diagnostic &d : list)
      text += detail::joined({text.empty() ? "" : "\n", to_string(d)});
    return text;
  }
};

} // namespace cf

#endif
