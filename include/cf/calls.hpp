/// @file calls.hpp
/// @brief Calls of the core: messages are caught, elements have owners, blocks are transparent.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_CALLS_HPP
#define CF_CALLS_HPP

/// @cond marks
// The three names that CF_NO_MESSAGES keeps out are for programs that include cf.h themselves.
#ifdef CF_NO_MESSAGES
#include "../cf.h"
#else
#define CF_NO_MESSAGES
#include "../cf.h"
#undef CF_NO_MESSAGES
#endif
/// @endcond

#include "diagnostics.hpp"
#include "text.hpp"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace cf::detail {

/// The syntax faults that the core reports while it reads.
struct reading_faults {
  std::vector<std::size_t> lines{}; // in their order
};

inline thread_local reading_faults *listening = nullptr;

CF_FORMAT inline void hear(const char *format, ...) {
  const std::string_view message = format;
  if (!listening || !(message.ends_with(": syntax error") || message.ends_with(": line overflow")))
    return;
  va_list args;
  va_start(args, format);
  va_arg(args, const char *);
  const auto line = static_cast<std::size_t>(va_arg(args, long));
  va_end(args);
  listening->lines.push_back(line);
}
CF_FORMAT inline void ignore(const char *, ...) {}
[[noreturn]] inline void out_of_memory(const char *) { throw std::bad_alloc(); }

/// While it exists, the thread's messages are caught, and exhausted memory is std::bad_alloc.
class caught_messages {
public:
  explicit caught_messages(reading_faults *faults = nullptr) : outer(listening) {
    static constexpr struct cfmsgs mine = {hear, ignore, out_of_memory};
    former = cfmsgs(&mine);
    listening = faults;
  }
  caught_messages(const caught_messages &) = delete;
  caught_messages &operator=(const caught_messages &) = delete;
  ~caught_messages() {
    cfmsgs(&former);
    listening = outer;
  }

private:
  struct cfmsgs former;
  reading_faults *outer;
};

/// Deletes an element. What the memory manager throws is dropped: the deletion is complete.
template <class Element, void (*Delete)(Element *)> void quietly(Element *elem) noexcept {
  try {
    Delete(elem);
  } catch (...) { // NOLINT(bugprone-empty-catch)
  }
}
using owned_group = owned<cfgroup, quietly<cfgroup, cfdelgrp>>;
using owned_param = owned<cfparam, quietly<cfparam, cfdelpar>>;

inline void close_stream(std::FILE *opened) noexcept { std::fclose(opened); }
using stream = owned<std::FILE, close_stream>;

inline stream checked(std::FILE *opened) {
  if (!opened)
    throw std::bad_alloc(); // a stream over memory fails for no other reason
  return stream(opened);
}

// An element and its link are the same pointer.
inline cfgroup *as_group(cfnode *nd) { return reinterpret_cast<cfgroup *>(nd); }
inline cfparam *as_param(cfnode *nd) { return reinterpret_cast<cfparam *>(nd); }
inline const cfgroup *as_group(const cfnode *nd) { return reinterpret_cast<const cfgroup *>(nd); }
inline const cfparam *as_param(const cfnode *nd) { return reinterpret_cast<const cfparam *>(nd); }
inline cfremark *as_remark(cfnode *nd) { return reinterpret_cast<cfremark *>(nd); }
inline const cfremark *as_remark(const cfnode *nd) {
  return reinterpret_cast<const cfremark *>(nd);
}

/// The node after `nd` in a walk over a whole tree: of a group, the first node of its list; of an
/// anchor, which ends a list, the node after the group.
inline cfnode *next_node(const cfnode *nd) {
  if (nd->type == cf_group)
    return as_group(nd)->elem.next;
  return nd->type == cf_anchor ? nd->group->link.next : nd->next;
}

/// The first group or parameter that `owner` holds, from `nd` on; NULL after the last. Blocks are
/// transparent.
inline cfnode *element(const cfgroup *owner, cfnode *nd) {
  for (;;)
    switch (nd->type) {
    case cf_anchor:
      if (nd->group == owner)
        return nullptr;
      nd = nd->group->link.next;
      break;
    case cf_group:
      if (as_group(nd)->type == cf_grpinst)
        return nd;
      nd = as_group(nd)->elem.next;
      break;
    case cf_remark: nd = nd->next; break;
    case cf_param: return nd;
    }
}
inline cfnode *first_element(const cfgroup *owner) { return element(owner, owner->elem.next); }
inline cfnode *next_element(const cfgroup *owner, const cfnode *nd) {
  return element(owner, nd->next);
}

/// The first group of `owner` from `nd` on, which may be NULL.
inline cfgroup *group_from(const cfgroup *owner, cfnode *nd) {
  while (nd && nd->type != cf_group)
    nd = next_element(owner, nd);
  return nd ? as_group(nd) : nullptr;
}

/// The group that holds an element, where blocks are transparent; NULL for the top.
inline cfgroup *parent_of(const cfnode *nd) {
  cfgroup *grp = nd->group;
  while (grp && grp->type != cf_grpinst && grp->link.group)
    grp = grp->link.group;
  return grp;
}

/// "category name", or the name alone.
inline std::string title(const char *category, std::string_view name) {
  return joined({category, *category && !name.empty() ? " " : "", name});
}

/// A path, and the name of something below it.
inline std::string below(std::string path, std::string_view name) {
  if (!path.empty() && !name.empty())
    path += '.';
  path += name;
  return path;
}

/// The path of an element: the titles of the groups around it and its own, separated by points. If
/// there are many groups, only the innermost.
inline constexpr std::size_t longest_path = 20; // groups
inline std::string path_of(const cfnode *nd) {
  std::vector<cfnode *> groups;
  const cfgroup *outer = nd->type == cf_group ? as_group(nd) : parent_of(nd);
  for (; outer && outer->type == cf_grpinst && groups.size() < longest_path;
       outer = parent_of(&outer->link))
    groups.push_back(const_cast<cfnode *>(&outer->link));
  std::string path(outer && outer->type == cf_grpinst ? ".." : ""); // and a point
  for (; !groups.empty(); groups.pop_back()) {
    const cfgroup *grp = as_group(groups.back());
    path = below(std::move(path), shown(title(grp->cat, grp->name)));
  }
  if (nd->type == cf_param)
    path = below(std::move(path), shown(as_param(nd)->key));
  return path;
}

} // namespace cf::detail

#endif
