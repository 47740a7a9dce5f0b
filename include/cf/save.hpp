/// @file save.hpp
/// @brief Saving: a file is replaced so that, whatever fails, it is the old one or the new one,
///     whole.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_SAVE_HPP
#define CF_SAVE_HPP

#include "load.hpp"

namespace cf {

namespace detail {

/// The exchange of one file for another. Every step throws if it fails, and then the file is as it
/// was.
class replacement {
public:
  explicit replacement(const std::string &path) : name(path), target(resolved(path)) {}
  replacement(const replacement &) = delete;
  replacement &operator=(const replacement &) = delete;
  ~replacement() {
    if (!temporary.empty())
      unlink(temporary.c_str());
  }

  /// Throws unless the file, if it is the one that `doc` knows, is as it knows it.
  void expect_unchanged(const state &doc) const {
    std::string now;
    if (doc.origin.empty() || resolved(doc.origin) != target)
      return;
    const int cause = load_file(target, everything, now);
    if ((cause && cause != ENOENT) || (cause ? fingerprint() : fingerprint(now)) != doc.known)
      fail("someone else changed the file since it was loaded");
  }

  /// All steps up to the one that cannot be undone.
  void prepare(std::string_view text) {
    if (name.find('\0') != name.npos)
      fail("the path has a zero byte");
    std::string pattern = joined({target, ".XXXXXX"});
    file made(mkstemp(pattern.data()));
    demand(made.is_open(), "cannot create a file in its folder");
    temporary.swap(pattern);
    take_over(made);
    demand(made.write(text) && fsync(made.descriptor()) == 0 && made.close(), "cannot write");
    std::string written;
    if (load_file(temporary, text.size(), written) != 0 || written != text)
      fail("cannot read back what was written");
  }

  /// The step that cannot be undone.
  void replace() {
    demand(std::rename(temporary.c_str(), target.c_str()) == 0, "cannot replace it");
    temporary.clear();
  }

  /// Makes the exchange final: before this, a crash of the machine may bring the old file back.
  void sync_folder() const {
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == target.npos ? "." : target.substr(0, slash + 1);
    const file opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    demand(opened.is_open() && fsync(opened.descriptor()) == 0, "cannot synchronise its folder");
  }

  [[noreturn]] void fail(std::string message, cf::fault kind = fault::file) const {
    throw error({{severity::error, kind, name, 0, 0, {}, std::move(message), {}}});
  }

private:
  const std::string &name;
  std::string target;
  std::string temporary; // empty while there is none

  void demand(bool done, const char *what) const {
    if (!done)
      fail(joined({what, ": ", std::strerror(errno)}));
  }

  /// Gives the new file the owner and mode of the old one. A file that was not there is its owner's
  /// alone.
  void take_over(const file &made) const {
    struct stat old {
    }, fresh{};
    if (stat(target.c_str(), &old) != 0) {
      demand(errno == ENOENT, "cannot look it up");
      if (lstat(target.c_str(), &old) == 0)
        fail("is a symbolic link to a file that does not exist");
      return;
    }
    if (!S_ISREG(old.st_mode))
      fail("is not a regular file");
    demand(fstat(made.descriptor(), &fresh) == 0, "cannot look it up");
    if (old.st_uid != fresh.st_uid || old.st_gid != fresh.st_gid)
      demand(fchown(made.descriptor(), old.st_uid, old.st_gid) == 0, "cannot keep its owner");
    demand(fchmod(made.descriptor(), old.st_mode & 07777) == 0, "cannot keep its mode");
  }
};

/// The text of a document, if it reads back as the same document.
inline std::string safe_text(const state &doc, const replacement &to, std::size_t most) {
  const std::size_t size = printable_size(doc); // without the empty lines
  std::string text = size > most ? std::string() : print_text(doc.tree.get());
  if (size > most || text.size() > most)
    to.fail(joined({"would have more than ", std::to_string(most), " bytes"}));
  reading_faults faults;
  const owned_group back = read_text(text, doc.readable(), faults);
  if (!faults.lines.empty())
    to.fail(joined({"line ", std::to_string(faults.lines[0]), " would not read back"}));
  if (!back || print_text(back.get()) != text)
    to.fail("would not read back as the same document");
  return text;
}

} // namespace detail

inline void document::save(const std::string &path, const saving &how) {
  detail::state &doc = state();
  detail::replacement to(path);
  if (doc.damaged)
    to.fail("not saved: the document lacks what could not be read", fault::syntax);
  if (auto [valid, faults] = checked(); !valid)
    throw cf::error(std::move(faults));
  const std::string text = detail::safe_text(doc, to, how.max_size);
  const detail::fingerprint known(text);
  std::string origin = detail::absolute(path);
  to.prepare(text);
  if (!how.overwrite)
    to.expect_unchanged(doc);
  to.replace();
  doc.origin.swap(origin);
  doc.known = known;
  to.sync_folder();
}

} // namespace cf

#endif
