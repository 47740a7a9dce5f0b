/* plain: a program in C11: reads a file, checks it, and uses its values.
 * SPDX-License-Identifier: MIT */
#include <cf.h>

#include <stdbool.h>
#include <stdlib.h>
#include <string.h>

static cfscope symbols[] = {
    {"::keep", cfevint, 0},     {"::verbose", cfevbool, 0},
    {"::exclude", cfevstr, 1}, /* any number of times */
    {".host::", NULL, 0},      /* any name */
    {"host::addr", cfevstr, 0}, {"host::port", cfevint, 0},
    {"host::limits.", NULL, 0}, {"host::limits.rate", cfevint, 0},
    {".disk::", NULL, 0},       {"disk::path", cfevstr, 0},
};

/* A symbol that begins with a point is the ending of a group of any name, wherever it stands. */
static bool matches(const char *scope, const char *symbol) {
  const size_t length = strlen(scope), ending = strlen(symbol);
  if (*symbol != '.')
    return strcmp(scope, symbol) == 0;
  return length > ending && strcmp(scope + length - ending, symbol) == 0;
}

static cfscope *scopedef(const char *scope) {
  for (size_t i = 0; i < sizeof symbols / sizeof *symbols; ++i)
    if (matches(scope, symbols[i].scope))
      return &symbols[i];
  return NULL;
}

/* The values of a checked tree. */
static void use(cfgroup *catalog) {
  cfgroup *beta = cfcatgetgrp(catalog, "host", "beta");
  const cfparam *port = beta ? cfcatgetpar(beta, "port", NULL) : NULL;
  const cfparam *verbose = cfcatgetpar(catalog, "verbose", NULL);
  printf("beta: port %ld\n", port ? cfint(port) : 22);
  printf("verbose: %s\n", verbose && cfbool(verbose) ? "yes" : "no");
}

int main(int argc, char **argv) {
  const char *fname = argc > 1 ? argv[1] : "tour.conf";
  FILE *file = fopen(fname, "r");
  if (!file) {
    perror(fname);
    return EXIT_FAILURE;
  }
  cflexer lex = {0};
  cfparser parser = {.scopedef = scopedef, .werr = 1};
  const bool valid = cflex(&lex, file, fname) && cfparse(&parser, lex.top, fname);
  fclose(file);
  if (valid) {
    cfgroup *catalog = cfcatalog(lex.top);
    use(catalog);
    cfdelgrp(catalog);
  }
  cfdelgrp(lex.top); /* ours after a failed read too */
  return valid ? EXIT_SUCCESS : EXIT_FAILURE;
}
