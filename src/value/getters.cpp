// The typed getters: each reads the value without a test.
// SPDX-License-Identifier: MIT
#include "cf.h"

char cfbool(const cfparam *par) { return *static_cast<const char *>(par->vval); }
long cfint(const cfparam *par) { return *static_cast<const long *>(par->vval); }
long long cfintx(const cfparam *par) { return *static_cast<const long long *>(par->vval); }
double cfflt(const cfparam *par) { return *static_cast<const double *>(par->vval); }
const char *cfstr(const cfparam *par) { return par->val; }
const char *cfvstr(const cfparam *par) { return static_cast<const char *>(par->vval); }
