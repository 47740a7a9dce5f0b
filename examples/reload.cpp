// reload: a service that loads its file again. Use: reload FILE NEWER-FILE...
// SPDX-License-Identifier: MIT
#include "edge.h"

#include <iostream>
#include <utility>

namespace {

//! [reload]
/// Takes over a new file. If it has a fault, the service goes on with the old document.
void reload(cf::document &current, const char *fname) {
  cf::result next = cf::try_load(fname, schema);
  for (const cf::diagnostic &d : next.diagnostics)
    std::cerr << d << '\n';
  if (!next) {
    std::cerr << "the configuration stays as it was\n";
    return;
  }
  for (const cf::change &c : cf::changes(current, next.document))
    std::cout << c << '\n';
  current = std::move(next.document);
}
//! [reload]

} // namespace

int main(int argc, char **argv) try {
  cf::document doc = cf::load(argv[1], schema);
  for (int i = 2; i < argc; ++i)
    reload(doc, argv[i]);
} catch (const cf::error &e) {
  for (const cf::diagnostic &d : e.diagnostics())
    std::cerr << d << '\n';
  return 1;
}
