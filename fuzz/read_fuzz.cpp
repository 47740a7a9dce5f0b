// read: reads any bytes, compares the result with a simple reader, prints it and reads it again.
// SPDX-License-Identifier: MIT
#include "oracles.h"

#include <cctype>
#include <cstring>

using kit::need;
using std::string;

namespace fuzz {
namespace {

/// Reads byte by byte, and binds remarks by recursion.
struct plain_reader {
  cfgroup *top = cfnewgrp("", "", cf_grptop, -1), *open = top;
  string said{};
  long row = 0;

  void error(const char *text, long at) {
    said += "E cfg:" + std::to_string(at) + ": " + text + '\n';
  }
  void read(std::string_view file) {
    while (!file.empty()) {
      const string line(file.substr(0, file.find('\n')));
      const bool ends = line.size() < file.size();
      file.remove_prefix(line.size() + ends);
      ++row;
      line.size() > 4094 ? error("line overflow", row)
                         : element((ends ? line + '\n' : line).c_str());
    }
    ++row;
    if (open != top)
      error("group begin without end", open->row);
    if (said.empty())
      bind(top);
  }

  void element(const char *p) {
    const auto is = [&p](int (*kind)(int)) { return kind(static_cast<unsigned char>(*p)) != 0; };
    const auto skip = [&] {
      while (is(std::isspace))
        ++p;
      return *p;
    };
    const auto word = [&] {
      const char *from = p;
      while (is(std::isalpha) || (p > from && (is(std::isdigit) || *p == '_')))
        ++p;
      return string(from, p);
    };
    if (skip() == '\0')
      return;
    if (*p == '#') {
      p += p[1] == ' ' ? 2 : 1;
      cfaddrem(open, cfnewrem(string(p, std::strcspn(p, "\n")).c_str(), row));
      return;
    }
    if (const bool ends = *p == '}'; ends && (++p, skip() == '\0'))
      return open == top ? error("group end without begin", row) : void(open = open->link.group);
    else if (ends)
      return error("syntax error", row);
    const string one = word();
    if (skip() == '=' && !one.empty()) {
      string val = (++p, skip(), p);
      while (!val.empty() && std::isspace(static_cast<unsigned char>(val.back())))
        val.pop_back();
      cfaddpar(open, cfnewpar(one.c_str(), val.c_str(), row));
      return;
    }
    const string two = one.empty() ? one : word();
    if (one.empty() || skip() != '{' || (++p, skip() != '\0'))
      return error("syntax error", row);
    cfgroup *made = cfnewgrp(two.empty() ? "" : one.c_str(), (two.empty() ? one : two).c_str(),
                             cf_grpinst, row);
    cfaddgrp(open, made);
    open = made;
  }

  static void bind(cfgroup *grp) {
    for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it)) {
      if (cfgrp(it))
        bind(cfgrp(it));
      if (!cfrem(it))
        continue;
      long next = cfrem(it)->row;
      cfgroup *run = cfnewgrp("", "", cf_grprem, next), *block = nullptr;
      for (cfchaingrp(it, run); cfrem(it) && cfrem(it)->row == next; ++next)
        cfaddrem(run, cfrem(it)), it = run->link.next;
      if (cfgroup *held = cfgrp(it); held && held->row == next)
        block = cfnewgrp(held->cat, held->name, cf_grpgrp, next), bind(held);
      if (cfparam *par = cfpar(it); par && par->row == next)
        block = cfnewgrp("", par->key, cf_grppar, next);
      if (block)
        cfaddgrp(cfgrp(cfchaingrp(it, block)->prev), run), cflinknd(block, it);
      it = block ? &block->link : &run->link;
    }
  }
};

} // namespace

void read(std::string_view bytes) {
  const kit::meter memory;
  plain_reader plain;
  const kit::tree expected(plain.top);
  plain.read(bytes);
  kit::asking<cflexer> asks(static_cast<int>(bytes.size() % 8));
  for (cflexer *lex : {static_cast<cflexer *>(&asks), static_cast<cflexer *>(nullptr)}) {
    const kit::reading got = kit::read(bytes, lex);
    const kit::tree top(got.top);
    need(got.said == plain.said && got.nrow == plain.row, "every fault is reported with its line");
    need(got.result == got.said.empty(), "a fault makes a reading fail");
    need(kit::dump(got.top) == kit::dump(plain.top), "the tree is as expected");
    check_tree(&got.top->link);
  }
  const kit::tree catalog(cfcatalog(plain.top));
  check_tree(&catalog->link);
  check_catalog(catalog.get());
  for (cfgroup *top : {plain.top, catalog.get()}) {
    kit::asking<cfprinter> prn(static_cast<int>(bytes.size() % 5));
    const string text = kit::print(top);
    need(kit::print(top, &prn) == text, "slots print the same");
    const kit::reading got = kit::read(text);
    const kit::tree again(got.top), sorted(cfcatalog(got.top));
    const bool fits = got.said.find(": line overflow\n") == string::npos; // lines may have grown
    need(!fits || got.result == 1, "what is printed can be read");
    need(!fits || kit::print(top == plain.top ? got.top : sorted.get()) == text, "the same text");
    need(!fits || top != plain.top || !plain.said.empty() ||
             kit::dump(got.top, false) == kit::dump(top, false),
         "the same tree");
  }
}

} // namespace fuzz
