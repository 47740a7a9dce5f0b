/// @file printing.hpp
/// @brief Printing: a text out of a tree.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_PRINTING_HPP
#define CF_PRINTING_HPP

#include "calls.hpp"

namespace cf::detail {

/// Walks a tree as the printer does, and adds up the lengths of its lines without the empty ones.
/// It stops at a line that is too long to be read back. A deep tree is much larger as text than its
/// file was, so this comes before the text is made.
class printed_size {
public:
  std::size_t bytes = 0;
  const cfnode *too_long = nullptr; // the element whose line would not be read back

  explicit printed_size(const cfgroup *top) {
    for (const cfnode *nd = top->elem.next; nd != &top->elem && !too_long;)
      if (nd->type == cf_anchor) {
        nd = leave(nd->group);
      } else if (nd->type == cf_group) {
        nd = enter(as_group(nd));
      } else {
        add(nd, length(nd));
        nd = nd->next;
      }
  }

private:
  std::size_t indent = 0;

  static std::size_t length(const cfnode *nd) {
    if (nd->type == cf_remark)
      return std::strlen(as_remark(nd)->txt) + 2;
    return std::strlen(as_param(nd)->key) + std::strlen(as_param(nd)->val) + 3;
  }
  void add(const cfnode *nd, std::size_t length) {
    bytes += indent + length + 1;
    if (indent + length > longest_line)
      too_long = nd;
  }
  const cfnode *enter(const cfgroup *grp) {
    if (grp->type == cf_grpinst) {
      add(&grp->link, title(grp->cat, grp->name).size() + 2);
      indent += 2;
    }
    return grp->elem.next;
  }
  const cfnode *leave(const cfgroup *grp) {
    if (grp->type == cf_grpinst) {
      indent -= 2;
      bytes += indent + 2;
    }
    return grp->link.next;
  }
};

/// Where the line from `from` to `end` ends if unwanted bytes at its end are left out: the carriage
/// returns that a remark of a file with other line ends keeps, the indentation of an empty line,
/// and the blank after the # of an empty remark.
inline std::size_t line_end(std::string_view text, std::size_t from, std::size_t end) {
  while (end > from && text[end - 1] == '\r')
    --end;
  const std::size_t solid = std::min(text.find_first_not_of(' ', from), end);
  if (solid == end)
    return from;
  return text.substr(solid, end - solid) == "# " ? end - 1 : end;
}

/// A printed text without those bytes.
inline std::string stripped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = text.find('\n', from); // the printer ends every line
    result.append(text, from, line_end(text, from, end) - from) += '\n';
    from = end + 1;
  }
  return result;
}

/// The text of a tree.
inline std::string print_text(cfgroup *top) {
  struct block {
    char *text = nullptr;
    ~block() { std::free(text); }
  } printed;
  std::size_t size = 0;
  stream target = checked(open_memstream(&printed.text, &size));
  cfprinter printer{};
  const caught_messages guard;
  const bool done = cfprint(target.get(), &printer, top, "") != 0;
  if (std::fclose(target.release()) != 0 || !done)
    throw std::bad_alloc(); // a stream into memory fails for no other reason
  return stripped({printed.text, size});
}

} // namespace cf::detail

#endif
