// Floor of reading: fgets(), one look at a line, an allocation, a copy, a link.
// SPDX-License-Identifier: MIT
#include "arena.h"
#include "floors/floors.h"
#include "floors/records.h"

namespace bench::floors {
namespace {

constexpr int line_size = 4096;

/// The tree that grows, and the run of remarks that may bind to the next line.
template <Allocate allocate> class Tree {
public:
  cfgroup *top = group<allocate>({}, {}, cf_grptop, -1);

  void add(cfremark *rem) {
    if (!run || rem->row != next || run->link.group != grp) {
      run = group<allocate>({}, {}, cf_grprem, rem->row);
      link(grp, &run->link);
    }
    link(run, &rem->link);
    next = rem->row + 1;
  }

  void add(cfparam *par, std::string_view key) {
    link(binds(par->row) ? bind(group<allocate>({}, key, cf_grppar, next)) : grp, &par->link);
  }

  void add(cfgroup *elem, std::string_view cat, std::string_view name) {
    link(binds(elem->row) ? bind(group<allocate>(cat, name, cf_grpgrp, next)) : grp, &elem->link);
    grp = elem;
  }

  void leave() {
    grp = grp->link.group;
    if (grp->type == cf_grpgrp)
      grp = grp->link.group;
    run = nullptr;
  }

private:
  cfgroup *grp = top;
  cfgroup *run = nullptr;
  long next = 0;

  bool binds(long row) { return run && next == row; }

  /// Puts `block` in the place of the run, which is the last of its group, and the run into it.
  cfgroup *bind(cfgroup *block) {
    grp->elem.prev = run->link.prev;
    run->link.prev->next = &grp->elem;
    link(grp, &block->link);
    link(block, &run->link);
    run = nullptr;
    return block;
  }
};

const char *wordend(const char *p) {
  while (*p > ' ' && *p != '=' && *p != '{')
    ++p;
  return p;
}

const char *skip(const char *p) {
  while (*p == ' ')
    ++p;
  return p;
}

std::string_view cut(const char *begin, const char *end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

template <Allocate allocate> cfgroup *readwith(std::FILE *fd) {
  Tree<allocate> tree;
  char buf[line_size];
  for (long row = 1; std::fgets(buf, line_size, fd); ++row) {
    const char *p = skip(buf);
    if (*p == '\n')
      continue;
    if (*p == '}') {
      tree.leave();
      continue;
    }
    if (*p == '#') {
      tree.add(remark<allocate>(cut(p + 2, std::strchr(p, '\n')), row));
      continue;
    }
    const std::string_view word = cut(p, wordend(p));
    p = skip(p + word.size());
    if (*p == '=') {
      p = skip(p + 1);
      tree.add(param<allocate>(word, cut(p, std::strchr(p, '\n')), row), word);
    } else if (*p == '{') {
      tree.add(group<allocate>({}, word, cf_grpinst, row), {}, word);
    } else {
      const std::string_view name = cut(p, wordend(p));
      tree.add(group<allocate>(word, name, cf_grpinst, row), word, name);
    }
  }
  return tree.top;
}

} // namespace

long readlines(std::FILE *fd) {
  char buf[line_size];
  long lines = 0;
  while (std::fgets(buf, line_size, fd))
    ++lines;
  return lines;
}

cfgroup *read(std::FILE *fd) { return readwith<std::malloc>(fd); }
cfgroup *readarena(std::FILE *fd) { return readwith<arena::take>(fd); }

} // namespace bench::floors
