// check: definitions derived from the input, against a check that works by recursion and plain search.
// SPDX-License-Identifier: MIT
#include "fuzz.h"
#include "invariants.h"
#include "supply.h"

#include <cstdint>
#include <cstring>
#include <vector>

using fuzz::need;
using fuzz::same;

namespace {

unsigned salt; // chosen by the input
std::vector<std::string> asked;

unsigned hash(std::string_view text) {
  unsigned sum = salt;
  for (char ch : text)
    sum = (sum ^ static_cast<unsigned char>(ch)) * 16777619U % 0x7fffffffU;
  return sum;
}

/// The definition of a scope: one that the salt makes of its text.
cfscope *define(const char *scope) {
  static cfscope definition;
  const unsigned sum = hash(scope) >> 4;
  definition.eval = sum % 7 ? fuzz::evaluators[sum % 7 - 1] : nullptr;
  definition.multi = sum / 8 % 2;
  return sum / 16 % 4 ? &definition : nullptr;
}

cfscope *scopedef(const char *scope) {
  asked.emplace_back(scope);
  return define(scope);
}

std::string prefix(const cfgroup *grp) {
  if (!grp || grp->type == cf_grptop)
    return "::";
  if (grp->type != cf_grpinst)
    return prefix(grp->link.group);
  return *grp->cat ? std::string(grp->cat) + "::" : prefix(grp->link.group) + grp->name + ".";
}
std::string scope(const cfparam *par) { return prefix(par->link.group) + par->key; }
std::string scope(const cfgroup *grp) {
  return prefix(grp->link.group) + grp->name + "." +
         (*grp->cat ? std::string(grp->cat) + "::" : "");
}

unsigned int genscope(char *scbf, cfnode *nd) {
  const std::string text = nd->type == cf_group ? scope(cfgrp(nd)) : scope(cfpar(nd));
  if (scbf)
    std::memcpy(scbf, text.c_str(), text.size() + 1);
  return static_cast<unsigned int>(text.size() + 1);
}

/// Makes what no file gives: elements without a line, and without a name or key.
void dress(cfgroup *grp) {
  const unsigned sum = hash(std::string(grp->name) + std::to_string(grp->row));
  if (grp->type == cf_grpinst && sum % 3 == 0)
    grp->row = -1;
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
    if (cfgroup *inner = cfgrp(it))
      dress(inner);
    else if (cfparam *par = cfpar(it); par && hash(par->val) % 3 == 0)
      par->row = -1;
  if (grp->type != cf_grpinst && grp->type != cf_grptop)
    return;
  switch (sum % 9) {
  case 0: cfchainpar(cfiterator(grp), cfnewpar("", "1", 7)); break;
  case 1: cfaddpar(grp, cfnewpar(nullptr, "x", -1)); break;
  case 2: cfaddgrp(grp, cfnewgrp("a", "", cf_grpinst, -1)); break;
  case 3: cfaddgrp(grp, cfnewgrp("A", nullptr, cf_grpinst, 9)); [[fallthrough]];
  case 4: cfchaingrp(cfiterator(grp), cfnewgrp("", "", cf_grpinst, 8));
  }
}

/// The check as it is told: what is asked, what is reported.
struct model {
  const bool werr;
  const bool catalog;
  std::vector<std::string> scopes{};
  std::string reports{};

  void check(cfgroup *grp) {
    for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
      if (cfgroup *inner = cfgrp(it))
        check(inner);
      else if (cfparam *par = cfpar(it))
        symbol(par, it);
    if (grp->type == cf_grpinst)
      symbol(grp, &grp->link);
  }

  template <class Element> void symbol(Element *elem, cfnode *nd) {
    const std::string text = scope(elem);
    scopes.push_back(text);
    const cfscope *found = define(text.c_str());
    if (!found)
      return report(werr ? "E " : "W ", elem->row, text, "undefined symbol");
    const cfscope definition = *found;
    if (!evaluates(elem, definition.eval))
      report("E ", elem->row, text, "value expression error");
    if (!definition.multi && nd->group && repeated(nd))
      report("E ", elem->row, text, "duplicate symbol");
  }

  void report(const char *kind, long row, const std::string &text, const char *what) {
    reports.append(kind).append("cfg").append(row >= 0 ? ":" : "/");
    reports.append(row >= 0 ? std::to_string(row) : text).append(": ").append(what).append("\n");
  }

  static bool evaluates(const cfgroup *, cfeval_t) { return true; }
  static bool evaluates(const cfparam *par, cfeval_t eval) {
    return !eval || fuzz::takes(eval, par->val);
  }

  /// True if the first of its like in its instance is another.
  bool repeated(cfnode *nd) const {
    cfgroup *holder = nd->group;
    while (holder->type != cf_grpinst && holder->type != cf_grptop && holder->link.group)
      holder = holder->link.group;
    return first(holder, nd) != nd;
  }

  cfnode *first(cfgroup *holder, cfnode *nd) const {
    for (cfnode *it = cfiterator(holder); !cfend(it); cfnext(&it)) {
      if (like(it, nd))
        return it;
      if (cfgroup *inner = cfgrp(it); inner && inner->type != cf_grpinst)
        if (cfnode *found = first(inner, nd))
          return found;
    }
    return nullptr;
  }

  /// In a plain tree a name without category is taken by any category's.
  bool like(cfnode *one, cfnode *nd) const {
    if (one->type != nd->type)
      return false;
    if (nd->type == cf_param)
      return same(cfpar(one)->key, cfpar(nd)->key);
    const cfgroup *grp = cfgrp(one);
    const cfgroup *wanted = cfgrp(nd);
    const bool any = !catalog && *wanted->name && !*wanted->cat;
    return grp->type == cf_grpinst && wanted->type == cf_grpinst && same(grp->name, wanted->name) &&
           (any || same(grp->cat, wanted->cat));
  }
};

void check(cfgroup *top, cfparser parser, bool catalog) {
  model expected{parser.werr != 0, catalog};
  expected.check(top);
  for (int run = 0; run < 2; ++run) { // the second finds the values made
    asked.clear();
    const int valid = cfparse(&parser, top, "cfg");
    const std::string said = fuzz::said();
    need(asked == expected.scopes, "each symbol is asked for once, in order");
    need(said == expected.reports, "what is wrong is reported, and nothing else");
    need(valid == (said.find("E ") == std::string::npos), "errors decide");
  }
}

/// A group below `grp`, or itself.
cfgroup *inner(cfgroup *grp, unsigned way) {
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
    if (cfgroup *deeper = cfgrp(it); deeper && way % 2)
      return inner(deeper, way / 2);
  return grp;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::install_memory();
  if (size < 3)
    return 0;
  salt = data[0] | 1U;
  cfgroup *top = fuzz::read({reinterpret_cast<const char *>(data) + 3, size - 3}).top;
  dress(top);
  cfparser parser = {};
  parser.scopedef = scopedef;
  parser.genscope = data[1] & 1 ? genscope : nullptr;
  parser.werr = data[1] & 2 ? 1 : 0;
  cfgroup *catalog = cfcatalog(top);
  if (data[1] & 4)
    check(catalog, parser, true);
  else
    check(inner(top, data[2]), parser, false);
  fuzz::check_tree(&top->link);
  fuzz::check_catalog(catalog, true);
  cfcatdelgrp(catalog);
  need(fuzz::live() == 0, "nothing is left");
  return 0;
}
