/* app: reads a file and looks up a value, as a C program does.
 * SPDX-License-Identifier: MIT */
#include <cf.h>
#include <string.h>

int main(void) {
  cflexer lex = {0};
  FILE *fd = tmpfile();
  fputs("host alpha {\n  port = 80\n}\n", fd);
  rewind(fd);
  int ok = cflex(&lex, fd, "app.conf");
  cfgroup *catalog = cfcatalog(lex.top);
  ok = ok &&
       strcmp(cfstr(cfcatgetpar(cfcatgetgrp(catalog, "host", "alpha"), "port", NULL)), "80") == 0;
  cfcatdelgrp(catalog);
  fclose(fd);
  return !ok;
}
