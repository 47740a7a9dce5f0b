// tree: a tree that deletes itself, and one read from a file by name.
// SPDX-License-Identifier: MIT
#pragma once

#include <cf.h>

#include <cerrno>
#include <cstring>
#include <memory>

//! [tree]
struct deleting {
  void operator()(cfgroup *grp) const { cfdelgrp(grp); }
};
using tree = std::unique_ptr<cfgroup, deleting>;

struct closing {
  void operator()(FILE *fd) const { std::fclose(fd); }
};
using stream = std::unique_ptr<FILE, closing>;

/// Reads an open stream. When nothing comes back, emsg() was told what is wrong with it.
inline tree readstream(FILE *fd, const char *fname) {
  cflexer lex{};
  const bool clean = cflex(&lex, fd, fname);
  tree top(lex.top); // the caller's, after a failed read too
  return clean ? std::move(top) : nullptr;
}

/// Reads a file likewise.
inline tree readfile(const char *fname) {
  const stream file(std::fopen(fname, "r"));
  if (file)
    return readstream(file.get(), fname);
  emsg("%s: %s", fname, std::strerror(errno));
  return nullptr;
}
//! [tree]
