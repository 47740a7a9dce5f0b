// fuzz: what the targets share: promises, memory, messages, reading and printing.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the process if a promise is broken; a fuzzer takes that for a finding.
void need(bool kept, const char *promise);

/// Texts that differ in nothing but case.
bool same(const char *one, const char *other);

/// What a call out of the library leaves by when its turn has come.
struct left {};

// The memory manager of the targets. It fills what it gives and what it takes back.
void install_memory();
/// The count-th call out of the library from now on leaves, be it for a block, to take one back, to a
/// function of the application or with a message; `for_good`: and all behind it. 0: none.
void leave_at(int count, bool for_good = false);
void called_out(); ///< for the application's functions: leaves if it is their turn
size_t live();     ///< blocks not released
unsigned long born(const void *block); ///< which allocation gave a live block; 0: no live block

/// Messages since the last call, one a line, with E or W in front.
std::string said();

struct reading {
  cfgroup *top = nullptr;
  int result = 0;
  long nrow = 0;
  std::string said;
};
reading read(std::string_view bytes, const cflexer &slots = {});

std::string print(cfgroup *top, const cfprinter &slots = {});

/// A tree as text: kinds, texts and nesting; and the rows, if `rows`.
std::string dump(const cfgroup *top, bool rows);

} // namespace fuzz
