// Shapes: the contents that are measured, in no library's syntax.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

enum class Kind { blank, remark, param, group };
enum class Type { integer, real, boolean, text };

struct Element {
  Kind kind;
  std::string name = {};              // name of a group, key of a parameter
  std::string text = {};              // of a remark or a value
  Type type = Type::text;             // of a value
  std::string cat = {};               // of a group; may be empty
  std::vector<Element> children = {}; // of a group: parameters before groups, categories together
};

/// The way to an integer parameter: what a user of a configuration looks up.
struct Route {
  std::vector<const Element *> groups; // from the top group's child on
  const Element *param;
  std::vector<std::string> path; // the same as plain steps: category, name, ..., key
  std::string dotted;            // the path as one text
  long value;
};

struct Shape {
  std::string name;
  Element top;
  std::size_t elements; // groups, parameters and remarks
  std::vector<Route> routes;
};

/// typical, wide, deep, guard (a small wide one), scale:N with N elements, crowded:N with N keys in
/// one group, or chain:N with N groups nested in each other, which exists as text only. Made once
/// and kept.
const Shape &shape(const std::string &name);

} // namespace bench
