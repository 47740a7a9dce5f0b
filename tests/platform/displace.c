/* displace: an application's own emsg, wmsg or fail (bits of DISPLACED) takes the library's place.
 * The library's own write each message at once, whole lines whatever their length and the threads.
 * SPDX-License-Identifier: MIT */
#define _POSIX_C_SOURCE 200809L
#include <cf.h>
#include <pthread.h>
#include <signal.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

#define OWN(name)                                                                                  \
  void name(const char *fmt, ...) {                                                                \
    char line[200] = "own ";                                                                       \
    va_list args;                                                                                  \
    va_start(args, fmt);                                                                           \
    vsnprintf(line + 4, sizeof line - 4, fmt, args);                                               \
    va_end(args);                                                                                  \
    dprintf(STDERR_FILENO, "%s\n", line);                                                          \
  }
#if DISPLACED & 1
OWN(emsg)
#endif
#if DISPLACED & 2
OWN(wmsg)
#endif
#if DISPLACED & 4
void fail(const char *msg) {
  dprintf(STDERR_FILENO, "own %s\n", msg);
  abort();
}
#endif

/* Ends as a program should, so that a coverage count is written too. */
static void aborted(int signal) { exit(signal); }

/* A file with an error and a warning, under a name. */
static void *provoke(void *name) {
  cflexer lex = {0};
  cfparser parser = {0};
  FILE *fd = fmemopen("}\nkey = 1\n", 10, "r");
  cflex(&lex, fd, name);
  cfparse(&parser, lex.top, name);
  fclose(fd);
  cfdelgrp(lex.top);
  return NULL;
}

/* One message of each kind, in the order of the bits, each in a packet of its own. */
static int expect_packets(int from) {
  static const char *const said[] = {"x:1: group end without begin\n", "x:2: undefined symbol\n",
                                     "out of memory\n"};
  for (int i = 0; i < 3; i++) {
    char expected[200] = "", got[200] = "";
    strcat(strcat(expected, DISPLACED & 1 << i ? "own " : ""), said[i]);
    recv(from, got, sizeof got - 1, 0);
    if (strcmp(got, expected) != 0)
      return printf("got %s, not %s", got, expected);
  }
  return 0;
}

/* Long names in messages of several threads. Gives the number of lines that are whole. */
static int whole_lines(void) {
  static char names[4][5000];
  pthread_t threads[4];
  FILE *err = tmpfile();
  char *line = NULL;
  size_t size = 0;
  int whole = 0;
  dup2(fileno(err), STDERR_FILENO);
  for (int i = 0; i < 4; i++)
    pthread_create(&threads[i], NULL, provoke, memset(names[i], '0' + i, sizeof names[i] - 1));
  for (int i = 0; i < 4; i++)
    pthread_join(threads[i], NULL);
  rewind(err);
  while (getline(&line, &size, err) > 0)
    whole += strspn(line, (char[]){line[0], '\0'}) == sizeof names[0] - 1;
  return whole;
}

int main(void) {
  int ends[2];
  socketpair(AF_UNIX, SOCK_DGRAM, 0, ends);
  if (fork() == 0) {
    dup2(ends[0], STDERR_FILENO);
    signal(SIGABRT, aborted);
    provoke("x");
    cfmmgr(NULL).cfmalloc(SIZE_MAX / 4 * 3);
    _exit(0);
  }
  return expect_packets(ends[1]) || (DISPLACED == 0 && whole_lines() != 8);
}
