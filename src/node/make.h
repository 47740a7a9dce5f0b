// Construction: an element and its texts from one block.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <string_view>

namespace cf {

// As the exported constructors, for texts whose lengths are known.
cfgroup *makegrp(std::string_view cat, std::string_view name, cfgroup_t type, long row);
cfremark *makerem(std::string_view txt, long row);
cfparam *makepar(std::string_view key, std::string_view val, long row);

inline std::string_view view(const char *text) { return text ? text : std::string_view(); }

} // namespace cf
