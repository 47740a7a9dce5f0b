// tour: the whole road of a file: read, checked, indexed, used.
// SPDX-License-Identifier: MIT
#include "symbols.h"
#include "tree.h"
#include "values.h"

#include <cstdio>

namespace {

//! [table]
// What the file may say: where, of which type, and how often.
constexpr unsigned once = 0, often = 1;
cfscope symbols[] = {
    {"::keep", cfevint, once},
    {"::verbose", cfevbool, once},
    {"::exclude", cfevstr, often},
    {"::*.host::", nullptr, once}, // hosts of any name, each name once
    {"host::addr", cfevstr, once},
    {"host::port", cfevint, once},
    {"host::limits.", nullptr, once},
    {"host::limits.rate", cfevint, once},
    {"host::*.disk::", nullptr, once}, // and so the disks of a host
    {"disk::path", cfevstr, once},
};

cfscope *scopedef(const char *scope) { return find(symbols, scope); }
//! [table]

//! [load]
/// A tree that was read and checked. When nothing comes back, emsg() was told what is wrong.
tree load(const char *fname) {
  tree top = readfile(fname);
  if (!top)
    return nullptr;
  cfparser parser{};
  parser.scopedef = scopedef;
  parser.werr = 1; // a misspelt key is an error; with 0 it would be a warning
  return cfparse(&parser, top.get(), fname) ? std::move(top) : nullptr;
}
//! [load]

//! [use]
void use(cfgroup *catalog) {
  std::printf("%ld copies are kept\n", number(catalog, "keep", 7));
  each(catalog, "host", [](cfgroup *host) {
    std::printf("%s: address %s, port %ld, at most %ld MB/s\n", host->name,
                text(host, "addr", host->name), number(host, "port", 22),
                number(cfcatgetgrp(host, nullptr, "limits"), "rate", 100));
    each(host, "disk", [](cfgroup *disk) {
      std::printf("  disk %s at %s\n", disk->name, text(disk, "path", "/"));
    });
  });
}
//! [use]

} // namespace

//! [main]
int main(int argc, char **argv) {
  const tree top = load(argc > 1 ? argv[1] : "tour.conf");
  if (!top)
    return 1;
  const tree catalog(cfcatalog(top.get())); // behind the check: it takes the values along
  use(catalog.get());
}
//! [main]
