// Floor of the check: scope strings after a prefix that is kept, and the callbacks.
// SPDX-License-Identifier: MIT
#include "floors/floors.h"
#include "floors/records.h"

namespace bench::floors {
namespace {

class Checker {
public:
  explicit Checker(cfscope *(*definition)(const char *)) : scopedef(definition) {}

  /// Checks what `grp` holds. `scope` is where the prefix begins in the buffer, `at` its end.
  void content(cfgroup *grp, cfgroup *instance, char *scope, char *at) {
    for (cfnode *nd = grp->elem.next; nd != &grp->elem; nd = nd->next) {
      if (nd->type == cf_param)
        check(aspar(nd), instance, scope, at);
      else if (nd->type == cf_group && asgrp(nd)->type == cf_grpinst)
        check(asgrp(nd), instance, scope, at);
      else if (nd->type == cf_group)
        content(asgrp(nd), instance, scope, at);
    }
  }

  void run(cfgroup *top) { content(top, top, buf, stpcpy(buf, "::")); }

private:
  cfscope *(*scopedef)(const char *);
  char buf[65536];

  void check(cfparam *par, const cfgroup *instance, const char *scope, char *at) {
    stpcpy(at, par->key);
    const cfscope *definition = scopedef(scope);
    if (definition->eval)
      evaluate(par, definition->eval);
    if (!definition->multi && treepar(instance, par->key) != par)
      emsg("%ld: duplicate", par->row);
  }

  void check(cfgroup *grp, const cfgroup *instance, char *scope, char *at) {
    char *rest = stpcpy(stpcpy(at, grp->name), ".");
    if (*grp->cat) { // the prefix begins anew after the present one, which is needed again later
      content(grp, grp, rest + 1, stpcpy(stpcpy(rest + 1, grp->cat), "::"));
      stpcpy(stpcpy(stpcpy(stpcpy(at, grp->name), "."), grp->cat), "::");
    } else {
      content(grp, grp, scope, rest);
      *rest = '\0';
    }
    if (!scopedef(scope)->multi && treegrp(instance, grp->cat, grp->name) != grp)
      emsg("%ld: duplicate", grp->row);
  }

  static void evaluate(cfparam *par, cfeval_t eval) {
    const int size = eval(nullptr, nullptr);
    void *buffer = par + 1;
    if (eval(par->val, size > 0 ? buffer : nullptr) < 0)
      emsg("%ld: value", par->row);
    par->eval = eval;
    par->vval = size > 0 ? buffer : par->val;
  }
};

} // namespace

void check(cfgroup *top, cfscope *(*scopedef)(const char *)) { Checker(scopedef).run(top); }

} // namespace bench::floors
