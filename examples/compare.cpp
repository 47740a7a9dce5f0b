// compare: two files, but for the scopes that are to be left out. Use: cf_compare A B [SCOPE...]
// Exit status as that of diff: 0 the same, 1 different, 2 trouble.
// SPDX-License-Identifier: MIT
#include "tree.h"

#include <algorithm>
#include <cstdio>
#include <span>
#include <string_view>

namespace {

//! [filter]
// The filter is given a scope and nothing else, so it finds its list by itself.
std::span<char *> leftout;

int chkscope(const char *scope) {
  return std::find(leftout.begin(), leftout.end(), std::string_view(scope)) == leftout.end();
}

bool differ(cfgroup *a, cfgroup *b) {
  cfdiff diff{};
  diff.chkscope = chkscope;
  return cfdiffnd(cfdiffdfl(&diff), &a->link, &b->link);
}
//! [filter]

} // namespace

int main(int argc, char **argv) {
  if (argc < 3) {
    std::fprintf(stderr, "use: %s A B [SCOPE...]\n", argv[0]);
    return 2;
  }
  leftout = std::span(argv + 3, argv + argc);
  const tree a = readfile(argv[1]), b = readfile(argv[2]);
  if (!a || !b)
    return 2;
  const bool different = differ(a.get(), b.get());
  std::printf("%s and %s %s\n", argv[1], argv[2], different ? "differ" : "are the same");
  return different;
}
