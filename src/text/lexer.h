// Lexer: the default slots of the reader's record.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cfcore {

/// True if no slot of the record was replaced.
bool isdefault(const cflexer *lex);

} // namespace cfcore
