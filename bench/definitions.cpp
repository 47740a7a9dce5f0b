// Definitions: the application's side of a check, as cheap as can be.
// SPDX-License-Identifier: MIT
#include "definitions.h"

#include <cstring>

namespace bench {
namespace {

// Evaluators with addresses of their own: the library tells evaluators apart by their addresses.
int evint(const char *val, void *vval) { return cfevint(val, vval); }
int evflt(const char *val, void *vval) { return cfevflt(val, vval); }
int evbool(const char *val, void *vval) { return cfevbool(val, vval); }
int evstr(const char *val, void *vval) { return cfevstr(val, vval); }

struct Definitions {
  cfscope integer, real, boolean, text, group;
};

Definitions one = {
    {"", cfevint, 1}, {"", cfevflt, 1}, {"", cfevbool, 1}, {"", cfevstr, 1}, {"", nullptr, 1}};
Definitions other = {
    {"", evint, 1}, {"", evflt, 1}, {"", evbool, 1}, {"", evstr, 1}, {"", nullptr, 1}};
Definitions *current = &one;

} // namespace

cfscope *multiple(const char *) {
  static cfscope definition = {"", nullptr, 1};
  return &definition;
}

cfscope *single(const char *) {
  static cfscope definition = {"", nullptr, 0};
  return &definition;
}

cfscope *evaluated(const char *scope) {
  // The keys of shapes end in the letters of limit, rate, enabled and path: see shapes.cpp.
  switch (scope[std::strlen(scope) - 1]) {
  case 't': return &current->integer;
  case 'e': return &current->real;
  case 'd': return &current->boolean;
  case 'h': return &current->text;
  default: return &current->group;
  }
}

void otherevaluators() { current = current == &one ? &other : &one; }

} // namespace bench
