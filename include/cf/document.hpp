/// @file document.hpp
/// @brief Documents: what a load gives, with all that belongs to it.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_DOCUMENT_HPP
#define CF_DOCUMENT_HPP

#include "check.hpp"
#include "edit.hpp"

namespace cf {

/// How a document is saved. Every member has a default.
struct saving {
  /// In bytes: save() throws for a larger text. The default is no limit.
  std::size_t max_size = static_cast<std::size_t>(-1);
  bool overwrite = false; ///< Write also if someone else changed the file since the load.
};

namespace detail {

template <class T>
concept view = std::same_as<T, std::string_view>;

} // namespace detail

/// A configuration file in memory. It owns its tree, to which handles of groups refer. It can be
/// moved, and handles stay valid. Several threads may read a document while none edits it.
///
/// A document has the calls of a cf::group, for its top group; they are described there. A
/// temporary document returns nothing that refers to it.
class document {
public:
  /// An empty document without a schema.
  document() : document(detail::owned_state(new detail::state({}, options(), std::string()))) {
    detail::reading_faults none;
    own->tree = detail::read_text({}, names::identifiers, none);
  }

  /// @return the top group.
  section top() const & { return top_group(); }
  section top() const && = delete;

  /// @return "": the top has no name.
  std::string_view name() const { return {}; }
  /// @return "": the top has no category.
  std::string_view category() const { return {}; }
  /// @return 0: the top has no line.
  long line() const { return 0; }
  /// @return true: the top is always there.
  explicit operator bool() const { return true; }

  /// As cf::section::has().
  bool has(std::string_view key) const { return top_group().has(key); }

  /// As cf::section::get().
  template <class T> T get(std::string_view key) const & { return top_group().get<T>(key); }
  /// As cf::section::get().
  template <class T> T get(std::string_view key) const && { return top_group().get<T>(key); }
  template <detail::view T> T get(std::string_view key) const && = delete;

  /// As cf::section::find().
  template <class T> std::optional<T> find(std::string_view key) const & {
    return top_group().find<T>(key);
  }
  /// As cf::section::find().
  template <class T> std::optional<T> find(std::string_view key) const && {
    return top_group().find<T>(key);
  }
  template <detail::view T> std::optional<T> find(std::string_view key) const && = delete;

  /// As cf::section::get_or().
  template <class T> T get_or(std::string_view key, T otherwise) const & {
    return top_group().get_or(key, std::move(otherwise));
  }
  /// As cf::section::get_or().
  template <class T> T get_or(std::string_view key, T otherwise) const && {
    return top_group().get_or(key, std::move(otherwise));
  }
  template <detail::view T> T get_or(std::string_view key, T otherwise) const && = delete;
  /// As above, for a text.
  std::string get_or(std::string_view key, const char *otherwise) const {
    return top_group().get_or(key, otherwise);
  }

  /// As cf::section::values().
  template <class T> std::vector<T> values(std::string_view key) const & {
    return top_group().values<T>(key);
  }
  /// As cf::section::values().
  template <class T> std::vector<T> values(std::string_view key) const && {
    return top_group().values<T>(key);
  }
  template <detail::view T> std::vector<T> values(std::string_view key) const && = delete;

  /// As cf::section::group().
  section group(std::string_view name) const & { return top_group().group(name); }
  section group(std::string_view name) const && = delete;
  /// As cf::section::group().
  section group(std::string_view category, std::string_view name) const & {
    return top_group().group(category, name);
  }
  section group(std::string_view category, std::string_view name) const && = delete;
  /// As cf::section::group().
  section operator[](std::string_view name) const & { return top_group().group(name); }
  section operator[](std::string_view name) const && = delete;
  /// As cf::section::groups().
  group_range groups() const & { return top_group().groups(); }
  group_range groups() const && = delete;
  /// As cf::section::groups().
  group_range groups(std::string_view category) const & { return top_group().groups(category); }
  group_range groups(std::string_view category) const && = delete;
  /// As cf::section::keys().
  key_range keys() const & { return top_group().keys(); }
  key_range keys() const && = delete;
  /// As cf::section::items().
  item_range items() const & { return top_group().items(); }
  item_range items() const && = delete;
  /// As cf::section::index().
  cf::index index(std::string_view category) const & { return top_group().index(category); }
  cf::index index(std::string_view category) const && = delete;

  /// As cf::section::error().
  cf::error error(std::string_view key, std::string text) const {
    return top_group().error(key, std::move(text));
  }

  /// As cf::section::set().
  template <detail::writable T> void set(std::string_view key, const T &value) {
    top_group().set(key, value);
  }
  /// As cf::section::add().
  template <detail::writable T> void add(std::string_view key, const T &value) {
    top_group().add(key, value);
  }
  /// As cf::section::erase().
  bool erase(std::string_view key) { return top_group().erase(key); }
  /// As cf::section::add_group().
  section add_group(std::string_view category, std::string_view name) & {
    return top_group().add_group(category, name);
  }
  section add_group(std::string_view category, std::string_view name) && = delete;
  /// As cf::section::add_group().
  section add_group(std::string_view name) & { return top_group().add_group(name); }
  section add_group(std::string_view name) && = delete;

  /// @return the warnings of the load, sorted by line; valid as long as the document.
  const std::vector<diagnostic> &warnings() const & { return state().warnings; }
  /// As above, a copy.
  std::vector<diagnostic> warnings() const && { return state().warnings; }

  /// @return what the schema says against the document as it is now, as after a load: edits may
  ///     leave required things missing. Elements that an edit made have no line.
  std::vector<diagnostic> check() const { return checked().second; }

  /// Saves the document, with its remarks, so that the file is the old one or the new one whatever
  /// happens: writes a temporary file in the same folder, reads that back, and renames it. Owner
  /// and mode are kept, and a symbolic link is followed. A file that was not there is its owner's
  /// alone. A file other than the one last loaded or saved is replaced, whatever it holds.
  /// @throws cf::error, and the file is as it was, if the document has errors or its text had
  ///     syntax faults, if the file was changed by someone else since the load or the last save, or
  ///     if the system refuses; if only the folder cannot be synchronised, the file is new.
  void save(const std::string &path, const saving &how = {});
  /// As above, if the text has at most `max_size` bytes.
  template <std::integral Size> void save(const std::string &path, Size max_size) {
    save(path, saving{static_cast<std::size_t>(max_size), false});
  }

  /// @return the document as text, as save() writes it.
  /// @throws cf::error if a line would be too long to be read back.
  std::string str() const {
    detail::printable_size(state());
    return detail::print_text(state().tree.get());
  }

  /// @return the tree for functions of cf.h, owned by the document. Their edits
  ///     do not change the catalog, and end handles of what they delete.
  cfgroup *tree() const & { return state().tree.get(); }
  cfgroup *tree() const && = delete;
  /// As tree().
  cfgroup *handle() const & { return tree(); }
  cfgroup *handle() const && = delete;
  /// @return the catalog over the tree for functions of cf.h, owned by the document. It is made by
  ///     the first call; edits then keep it in step. Values in it are not evaluated.
  cfgroup *catalog() & {
    const detail::caught_messages guard;
    if (!state().catalog)
      state().catalog = detail::owned_group(cfcatalog(tree()));
    return state().catalog.get();
  }

private:
  friend struct detail::access;
  detail::owned_state own;

  explicit document(detail::owned_state made) : own(std::move(made)) {}

  detail::state &state() const {
    if (!own)
      throw std::logic_error("a document that was moved from");
    return *own;
  }
  section top_group() const { return {&state(), state().tree.get(), state().rules()}; }

  std::pair<bool, std::vector<diagnostic>> checked() const {
    detail::findings found(state().options.limit);
    detail::checking(state(), {}, found).run();
    return {found.errors == 0, state().describe(found)};
  }
};

/// Writes the document as text. @return `out`.
template <class Traits>
std::basic_ostream<char, Traits> &operator<<(std::basic_ostream<char, Traits> &out,
                                             const document &doc) {
  const std::string text = doc.str();
  return out.write(text.data(), static_cast<std::ptrdiff_t>(text.size()));
}

} // namespace cf

#endif
