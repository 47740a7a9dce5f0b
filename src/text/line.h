// Line syntax: what kind a line is, and how it is cut.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <string_view>

namespace cf {

enum class linekind { none, empty, remark, grpbeg, grpend, param };

/// What one look at a line tells. No line is of two kinds.
struct line {
  linekind kind = linekind::none;
  std::string_view cat;       ///< category of a group, empty if it has none
  std::string_view word;      ///< name of a group, key of a parameter
  const char *mark = nullptr; ///< the # of a remark, the = of a parameter
};

line look(const char *row);

std::string_view cutremark(const char *mark); ///< text of a remark, behind its mark
std::string_view cutvalue(const char *mark);  ///< value of a parameter, behind its mark

/// True if no slot of the record was replaced.
bool isdefault(const cflexer *lex);

} // namespace cf
