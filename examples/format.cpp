// format: reads standard input and prints it normalised; a file that is already so comes out alike.
// SPDX-License-Identifier: MIT
#include "tree.h"

#include <cstdio>

//! [main]
int main() {
  const tree top = readstream(stdin, "standard input");
  if (!top)
    return 1; // nothing is written of what has a fault
  cfprinter prn{};
  const bool printed = cfprint(stdout, &prn, top.get(), "standard output");
  return printed && std::fclose(stdout) == 0 ? 0 : 1; // what only a flush shows counts too
}
//! [main]
