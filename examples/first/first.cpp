// first: reads a file and looks up a value.
// SPDX-License-Identifier: MIT
//! [all]
#include <cf.h>

int main() {
  FILE *file = fopen("first.conf", "r");
  cflexer lex = {};
  if (!file || !cflex(&lex, file, "first.conf"))
    return 1; // standard error tells what and where

  cfgroup *catalog = cfcatalog(lex.top);
  cfgroup *alpha = cfcatgetgrp(catalog, "host", "alpha");
  cfparam *port = alpha ? cfcatgetpar(alpha, "port", nullptr) : nullptr;
  if (port && cfevalpar(port, cfevint))
    printf("alpha answers on port %ld\n", cfint(port));

  cfcatdelgrp(catalog); // the tree goes with it
  return fclose(file);
}
//! [all]
