/* compare: compares two files, without the elements of some scope strings.
 * Use: compare A B [SCOPE...]
 * The exit status is that of diff: 0 for the same, 1 for different, 2 for trouble.
 * SPDX-License-Identifier: MIT */
#include <cf.h>

#include <string.h>

/*! [filter] */
static char **excluded; /* ends with NULL; global, as a filter gets only the scope string */

static int chkscope(const char *scope) {
  for (char **it = excluded; *it; ++it)
    if (strcmp(*it, scope) == 0)
      return 0;
  return 1;
}

static int differ(const cfgroup *a, const cfgroup *b) {
  cfdiff diff = {.chkscope = chkscope};
  return cfdiffnd(cfdiffdfl(&diff), &a->link, &b->link);
}
/*! [filter] */

/* Reads a file; NULL after any fault. */
static cfgroup *readfile(const char *fname) {
  FILE *file = fopen(fname, "r");
  if (!file) {
    perror(fname);
    return NULL;
  }
  cflexer lex = {0};
  if (!cflex(&lex, file, fname)) {
    cfdelgrp(lex.top);
    lex.top = NULL;
  }
  fclose(file);
  return lex.top;
}

int main(int argc, char **argv) {
  if (argc < 3) {
    fprintf(stderr, "use: %s A B [SCOPE...]\n", argv[0]);
    return 2;
  }
  excluded = argv + 3;
  cfgroup *a = readfile(argv[1]), *b = readfile(argv[2]);
  int result = 2;
  if (a && b) {
    result = differ(a, b);
    printf("%s and %s %s\n", argv[1], argv[2], result ? "differ" : "are the same");
  }
  cfdelgrp(a);
  cfdelgrp(b);
  return result;
}
