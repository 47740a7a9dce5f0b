// tolerant: slots that read what other systems write: a byte order mark, and CR at the end of
// remarks.
// SPDX-License-Identifier: MIT
#include "tree.h"

#include <cstring>
#include <string>
#include <string_view>

namespace {

//! [tolerant]
/// The library's own slots.
const cflexer defaults = [] {
  cflexer lex{};
  return *cflexdfl(&lex);
}();

/// A default slot that does not see a byte order mark ahead of the first line.
template <auto slot> auto behindmark(cflexer *lex) {
  const char *row = lex->row; // NULL at the end of input
  if (row && lex->nrow == 1 && std::strncmp(row, "\xEF\xBB\xBF", 3) == 0)
    lex->row += 3;
  const auto answer = (defaults.*slot)(lex);
  lex->row = row;
  return answer;
}

/// Everywhere else a CR is white space and falls away.
cfremark *withoutcr(cflexer *lex) {
  cfremark *rem = behindmark<&cflexer::scanrem>(lex);
  const std::string_view txt = rem->txt;
  if (!txt.ends_with('\r'))
    return rem;
  cfremark *clean = cfnewrem(std::string(txt.substr(0, txt.size() - 1)).c_str(), rem->row);
  cfdelrem(rem);
  return clean;
}

cflexer tolerant() {
  cflexer lex{};
  lex.isempty = behindmark<&cflexer::isempty>;
  lex.isremark = behindmark<&cflexer::isremark>;
  lex.isgrpbeg = behindmark<&cflexer::isgrpbeg>;
  lex.isgrpend = behindmark<&cflexer::isgrpend>;
  lex.isparam = behindmark<&cflexer::isparam>;
  lex.scanrem = withoutcr;
  lex.scangrp = behindmark<&cflexer::scangrp>;
  lex.scanpar = behindmark<&cflexer::scanpar>;
  return lex;
}
//! [tolerant]

/// Reads a text with the given slots and prints what came of it.
void show(cflexer lex, const char *name) {
  char text[] = "\xEF\xBB\xBFport = 80\r\n# the relay\r\nhost alpha {\r\n}\r\n";
  const stream fd(fmemopen(text, sizeof text - 1, "r"));
  const bool clean = cflex(&lex, fd.get(), name);
  const tree top(lex.top);
  std::printf("%s: %s\n", name, clean ? "clean" : "faulty");
  cfprinter prn{};
  if (clean)
    cfprint(stdout, &prn, top.get(), "standard output");
}

} // namespace

int main() {
  show({}, "default slots");
  show(tolerant(), "tolerant slots");
}
