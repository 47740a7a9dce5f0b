/* save: saves a tree so that, whatever fails, the file has the old text or the new one, whole.
 * SPDX-License-Identifier: MIT */
#define _GNU_SOURCE /* realpath(), asprintf() */
#include <cf.h>

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/*! [limit] */
/* A printer that stops when its text becomes longer than a limit. Each level of nesting indents
 * by two blanks, so the text of a deeply nested file can be very much longer than the file. */
typedef struct limited {
  cfprinter prn; /* first: a slot gets a pointer to it */
  long limit;    /* bytes */
} limited;

static cfprinter defaults; /* the library's slots */

static int checked(cfprinter *prn, int result) {
  const long limit = ((limited *)prn)->limit;
  if (ftell(prn->fd) <= limit)
    return result;
  emsg("%s: longer than %ld bytes", prn->fname, limit);
  return -1;
}
static int outempty(cfprinter *prn, cfgroup *grp) {
  return checked(prn, defaults.outempty(prn, grp));
}
static int outremark(cfprinter *prn, cfremark *rem) {
  return checked(prn, defaults.outremark(prn, rem));
}
static int outgrpbeg(cfprinter *prn, cfgroup *grp) {
  return checked(prn, defaults.outgrpbeg(prn, grp));
}
static int outgrpend(cfprinter *prn, cfgroup *grp) {
  return checked(prn, defaults.outgrpend(prn, grp));
}
static int outparam(cfprinter *prn, cfparam *par) {
  return checked(prn, defaults.outparam(prn, par));
}
/*! [limit] */

/*! [text] */
typedef struct text {
  char *bytes; /* NULL: there is none. Released with free(). */
  size_t size;
} text;

/* Prints into memory. */
static text print(cfgroup *top, const char *fname, long limit) {
  text txt = {NULL, 0};
  FILE *memory = open_memstream(&txt.bytes, &txt.size);
  if (!memory)
    return txt;
  cfprintdfl(&defaults);
  limited lim = {{.outempty = outempty,
                  .outremark = outremark,
                  .outgrpbeg = outgrpbeg,
                  .outgrpend = outgrpend,
                  .outparam = outparam},
                 limit};
  const bool printed = cfprint(memory, &lim.prn, top, fname);
  if (fclose(memory) != 0 || !printed) { /* bytes and size are valid only now */
    free(txt.bytes);
    txt.bytes = NULL;
  }
  return txt;
}

/* True if a text reads back as the tree that it was printed from. A line may be too long for the
 * reader, and a text set by the program may contain what no line can, such as a line end. */
static bool reads_back(cfgroup *top, text txt, long limit) {
  const char *fname = "printed text"; /* the lines are its lines, not those of the file */
  FILE *memory = fmemopen(txt.bytes, txt.size, "r");
  if (!memory)
    return false;
  cflexer lex = {0};
  cfdiff diff = {.opt = cf_diffrem};
  bool same = cflex(&lex, memory, fname) && !cfdiffnd(cfdiffdfl(&diff), &top->link, &lex.top->link);
  fclose(memory);
  if (same) { /* the comparison does not see where a group ends; the text shows it */
    text again = print(lex.top, fname, limit);
    same = again.bytes && again.size == txt.size && memcmp(again.bytes, txt.bytes, txt.size) == 0;
    free(again.bytes);
  }
  cfdelgrp(lex.top);
  return same;
}
/*! [text] */

/*! [save] */
/* Reports a step that failed. */
static bool done(bool ok, const char *fname, const char *step) {
  if (!ok)
    emsg("%s: %s: %s", fname, step, strerror(errno));
  return ok;
}

/* Gives the new file the owner and the mode of the old one. Without an old one, only the owner may
 * read and write it, as mkstemp() made it. */
static bool keep_owner(int fd, const char *target, const char *fname) {
  struct stat old;
  if (stat(target, &old) != 0)
    return done(errno == ENOENT, fname, "look up");
  return done(fchown(fd, old.st_uid, old.st_gid) == 0, fname, "keep the owner") &&
         done(fchmod(fd, old.st_mode & 07777) == 0, fname, "keep the mode");
}

static bool write_all(int fd, text txt) {
  for (size_t at = 0; at < txt.size;) {
    const ssize_t written = write(fd, txt.bytes + at, txt.size - at);
    if (written < 0 && errno != EINTR)
      return false;
    at += written < 0 ? 0 : (size_t)written;
  }
  return true;
}

/* Makes a rename durable: without this, a crash of the machine may bring the old file back. */
static bool sync_directory(const char *target, const char *fname) {
  char *directory = strdup(target);
  char *slash = directory ? strrchr(directory, '/') : NULL;
  if (slash)
    slash[slash == directory] = '\0';
  const int fd = directory ? open(slash ? directory : ".", O_RDONLY | O_DIRECTORY) : -1;
  const bool ok = done(fd >= 0 && fsync(fd) == 0, fname, "sync the directory");
  if (fd >= 0)
    close(fd);
  free(directory);
  return ok;
}

/* Puts a text in the place of a file: into a new file in the same directory, which is then
 * renamed. */
static bool replace(const char *target, text txt, const char *fname) {
  char *temporary = NULL;
  if (!done(asprintf(&temporary, "%s.XXXXXX", target) >= 0, fname, "name a temporary file"))
    return false;
  const int fd = mkstemp(temporary);
  bool ok = done(fd >= 0, fname, "create");
  if (ok) {
    ok = keep_owner(fd, target, fname) && done(write_all(fd, txt), fname, "write") &&
         done(fsync(fd) == 0, fname, "sync");
    ok = done(close(fd) == 0, fname, "close") && ok;
    ok = ok && done(rename(temporary, target) == 0, fname, "replace");
    if (!ok)
      unlink(temporary);
  }
  free(temporary);
  return ok && sync_directory(target, fname);
}

/* Saves a tree (not a catalog, which prints without remarks), as a text of at most `limit`
 * bytes. True: the file holds it. False: emsg() got the reason, and the file is as it was, with
 * one exception: if the directory could not be synced, the file is new, and a crash of the
 * machine may bring the old one back. */
bool save(cfgroup *top, const char *fname, long limit) {
  text txt = print(top, fname, limit);
  bool ok = txt.bytes;
  if (ok && !reads_back(top, txt, limit)) {
    emsg("%s: does not read back as it is", fname);
    ok = false;
  }
  if (ok) {
    /* A symbolic link stays, and the file that it names is replaced. */
    char *target = realpath(fname, NULL);
    ok = replace(target ? target : fname, txt, fname);
    free(target);
  }
  free(txt.bytes);
  return ok;
}
/*! [save] */

/* Replaces the library's emsg(): messages go to standard output, in order with all else. */
void emsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  printf("  ");
  vprintf(fmt, args);
  puts("");
  va_end(args);
}

static void attempt(const char *title, cfgroup *top, const char *key, const char *val, long limit) {
  printf("%s\n", title);
  cfcatsetpar(top, cfnewpar(key, val, -1));
  puts(save(top, "relay.conf", limit) ? "  saved" : "  not saved");
}

int main(void) {
  char directory[] = "/tmp/cf.XXXXXX";
  if (!mkdtemp(directory) || chdir(directory) != 0)
    return EXIT_FAILURE;
  cfgroup *top = cfnewgrp(NULL, NULL, cf_grptop, -1);
  cfaddpar(top, cfnewpar("relay", "mx.example.org", -1));

  char overlong[4100];
  memset(overlong, 'x', sizeof overlong - 1);
  overlong[sizeof overlong - 1] = '\0';
  attempt("a good save", top, "port", "25", 10000);
  attempt("a line that is too long for the reader", top, "relay", overlong, 10000);
  attempt("a value that contains a line end", top, "relay", "mx.example.org\nport = 26", 10000);
  attempt("more than the limit", top, "relay", "mx.example.org", 30);
  signal(SIGXFSZ, SIG_IGN); /* a write past the limit of the process fails, as on a full disk */
  struct rlimit former;
  getrlimit(RLIMIT_FSIZE, &former);
  setrlimit(RLIMIT_FSIZE, &(struct rlimit){16, former.rlim_max});
  attempt("a full disk", top, "port", "587", 10000);
  setrlimit(RLIMIT_FSIZE, &former);

  puts("the file");
  FILE *file = fopen("relay.conf", "r");
  for (int c; file && (c = fgetc(file)) != EOF;)
    putchar(c);
  if (file)
    fclose(file);
  cfdelgrp(top);
  const bool clean = unlink("relay.conf") == 0 && rmdir(directory) == 0; /* nothing else is left */
  return clean ? EXIT_SUCCESS : EXIT_FAILURE;
}
