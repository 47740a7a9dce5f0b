/* edit: changes a file through its catalog, and prints it.
 * SPDX-License-Identifier: MIT */
#include <cf.h>

#include <stdbool.h>
#include <stdlib.h>

/*! [edit] */
/* Each edit goes through the catalog and changes the tree too. False: host alpha or beta is
 * absent. */
static bool edit(cfgroup *catalog) {
  cfgroup *alpha = cfcatgetgrp(catalog, "host", "alpha");
  cfgroup *beta = cfcatgetgrp(catalog, "host", "beta");
  if (!alpha || !beta)
    return false;

  cfcatsetpar(catalog, cfnewpar("keep", "30", -1));     /* replaces; the remark stays */
  cfcatsetpar(alpha, cfnewpar("port", "2022", -1));     /* adds: there was none */
  cfcataddpar(catalog, cfnewpar("exclude", "*.a", -1)); /* adds one more */

  cfgroup *gamma = cfnewgrp("host", "gamma", cf_grpinst, -1);
  cfaddpar(gamma, cfnewpar("addr", "192.0.2.12", -1));
  cfcataddgrp(catalog, gamma);

  cfcatdelgrp(beta);
  return true;
}
/*! [edit] */

int main(int argc, char **argv) {
  const char *fname = argc > 1 ? argv[1] : "tour.conf";
  FILE *file = fopen(fname, "r");
  if (!file) {
    perror(fname);
    return EXIT_FAILURE;
  }
  cflexer lex = {0};
  cfprinter prn = {0};
  bool ok = cflex(&lex, file, fname);
  fclose(file);
  cfgroup *catalog = cfcatalog(lex.top);
  ok = ok && edit(catalog) && cfprint(stdout, &prn, lex.top, "standard output");
  cfcatdelgrp(catalog); /* the tree too */
  return ok && fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
