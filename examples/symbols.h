// symbols: a table of symbols in which a star stands for an instance name of the user's choice.
// SPDX-License-Identifier: MIT
#pragma once

#include <cf.h>

#include <algorithm>
#include <span>
#include <string_view>

//! [symbols]
/// Whether a scope is that of a symbol of the table. "::*.host::" is every host at the top: what
/// stands ahead of the star and the ending behind it are exact, the star is one name.
inline bool matches(std::string_view scope, std::string_view symbol) {
  const size_t star = symbol.find('*');
  if (star == std::string_view::npos)
    return scope == symbol;
  const std::string_view ending = symbol.substr(star + 1);
  if (scope.size() <= star + ending.size() || !scope.ends_with(ending) ||
      !scope.starts_with(symbol.substr(0, star)))
    return false;
  const std::string_view name = scope.substr(star, scope.size() - star - ending.size());
  return name.find_first_of(".:") == std::string_view::npos;
}

/// The definition of a scope, or NULL: the answer that a `scopedef` slot owes.
inline cfscope *find(std::span<cfscope> table, const char *scope) {
  const auto hit = std::find_if(table.begin(), table.end(), [=](const cfscope &symbol) {
    return matches(scope, symbol.scope);
  });
  return hit == table.end() ? nullptr : &*hit;
}
//! [symbols]
