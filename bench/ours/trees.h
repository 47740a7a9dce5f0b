// Trees: what the operations on the library and on the floors work on.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"
#include "syntax.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace bench {

/// Ends the program: a benchmark of something that fails measures nothing.
[[noreturn]] inline void broken(const char *what) {
  std::fprintf(stderr, "benchmark broken: %s\n", what);
  std::abort();
}

struct Close {
  void operator()(std::FILE *fd) const { std::fclose(fd); }
};
using Stream = std::shared_ptr<std::FILE>;

/// The text of a shape in a file, open for reading.
inline Stream openinput(const Shape &shape) {
  Stream stream(std::fopen(input(shape, Syntax::cf).file.c_str(), "r"), Close());
  return stream ? stream : (broken("no input file"), nullptr);
}

/// A stream that forgets what is written to it.
inline Stream opensink() {
  Stream stream(std::fopen("/dev/null", "w"), Close());
  return stream ? stream : (broken("no sink"), nullptr);
}

inline cfgroup *readtree(std::FILE *fd) {
  cflexer lex{};
  return cflex(&lex, fd, "shape") ? lex.top : (broken("a shape does not read"), nullptr);
}

using Tree = std::shared_ptr<cfgroup>;

inline Tree own(cfgroup *grp) { return {grp, cfdelgrp}; }
inline Tree maketree(const Shape &shape) { return own(readtree(openinput(shape).get())); }

} // namespace bench
