// Construction: an element and its texts in one allocation.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <string_view>

namespace cfcore {

// As the exported constructors, for texts of known length.
cfgroup *makegrp(std::string_view cat, std::string_view name, cfgroup_t type, long row);
cfremark *makerem(std::string_view txt, long row);
cfparam *makepar(std::string_view key, std::string_view val, long row);

/// A text that may be NULL, which means the empty text.
inline std::string_view view(const char *text) { return text ? text : std::string_view(); }

// Each copies to a reference what it shares with its target: texts, row, and kind or value. Links,
// `link.ref` included, and children stay as they are.

inline void refer(cfgroup *ref, const cfgroup *target) {
  ref->row = target->row;
  ref->cat = target->cat;
  ref->name = target->name;
  ref->type = target->type;
}

inline void refer(cfremark *ref, const cfremark *target) {
  ref->row = target->row;
  ref->txt = target->txt;
}

inline void refer(cfparam *ref, const cfparam *target) {
  ref->row = target->row;
  ref->key = target->key;
  ref->val = target->val;
  ref->eval = target->eval;
  ref->vval = target->vval;
}

} // namespace cfcore
