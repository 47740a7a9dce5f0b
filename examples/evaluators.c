/* evaluators: types of the application's own: a range, a word of a list, a duration.
 * SPDX-License-Identifier: MIT */
#include <cf.h>

#include <ctype.h>
#include <errno.h>
#include <limits.h>
#include <stdbool.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

/*! [range] */
/* A port, 1 to 65535. The value is a long, so cfint() reads it. */
static int evport(const char *val, void *vval) {
  long port = 0;
  if (!val)
    return sizeof port;
  if (cfevint(val, &port) < 0 || port < 1 || port > 65535)
    return -1;
  if (vval)
    memcpy(vval, &port, sizeof port);
  return sizeof port;
}
/*! [range] */

/*! [word] */
/* One word of a list. The value is its position, a long. */
static int evlevel(const char *val, void *vval) {
  static const char *const words[] = {"debug", "info", "warning", "error"};
  if (!val)
    return sizeof(long);
  for (long i = 0; i < 4; ++i)
    if (strcasecmp(val, words[i]) == 0) {
      if (vval)
        memcpy(vval, &i, sizeof i);
      return sizeof i;
    }
  return -1;
}
/*! [word] */

/*! [duration] */
/* A duration such as 1h30m: numbers with the units d, h, m and s, the larger unit first. False
 * if the text is no duration, or if its seconds do not fit in a long. */
static bool duration(const char *text, long *seconds) {
  static const struct {
    char unit;
    long seconds;
  } units[] = {{'d', 86400}, {'h', 3600}, {'m', 60}, {'s', 1}};
  size_t next = 0; /* the first unit that may still come */
  *seconds = 0;
  do {
    if (!isdigit((unsigned char)*text))
      return false;
    char *end = NULL;
    errno = 0;
    const long number = strtol(text, &end, 10);
    while (next < 4 && units[next].unit != *end)
      ++next;
    if (next == 4 || errno == ERANGE || number > (LONG_MAX - *seconds) / units[next].seconds)
      return false;
    *seconds += number * units[next++].seconds;
    text = end + 1;
  } while (*text);
  return true;
}

/* Evaluator of durations. The value is a long, in seconds. */
static int evduration(const char *val, void *vval) {
  long seconds = 0;
  if (val && !duration(val, &seconds))
    return -1;
  if (val && vval)
    memcpy(vval, &seconds, sizeof seconds);
  return sizeof seconds;
}
/*! [duration] */

/* Evaluates each text, up to a NULL, and shows the value. */
static void show(const char *title, cfeval_t eval, const char *const *texts) {
  printf("%s\n", title);
  for (; *texts; ++texts) {
    cfparam *par = cfnewpar("key", *texts, -1);
    if (cfevalpar(par, eval))
      printf("  %-8s %ld\n", *texts, cfint(par));
    else
      printf("  %-8s refused\n", *texts);
    cfdelpar(par);
  }
}

int main(void) {
  show("ports", evport, (const char *[]){"80", "0x1F90", "65535", "65536", "0", "ssh", NULL});
  show("levels", evlevel, (const char *[]){"debug", "Error", "fatal", "", NULL});
  show("durations", evduration,
       (const char *[]){"90s", "1h30m", "14d", "30", "5m1h", "m", "-5s", "99999999999999999999s",
                        NULL});
  return EXIT_SUCCESS;
}
