// tolerant: slots that accept a byte order mark, and a carriage return at the end of remarks.
// SPDX-License-Identifier: MIT
#include <cf.h>

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

/// Calls a default slot, which does not see a byte order mark at the start of the first line.
template <auto slot> auto without_mark(cflexer *lex) {
  const char *row = lex->row; // NULL at the end of input
  if (row && lex->nrow == 1 && std::strncmp(row, "\xEF\xBB\xBF", 3) == 0)
    lex->row += 3;
  const auto answer = (defaults.*slot)(lex);
  lex->row = row;
  return answer;
}

/// Drops the carriage return of a remark. In other lines it is white space, and dropped anyway.
cfremark *without_return(cflexer *lex) {
  cfremark *rem = without_mark<&cflexer::scanrem>(lex);
  const std::string_view txt = rem->txt;
  if (!txt.ends_with('\r'))
    return rem;
  cfremark *clean = cfnewrem(std::string(txt.substr(0, txt.size() - 1)).c_str(), rem->row);
  cfdelrem(rem);
  return clean;
}

cflexer tolerant() {
  cflexer lex{};
  lex.isempty = without_mark<&cflexer::isempty>;
  lex.isremark = without_mark<&cflexer::isremark>;
  lex.isgrpbeg = without_mark<&cflexer::isgrpbeg>;
  lex.isgrpend = without_mark<&cflexer::isgrpend>;
  lex.isparam = without_mark<&cflexer::isparam>;
  lex.scanrem = without_return;
  lex.scangrp = without_mark<&cflexer::scangrp>;
  lex.scanpar = without_mark<&cflexer::scanpar>;
  return lex;
}
//! [tolerant]

/// Reads a text with the given slots and prints the tree.
void show(cflexer lex, const char *name) {
  char text[] = "\xEF\xBB\xBFport = 80\r\n# the relay\r\nhost alpha {\r\n}\r\n";
  FILE *fd = fmemopen(text, sizeof text - 1, "r");
  const bool clean = cflex(&lex, fd, name);
  std::fclose(fd);
  std::printf("%s: %s\n", name, clean ? "clean" : "faulty");
  cfprinter prn{};
  if (clean)
    cfprint(stdout, &prn, lex.top, "standard output");
  cfdelgrp(lex.top);
}

} // namespace

int main() {
  show({}, "default slots");
  show(tolerant(), "tolerant slots");
}
