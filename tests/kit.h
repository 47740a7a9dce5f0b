// Kit of the tests: trees as text, streams in memory, a suspicious memory manager, invariants.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kit {

struct released {
  void operator()(cfgroup *grp) const { cfdelgrp(grp); }
};
using tree = std::unique_ptr<cfgroup, released>;

/// A tree as text, an element a line, indented by depth: kind, row (unless left out), texts,
/// "evaluated", and for a reference the kinds and rows along its chain of targets.
std::string dump(const cfgroup *top, bool rows = true);

/// Messages since the last call, one a line: "E text" of an error, "W text" of a warning.
std::string said();

struct reading {
  cfgroup *top; ///< the caller's
  int result;
  long nrow;
  std::string said;
};
reading read(std::string_view bytes, const char *fname = "cfg", cflexer *lex = nullptr);

/// What cfprint() writes. Without a `prn` to ask, success is expected.
std::string print(cfgroup *top, cfprinter *prn = nullptr);

using stream = std::unique_ptr<FILE, int (*)(FILE *)>;
constexpr size_t never = static_cast<size_t>(-1);
/// A stream of `bytes`, which are borrowed, that fails, once, before it gives byte number `broken`.
stream source(std::string_view bytes, size_t broken = never);
/// A stream that appends to `out` and fails, once, when there would be more than `room` bytes in it.
stream sink(std::string &out, size_t room = never);

/// What the metered manager throws.
struct out {};

/// Installs a memory manager that counts, spoils fresh and freed blocks, and guards their ends.
class meter {
public:
  meter();
  ~meter(); ///< restores the former manager and expects that nothing is live
  meter(const meter &) = delete;
  meter &operator=(const meter &) = delete;

  size_t live() const { return live_; }
  const std::vector<size_t> &sizes() const { return sizes_; }          ///< of all allocations
  const std::vector<const void *> &released() const { return freed_; } ///< in their order
  /// Of the allocations from now on, the n-th throws `out`; 0: none.
  void leave_at(size_t n) { leave_ = n; }
  void leave_releasing(bool on) { leave_releasing_ = on; } ///< releases each block and then throws
  /// Calls `task` with its first allocation throwing, its second... until it ends by itself, and each
  /// time `after`. What was made must be released then. Gives the number of allocations of `task`.
  size_t leave_at_each(const std::function<void()> &task, const std::function<void()> &after = {});

private:
  struct cfmmgr former_;
  meter *outer_;
  size_t live_ = 0, leave_ = 0;
  bool leave_releasing_ = false;
  std::vector<size_t> sizes_;
  std::vector<const void *> freed_;
  static meter *current;
  static void *allocate(size_t size);
  static void release(void *block);
};

/// Expects whole rings: links that agree both ways, parents, anchors, texts.
void checktree(const cfgroup *top);
/// Expects all that holds of a catalog over its source, and of the catalogs under it.
void checkcatalog(cfgroup *root);

/// Runs `f` on a thread with a stack of 256 KiB; an exception comes out here.
void on_small_stack(const std::function<void()> &f);

/// The bytes of a file of the folder data.
std::string data(const char *name);

/// How many random rounds: what CF_ROUNDS in the environment asks for, else `usual`.
unsigned long rounds(unsigned long usual);

/// A file without a fault, of all kinds of line and layout, that still fits when printed.
std::string random_file(std::mt19937 &rng);

} // namespace kit
