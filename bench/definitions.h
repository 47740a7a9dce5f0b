// Definitions: the application's side of a check, as cheap as can be.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace bench {

/// The definition of each scope string; the kinds of a check.
cfscope *multiple(const char *scope);  // may occur any number of times
cfscope *single(const char *scope);    // may occur once
cfscope *evaluated(const char *scope); // any number of times, with an evaluator for each parameter

/// Changes the evaluators of evaluated() for others that do the same, so that a check of values
/// that are there has to make them anew.
void otherevaluators();

} // namespace bench
