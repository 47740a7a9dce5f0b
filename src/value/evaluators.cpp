// The built-in evaluators.
// SPDX-License-Identifier: MIT
#include "node/text.h"

#include "cf.h"

#include <cstdlib>
#include <cstring>

namespace {

/// Stores a value, if there is storage. Gives its size.
template <class Value> int store(Value value, void *vval) {
  if (vval)
    std::memcpy(vval, &value, sizeof value);
  return static_cast<int>(sizeof value);
}

/// Evaluates a text that is one number as a whole. `convert(text, end)` reads it.
template <class Convert> int evnumber(const char *val, void *vval, Convert convert) {
  char *end = nullptr;
  if (!val)
    return static_cast<int>(sizeof convert(val, &end));
  const auto number = convert(val, &end);
  if (end == val || *end != '\0')
    return -1;
  return store(number, vval);
}

} // namespace

int cfevbool(const char *val, void *vval) {
  if (!val)
    return sizeof(char);
  if (cfcore::equal(val, "true"))
    return store(char{1}, vval);
  if (cfcore::equal(val, "false"))
    return store(char{0}, vval);
  return -1;
}

int cfevint(const char *val, void *vval) {
  return evnumber(val, vval,
                  [](const char *text, char **end) { return std::strtol(text, end, 0); });
}

int cfevintx(const char *val, void *vval) {
  return evnumber(val, vval,
                  [](const char *text, char **end) { return std::strtoll(text, end, 0); });
}

int cfevflt(const char *val, void *vval) {
  return evnumber(val, vval, [](const char *text, char **end) { return std::strtod(text, end); });
}

int cfevstr(const char *, void *) { return 0; }
