// supply: what an application gives to the library: texts, evaluators, definitions, filters.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <array>

namespace fuzz {

/// An evaluator whose size depends on the text, on both sides of the value buffer's; it refuses
/// texts with x in front, and those with F only when it has written.
int evsized(const char *val, void *vval);

inline constexpr std::array<cfeval_t, 6> evaluators = {cfevint,  cfevstr, evsized,
                                                       cfevbool, cfevflt, cfevintx};

/// Whether an evaluator takes a text in the end.
bool takes(cfeval_t eval, const char *text);

// Slots that answer by the length of a scope string.
cfscope *scopedef(const char *scope);
int chkscope(const char *scope);

// Few texts, so that many are equal; some are NULL, empty, or longer than any buffer.
const char *name(size_t choice);
const char *value(size_t choice);
const char *file(size_t choice);

} // namespace fuzz
