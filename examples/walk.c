/* walk: prints the outline of a file: each element of the tree, with its line.
 * SPDX-License-Identifier: MIT */
#include <cf.h>

#include <stdbool.h>
#include <stdlib.h>

static const char *kind(const cfgroup *grp) {
  switch (grp->type) {
  case cf_grpinst: return "group";
  case cf_grprem: return "block: a run of remarks";
  case cf_grpgrp: return "block: remarks and the group";
  case cf_grppar: return "block: remarks and the parameter";
  default: return "level"; /* of a catalog */
  }
}

static void show(cfnode *nd, int depth) {
  const cfgroup *grp = cfgrp(nd);
  const cfremark *rem = cfrem(nd);
  const cfparam *par = cfpar(nd);
  printf("%4ld %*s", grp ? grp->row : rem ? rem->row : par->row, 2 * depth, "");
  if (grp)
    printf("%s%s%s%s%s\n", kind(grp), *grp->cat ? " " : "", grp->cat, *grp->name ? " " : "",
           grp->name);
  else if (rem)
    printf("remark: %s\n", rem->txt);
  else
    printf("parameter %s = %s\n", par->key, par->val);
}

/*! [walk] */
/* Visits all elements below a group. Every list ends at the anchor in its group, and the
 * anchor's `group` is that group. So the way up needs neither recursion nor a stack, however
 * deep the tree. */
static void walk(cfgroup *top) {
  int depth = 0;
  cfnode *it = cfiterator(top);
  while (it != &top->elem)
    if (cfend(it)) { /* the end of an inner group: go on after the group */
      it = it->group->link.next;
      --depth;
    } else {
      show(it, depth);
      cfgroup *grp = cfgrp(it);
      it = grp ? cfiterator(grp) : it->next;
      depth += grp != NULL;
    }
}
/*! [walk] */

int main(int argc, char **argv) {
  const char *fname = argc > 1 ? argv[1] : "walk.conf";
  FILE *file = fopen(fname, "r");
  if (!file) {
    perror(fname);
    return EXIT_FAILURE;
  }
  cflexer lex = {0};
  const bool clean = cflex(&lex, file, fname);
  fclose(file);
  walk(lex.top);
  cfdelgrp(lex.top);
  return clean ? EXIT_SUCCESS : EXIT_FAILURE;
}
