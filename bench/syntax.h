// Syntax: a content as each library reads it.
// SPDX-License-Identifier: MIT
#pragma once

#include "shapes.h"

namespace bench {

enum class Syntax { cf, libconfig, confuse, ini, toml, yaml, json, xml };

/// A shape as text. JSON has no comments: there a remark is a member of its own.
std::string render(const Element &top, Syntax syntax);

struct Input {
  std::string text;
  std::string file; // path of a file with this text, deleted at the end of the program
};

/// The text of a shape, made once and kept.
const Input &input(const Shape &shape, Syntax syntax);

} // namespace bench
