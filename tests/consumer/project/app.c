/* app: reads a file and looks up a value, as a user's program does. C and C++.
 * SPDX-License-Identifier: MIT */
#include <cf.h>
#include <string.h>
#ifdef __cplusplus
#include <typeinfo>
static const char *const type = typeid(cfgroup).name(); /* the library's own options stay its own */
#else
static const char *const type = "cfgroup";
#endif

int main(void) {
  cflexer lex;
  cfgroup *catalog;
  FILE *fd = tmpfile();
  int ok;
  memset(&lex, 0, sizeof lex);
  fputs("host alpha {\n  port = 80\n}\n", fd);
  rewind(fd);
  ok = cflex(&lex, fd, "app.conf");
  catalog = cfcatalog(lex.top);
  ok = ok &&
       strcmp(cfstr(cfcatgetpar(cfcatgetgrp(catalog, "host", "alpha"), "port", NULL)), "80") == 0;
  cfcatdelgrp(catalog);
  fclose(fd);
  return !(ok && *type);
}
