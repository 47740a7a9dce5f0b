/* displace: an application's own emsg, wmsg or fail (bits of DISPLACED) takes the library's place.
 * SPDX-License-Identifier: MIT */
#define _POSIX_C_SOURCE 200809L
#include <cf.h>
#include <signal.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#define OWN(name)                                                                                  \
  void name(const char *fmt, ...) {                                                                \
    va_list args;                                                                                  \
    va_start(args, fmt);                                                                           \
    fputs("own ", stderr);                                                                         \
    vfprintf(stderr, fmt, args);                                                                   \
    fputs("\n", stderr);                                                                           \
    va_end(args);                                                                                  \
  }
#if DISPLACED & 1
OWN(emsg)
#endif
#if DISPLACED & 2
OWN(wmsg)
#endif
#if DISPLACED & 4
void fail(const char *msg) {
  fprintf(stderr, "own %s\n", msg);
  abort();
}
#endif

/* Ends as a program should, so that a coverage count is written too. */
static void aborted(int signal) { exit(signal); }

/* One message of each kind, in the order of the bits. */
static void provoke(void) {
  cflexer lex = {0};
  cfparser parser = {0};
  FILE *fd = tmpfile();
  fputs("}\nkey = 1\n", fd);
  rewind(fd);
  cflex(&lex, fd, "x");
  cfparse(&parser, lex.top, "x");
  cfmmgr(NULL).cfmalloc(SIZE_MAX / 4);
}

int main(void) {
  const char *const said[] = {"x:1: group end without begin\n", "x:2: undefined symbol\n",
                              "out of memory\n"};
  char expected[200] = "", got[200] = "";
  FILE *err = tmpfile();
  int status = 0;
  const pid_t child = fork();
  if (child == 0) {
    dup2(fileno(err), STDERR_FILENO);
    signal(SIGABRT, aborted);
    provoke();
    _exit(0);
  }
  waitpid(child, &status, 0);
  rewind(err);
  fread(got, 1, sizeof got - 1, err);
  for (int i = 0; i < 3; i++)
    strcat(strcat(expected, DISPLACED & 1 << i ? "own " : ""), said[i]);
  fputs(got, stderr);
  return !(WIFEXITED(status) && WEXITSTATUS(status) == SIGABRT && strcmp(got, expected) == 0);
}
