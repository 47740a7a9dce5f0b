// Definitions: the application's side of a check, as cheap as can be.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace bench {

// Functions for the slot `scopedef`, one for each kind of check. They define every scope string.
cfscope *multiple(const char *scope);  ///< may occur any number of times
cfscope *single(const char *scope);    ///< may occur once
cfscope *evaluated(const char *scope); ///< any number of times; parameters of a shape are evaluated

/// Exchanges the evaluators of evaluated() for others that do the same. The next check of a tree
/// then evaluates anew, although the tree has its values.
void otherevaluators();

} // namespace bench
