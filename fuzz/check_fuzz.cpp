// check: compares the check with a simple model. The input holds a file and selects the symbols.
// SPDX-License-Identifier: MIT
#include "oracles.h"

#include <cstring>

using kit::need;
using std::string;

namespace fuzz {
namespace {

/// An evaluator whose size depends on the text. It refuses x at once, and F after it has written.
int evsized(const char *val, void *vval) {
  kit::meter::called();
  const size_t size = val ? std::strlen(val) * 5 + 1 : 0;
  if (vval)
    std::memset(vval, *val, size);
  return !val || *val == 'x' || (vval && *val == 'F') ? -1 : static_cast<int>(size);
}

constexpr cfeval_t evaluators[] = {cfevint, cfevstr, evsized, cfevbool, cfevflt, cfevintx};
unsigned salt; // selects the definitions
string asked;  // the scope strings that scopedef() got, each with a blank after it

/// The definition of a scope, derived from the salt and its text. All calls return the same record.
cfscope *define(const char *scope) {
  static cfscope definition;
  unsigned sum = salt;
  for (; *scope; ++scope)
    sum = (sum ^ static_cast<unsigned char>(*scope)) * 16777619U % 0x7fffffffU;
  definition = {"", sum % 7 ? evaluators[sum % 7 - 1] : nullptr, sum / 16 % 2};
  return sum / 32 % 4 ? &definition : nullptr;
}

cfscope *scopedef(const char *scope) {
  kit::meter::called();
  asked += scope + string(" ");
  return define(scope);
}

bool takes(cfeval_t eval, const char *text) {
  string storage(std::strlen(text) * 5 + 32, '\0');
  return !eval || eval == cfevstr || eval(text, storage.data()) >= 0;
}

/// A check by recursion, which predicts the calls of scopedef and the messages.
struct model {
  const cfparser &parser;
  string scopes{}, reports{};

  void run(cfnode *nd) {
    cfgroup *grp = cfgrp(nd);
    for (cfnode *it = grp ? cfiterator(grp) : nd; it != nd && !cfend(it); cfnext(&it))
      run(it);
    if (!cfpar(nd) && !is(nd, cf_grpinst))
      return;
    string scope(parser.genscope(nullptr, nd), '\0');
    parser.genscope(scope.data(), nd);
    scope.back() = ' ';
    scopes += scope;
    scope.pop_back();
    const auto report = [&](const char *sink, const char *what) {
      const long row = grp ? grp->row : cfpar(nd)->row;
      reports += sink + (row < 0 ? "cfg/" + scope : "cfg:" + std::to_string(row)) + what;
    };
    const cfscope *found = define(scope.c_str());
    if (!found)
      return report(parser.werr ? "E " : "W ", ": undefined symbol\n");
    if (!grp && !takes(found->eval, cfpar(nd)->val))
      report("E ", ": value expression error\n");
    cfgroup *in = nd->group;
    while (in && in->type != cf_grpinst && in->type != cf_grptop && in->link.group)
      in = in->link.group;
    if (!found->multi && in &&
        nd != (grp ? find_group(in, grp->cat, grp->name) : find_param(in, cfpar(nd)->key, nullptr)))
      report("E ", ": duplicate symbol\n");
  }
};

} // namespace

void check(cfgroup *top, unsigned char number) {
  salt = number;
  cfparser parser = {};
  parser.scopedef = scopedef;
  parser.werr = number & 4;
  model expected{*cfparsedfl(&parser)};
  expected.run(&top->link);
  for (int run = 0; run < 2; ++run) { // the second finds the values of the first
    asked.clear();
    const int valid = cfparse(&parser, top, "cfg");
    const string said = kit::said();
    need(asked == expected.scopes, "each symbol is asked for once, in order");
    need(said == expected.reports, "what is wrong is reported, and nothing else");
    need(valid == (said.find("E ") == string::npos),
         "the check fails exactly if there is an error");
  }
}

void check(std::string_view bytes) {
  if (bytes.size() < 3)
    return;
  const kit::meter memory;
  const kit::tree top(kit::read(bytes.substr(3)).top), catalog(cfcatalog(top.get()));
  const auto from = kit::nodes(&(bytes[1] & 1 ? catalog : top)->link);
  cfgroup *grp = cfgrp(from[static_cast<unsigned char>(bytes[2]) % from.size()]);
  check(grp ? grp : top.get(), static_cast<unsigned char>(bytes[0]));
  check_tree(&top->link);
}

} // namespace fuzz
