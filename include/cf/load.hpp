/// @file load.hpp
/// @brief Loading: files and texts into documents, with everything that is wrong with them.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_LOAD_HPP
#define CF_LOAD_HPP

#include "document.hpp"
#include "file.hpp"

namespace cf {

/// The result of try_load() and try_parse().
struct result {
  cf::document document; ///< All that syntax faults did not spoil, even if there are errors.
  std::vector<diagnostic>
      diagnostics{};  ///< Sorted by line; at most options::limit, and one that counts the rest.
  bool valid = false; ///< True if there is no error, not even beyond the limit.

  /// @return true if there is no error; there may be warnings.
  explicit operator bool() const noexcept { return valid; }
};

namespace detail {

struct access {
  static const shared<const rulebook> &book(const schema &of) { return of.rules; }
  static document make(owned_state own) { return document(std::move(own)); }
  static state &of(const document &doc) { return doc.state(); }
};

/// Reads what is left of a text with syntax faults. Returns recovery::doubtful.
inline std::vector<std::size_t> recover(state &doc, reading_faults &faults, findings &found) {
  recovery salvage(doc.text, doc.lines(), doc.readable());
  const std::string left = salvage.run(faults, found);
  reading_faults none;
  doc.damaged = true;
  doc.tree = read_text(left, doc.readable(), none);
  if (!doc.tree) { // nothing is left, so nothing is missed
    doc.tree = read_text({}, doc.readable(), none);
    return {1};
  }
  renumber(doc.tree.get(), salvage.rows);
  return std::move(salvage.doubtful);
}

/// Adds the lines with a zero byte to the faults: the core ignores the rest of such a line, and a
/// save would lose it. True if there are any.
inline bool add_zero_bytes(const state &doc, reading_faults &faults) {
  if (doc.text.find('\0') == doc.text.npos)
    return false;
  for (long row = 1; row <= doc.lines().count(); ++row)
    if (doc.lines().line(row).find('\0') != std::string_view::npos)
      faults.lines.push_back(static_cast<std::size_t>(row));
  std::sort(faults.lines.begin(), faults.lines.end());
  faults.lines.erase(std::unique(faults.lines.begin(), faults.lines.end()), faults.lines.end());
  return true;
}

/// Deletes groups whose names the reader accepts for the sake of other levels, but not the schema.
inline void remove_spoiled(state &doc, const std::vector<cfnode *> &groups) {
  const caught_messages guard;
  doc.damaged |= !groups.empty();
  for (cfnode *grp : groups)
    cfcatdelnd(grp);
}

/// The result if a text could not be read: a document without elements, which cannot be saved
/// unless there was no file.
inline result failed(owned_state own, int cause) {
  result it;
  it.diagnostics.push_back({severity::error, fault::file, own->options.name, 0, 0, {}, {}, {}});
  it.diagnostics[0].message =
      cause == EFBIG ? joined({"more than ", std::to_string(own->options.max_size), " bytes"})
                     : std::strerror(cause);
  reading_faults none;
  own->text.clear();
  own->damaged = cause != ENOENT;
  own->tree = read_text({}, own->readable(), none);
  it.document = access::make(std::move(own));
  return it;
}

inline result read(owned_state own) {
  state &doc = *own;
  if (doc.text.size() > doc.options.max_size)
    return failed(std::move(own), EFBIG);
  findings found(doc.options.limit);
  std::vector<std::size_t> doubtful;
  reading_faults faults;
  doc.tree = read_text(doc.text, doc.readable(), faults);
  if (add_zero_bytes(doc, faults) || !doc.tree)
    doubtful = recover(doc, faults, found);
  checking check(doc, doubtful, found);
  check.run();
  result it;
  it.diagnostics = doc.describe(found);
  it.valid = found.errors == 0;
  remove_spoiled(doc, check.spoiled);
  if (it.valid)
    doc.warnings = it.diagnostics;
  it.document = access::make(std::move(own));
  return it;
}

inline result read_file(const std::string &path, shared<const rulebook> rules, options how) {
  if (how.name.empty())
    how.name = path;
  owned_state own(new state(std::move(rules), std::move(how), std::string()));
  own->origin = absolute(path);
  if (const int cause = load_file(path, own->options.max_size, own->text))
    return failed(std::move(own), cause);
  own->known = fingerprint(own->text);
  return read(std::move(own));
}

inline result read_string(std::string_view text, shared<const rulebook> rules, options how) {
  return read(owned_state(new state(std::move(rules), std::move(how), std::string(text))));
}

inline document valid(result it) {
  if (!it)
    throw error(std::move(it.diagnostics));
  return std::move(it.document);
}

} // namespace detail

/// Loads a file. @param path of the file, also in messages unless `how` names it otherwise.
/// @return the document and all errors and warnings; also if the file cannot be read.
/// @throws std::bad_alloc, and what functions of `as<T>` throw.
inline result try_load(const std::string &path, const schema &rules, options how = {}) {
  return detail::read_file(path, detail::access::book(rules), std::move(how));
}
/// As above, without a schema: everything is allowed.
inline result try_load(const std::string &path, options how = {}) {
  return detail::read_file(path, {}, std::move(how));
}

/// Reads a text, which is copied. For the rest as try_load().
inline result try_parse(std::string_view text, const schema &rules, options how = {}) {
  return detail::read_string(text, detail::access::book(rules), std::move(how));
}
/// As above, without a schema: everything is allowed.
inline result try_parse(std::string_view text, options how = {}) {
  return detail::read_string(text, {}, std::move(how));
}

/// Loads a file. @return the document; its warnings are in document::warnings().
/// @throws cf::error with all errors and warnings if there is an error; and as try_load().
inline document load(const std::string &path, const schema &rules, options how = {}) {
  return detail::valid(try_load(path, rules, std::move(how)));
}
/// As above, without a schema: everything is allowed.
inline document load(const std::string &path, options how = {}) {
  return detail::valid(try_load(path, std::move(how)));
}

/// Reads a text, which is copied. For the rest as load().
inline document parse(std::string_view text, const schema &rules, options how = {}) {
  return detail::valid(try_parse(text, rules, std::move(how)));
}
/// As above, without a schema: everything is allowed.
inline document parse(std::string_view text, options how = {}) {
  return detail::valid(try_parse(text, std::move(how)));
}

} // namespace cf

#endif
