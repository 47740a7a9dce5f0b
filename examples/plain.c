/* plain: the C interface: a file is read, checked, and its values are used.
 * SPDX-License-Identifier: MIT */
#include <cf.h>

#include <stdbool.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

/*! [table] */
/* What the file may contain: scope string, type, how often in one group. */
enum { once = 0, often = 1 };
static cfscope symbols[] = {
    {"::keep", cfevint, once},
    {"::verbose", cfevbool, once},
    {"::exclude", cfevstr, often},
    {"::*.host::", NULL, once}, /* a host of any name, each name once */
    {"host::addr", cfevstr, once},
    {"host::port", cfevint, once},
    {"host::limits.", NULL, once},
    {"host::limits.rate", cfevint, once},
    {"host::*.disk::", NULL, once}, /* a disk of any name in a host */
    {"disk::path", cfevstr, once},
};
/*! [table] */

/*! [scopedef] */
/* True if a scope string matches a symbol. The star matches one name. Case does not count,
 * because look-ups ignore it too. */
static bool matches(const char *scope, const char *symbol) {
  const char *star = strchr(symbol, '*');
  if (!star)
    return strcasecmp(scope, symbol) == 0;
  const size_t head = (size_t)(star - symbol);
  if (strncasecmp(scope, symbol, head) != 0)
    return false;
  const size_t name = strcspn(scope + head, ".:");
  return name > 0 && strcasecmp(scope + head + name, star + 1) == 0;
}

static cfscope *scopedef(const char *scope) {
  for (size_t i = 0; i < sizeof symbols / sizeof *symbols; ++i)
    if (matches(scope, symbols[i].scope))
      return &symbols[i];
  return NULL;
}
/*! [scopedef] */

/*! [values] */
/* A parameter with a value, or NULL: the group is absent (NULL), the key is absent, or the
 * parameter was not evaluated. */
static const cfparam *parameter(cfgroup *grp, const char *key) {
  const cfparam *par = grp ? cfcatgetpar(grp, key, NULL) : NULL;
  return par && par->vval ? par : NULL;
}

static long number(cfgroup *grp, const char *key, long otherwise) {
  const cfparam *par = parameter(grp, key);
  return par ? cfint(par) : otherwise;
}

static const char *text(cfgroup *grp, const char *key, const char *otherwise) {
  const cfparam *par = parameter(grp, key);
  return par ? cfvstr(par) : otherwise;
}
/*! [values] */

/*! [each] */
/* Calls a function for each instance of a category. A catalog has a level for the category; in
 * that, a level for each name; in that, the instances. */
static void each(cfgroup *owner, const char *cat, void (*visit)(cfgroup *)) {
  cfgroup *category = cfcatgetgrp(owner, cat, NULL);
  if (!category)
    return;
  for (cfnode *name = cfiterator(category); !cfend(name); cfnext(&name))
    for (cfnode *it = cfiterator(cfgrp(name)); !cfend(it); cfnext(&it))
      visit(cfgrp(it));
}
/*! [each] */

/*! [use] */
static void disk(cfgroup *grp) { printf("  disk %s at %s\n", grp->name, text(grp, "path", "/")); }

static void host(cfgroup *grp) {
  printf("%s: address %s, port %ld, at most %ld MB/s\n", grp->name, text(grp, "addr", grp->name),
         number(grp, "port", 22), number(cfcatgetgrp(grp, NULL, "limits"), "rate", 100));
  each(grp, "disk", disk);
}

static void use(cfgroup *catalog) {
  printf("keep %ld copies\n", number(catalog, "keep", 7));
  cfparam *exclude = cfcatgetpar(catalog, "exclude", NULL);
  if (exclude) /* its level holds all parameters of this key */
    for (cfnode *it = &exclude->link; !cfend(it); cfnext(&it))
      printf("exclude %s\n", cfstr(cfpar(it)));
  each(catalog, "host", host);
}
/*! [use] */

/*! [main] */
int main(int argc, char **argv) {
  const char *fname = argc > 1 ? argv[1] : "tour.conf";
  FILE *file = fopen(fname, "r");
  if (!file) {
    perror(fname);
    return EXIT_FAILURE;
  }
  cflexer lex = {0};                                   /* no slot replaced */
  cfparser parser = {.scopedef = scopedef, .werr = 1}; /* a misspelt key is an error */
  const bool valid = cflex(&lex, file, fname) && cfparse(&parser, lex.top, fname);
  fclose(file);
  if (valid) {
    cfgroup *catalog = cfcatalog(lex.top); /* after the check, so that it has the values */
    use(catalog);
    cfdelgrp(catalog);
  }
  cfdelgrp(lex.top); /* the tree belongs to the caller, after a failed read too */
  return valid ? EXIT_SUCCESS : EXIT_FAILURE;
}
/*! [main] */
