// read: any bytes are read, printed and read again; checking and cataloguing change no text.
// SPDX-License-Identifier: MIT
#include "fuzz.h"
#include "invariants.h"

#include <algorithm>
#include <cstdint>

using fuzz::dump;
using fuzz::need;

namespace {

const cflexer *const lexer = [] {
  static cflexer defaults = {};
  return cflexdfl(&defaults);
}();
const cfprinter *const printer = [] {
  static cfprinter defaults = {};
  return cfprintdfl(&defaults);
}();

/// A reader with one slot that does what the default does, so that all slots are asked.
cflexer wrapped_lexer(size_t slot) {
  cflexer lex = {};
  switch (slot % 8) {
  case 0: lex.isempty = [](cflexer *it) { return lexer->isempty(it); }; break;
  case 1: lex.isremark = [](cflexer *it) { return lexer->isremark(it); }; break;
  case 2: lex.isgrpbeg = [](cflexer *it) { return lexer->isgrpbeg(it); }; break;
  case 3: lex.isgrpend = [](cflexer *it) { return lexer->isgrpend(it); }; break;
  case 4: lex.isparam = [](cflexer *it) { return lexer->isparam(it); }; break;
  case 5: lex.scanrem = [](cflexer *it) { return lexer->scanrem(it); }; break;
  case 6: lex.scangrp = [](cflexer *it) { return lexer->scangrp(it); }; break;
  default: lex.scanpar = [](cflexer *it) { return lexer->scanpar(it); };
  }
  return lex;
}

cfprinter wrapped_printer(size_t slot) {
  cfprinter prn = {};
  switch (slot % 5) {
  case 0:
    prn.outempty = [](cfprinter *it, cfgroup *grp) { return printer->outempty(it, grp); };
    break;
  case 1:
    prn.outremark = [](cfprinter *it, cfremark *rem) { return printer->outremark(it, rem); };
    break;
  case 2:
    prn.outgrpbeg = [](cfprinter *it, cfgroup *grp) { return printer->outgrpbeg(it, grp); };
    break;
  case 3:
    prn.outgrpend = [](cfprinter *it, cfgroup *grp) { return printer->outgrpend(it, grp); };
    break;
  default: prn.outparam = [](cfprinter *it, cfparam *par) { return printer->outparam(it, par); };
  }
  return prn;
}

/// True if each line fits the reader's buffer: up to 4095 bytes, line end included.
bool fits(std::string_view text) {
  for (size_t end; !text.empty(); text.remove_prefix(end + 1))
    if (end = text.find('\n'); end > 4094)
      return false;
  return true;
}

/// What was printed reads back as the same tree, and that prints as the same bytes.
void read_again(const fuzz::reading &first, const std::string &text) {
  const fuzz::reading again = fuzz::read(text);
  need(again.result == 1 && again.said.empty(), "what is printed can be read");
  if (first.result)
    need(dump(again.top, false) == dump(first.top, false), "it reads back as the same tree");
  cfdiff diff = {};
  diff.opt = cf_diffrem;
  need(!cfdiffnd(cfdiffdfl(&diff), &first.top->link, &again.top->link), "it compares as the same");
  need(fuzz::print(again.top) == text, "printing has a fixed point");
  cfdelgrp(again.top);
}

/// The catalog shows the tree, prints to a fixed point of its own, and changes nothing.
void check_and_catalog(const fuzz::reading &first, const std::string &text) {
  static cfscope definition = {"", nullptr, 1};
  cfparser parser = {};
  parser.scopedef = [](const char *scope) {
    definition.eval = std::string_view(scope).size() % 2 ? cfevint : cfevstr;
    return &definition;
  };
  const int valid = cfparse(&parser, first.top, "cfg");
  need(valid == (fuzz::said().empty() ? 1 : 0), "reports are failures");
  cfgroup *catalog = cfcatalog(first.top);
  fuzz::check_tree(&catalog->link);
  fuzz::check_catalog(catalog, true);
  const std::string sorted = fuzz::print(catalog);
  if (fits(sorted)) {
    const fuzz::reading again = fuzz::read(sorted);
    need(again.result == 1, "a catalog prints as a file");
    cfgroup *other = cfcatalog(again.top);
    need(fuzz::print(other) == sorted, "the catalog of a printed catalog is the same");
    cfdelgrp(again.top);
    cfdelgrp(other);
  }
  need(fuzz::print(first.top) == text, "check and catalog change no text");
  fuzz::check_tree(&first.top->link);
  cfcatdelgrp(catalog);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::install_memory();
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);

  const fuzz::reading first = fuzz::read(bytes);
  const fuzz::reading slots = fuzz::read(bytes, wrapped_lexer(size));
  need(first.result == slots.result && first.nrow == slots.nrow && first.said == slots.said,
       "the slots report the same");
  need(dump(first.top, true) == dump(slots.top, true), "the slots make the same tree");
  need(first.result == (first.said.empty() ? 1 : 0), "a fault is a message");
  fuzz::check_tree(&first.top->link);

  const std::string text = fuzz::print(first.top);
  need(fuzz::print(slots.top, wrapped_printer(size)) == text, "the slots print the same");
  cfdelgrp(slots.top);
  if (fits(text))
    read_again(first, text);
  check_and_catalog(first, text);
  need(fuzz::live() == 0, "nothing is left");
  return 0;
}
