// diagnostics: shows each fault with its line, and a caret under the place. Use: diagnostics FILE
// SPDX-License-Identifier: MIT
#include "edge.h"

#include <fstream>
#include <iostream>
#include <string>

namespace {

//! [show]
/// The text of a line of a file, counted from 1.
std::string line_of(const std::string &fname, long number) {
  std::ifstream file(fname);
  std::string line;
  while (number-- > 0 && std::getline(file, line))
    ;
  return line;
}

void show(const cf::diagnostic &d) {
  std::cerr << d << '\n';
  if (d.line == 0 || d.column == 0)
    return;
  const std::string line = line_of(d.file, d.line);
  std::string marks;
  for (size_t at = 0; at + 1 < size_t(d.column) && at < line.size(); ++at)
    if ((line[at] & 0xC0) != 0x80) // not the second byte of a letter in UTF-8
      marks += line[at] == '\t' ? '\t' : ' ';
  std::cerr << "    " << line << "\n    " << marks << "^\n";
}
//! [show]

} // namespace

int main(int argc, char **argv) {
  const cf::result result = cf::try_load(argc > 1 ? argv[1] : "edge_faulty.conf", schema);
  for (const cf::diagnostic &d : result.diagnostics)
    show(d);
  return result ? 0 : 1;
}
