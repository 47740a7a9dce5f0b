// Texts: reading and printing, streams that fail, slots that are replaced.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <unistd.h>

using std::string;
using namespace std::string_literals;

namespace {

string data(const char *name) {
  std::ifstream file(CF_TESTDATA "/" + string(name));
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The outcome of a reading: messages, result, tree.
string outcome(const kit::reading &got) {
  const kit::tree top(got.top);
  const char *const results[] = {"bad ", "good "};
  return got.said + results[got.result] + kit::dump(got.top);
}

} // namespace

TEST(Text, WorkedExample) {
  const string file = data("worked.conf");
  const string tree = "good " + std::regex_replace(data("worked.tree"), std::regex("\n *"), "");
  for (int slot = -1; slot < 8; ++slot) {
    kit::asking<cflexer> lex(slot);
    EXPECT_EQ(outcome(kit::read(file, &lex)), tree);
    EXPECT_TRUE(lex.calls > 0 && !lex.row && lex.nrow == 22 && lex.fd) << "slot " << slot;
    EXPECT_STREQ(lex.fname, "cfg");
  }
  const kit::tree top(kit::read(file).top), catalog(cfcatalog(top.get()));
  const string text = data("worked.out");
  EXPECT_EQ(kit::print(top.get()), text);
  for (int slot = -1; slot < 5; ++slot) {
    size_t size = 0;
    kit::asking<cfprinter> prn(slot);
    prn.answer = [&size](int it) { return size += static_cast<size_t>(it), 0; };
    EXPECT_EQ(kit::print(top.get(), &prn), text);
    EXPECT_TRUE(slot < 0 ? size == text.size() : prn.calls > 0) << "slot " << slot;
    EXPECT_TRUE(prn.valid == 1 && prn.top == top.get() && prn.fname == string("out") && prn.fd);
    EXPECT_EQ(prn.brk, 1 << cf_group | 1 << cf_remark | 1 << cf_param) << "after free remarks";
    EXPECT_TRUE(kit::print(cfcatgetgrp(top.get(), "link", "main"), &prn).starts_with("link"))
        << "the record serves again";
  }
  for (size_t n = 1; n <= 26; ++n) { // the slot of each line fails
    kit::asking<cfprinter> prn;
    prn.answer = [&](int size) { return prn.calls == n ? -7 : size; };
    EXPECT_TRUE(text.starts_with(kit::print(top.get(), &prn)) && prn.calls == n);
    EXPECT_EQ(kit::said(), "E out: write error\n");
  }
  kit::asking<cfprinter> refusing;
  refusing.answer = [](int) { return -1; };
  EXPECT_EQ(kit::print(cfcatgetgrp(top.get(), "link", "main"), &refusing), "link main {\n");
  EXPECT_EQ(kit::said(), "E out: write error\n");
  cfprinter silent{};
  silent.outparam = [](cfprinter *prn, cfparam *) { return prn->valid = 0, 1; };
  kit::print(top.get(), &silent);
  EXPECT_TRUE(silent.valid == 0 && kit::said().empty());
  EXPECT_EQ(kit::print(catalog.get()),
            "link main {\n  speed = 100  # per second\n  tries = 3\n  \n  opts {\n"
            "    mode = fast = safe\n  }\n  depth = \n}\nname = a b  c\n\ntail {\n}\n");
}

TEST(Read, AnApplicationsSyntax) {
  cflexer lex{};
  lex.isremark = [](cflexer *it) { return it->row[0] == ';' || it->row[0] == '!' ? 1 : 0; };
  lex.scanrem = [](cflexer *it) {
    it->valid = it->row[0] == ';' ? it->valid : char{0};
    return cfnewrem("r", it->nrow + 100);
  };
  lex.isgrpbeg = [](cflexer *it) { return it->row[0] == '[' ? 1 : 0; };
  lex.isgrpend = [](cflexer *it) { return !it->row || it->row[0] == '[' ? 1 : 0; };
  lex.scangrp = [](cflexer *it) { return cfnewgrp("c", "n", cf_grpinst, it->nrow); };
  EXPECT_EQ(outcome(kit::read("k=0\n[a]\nk=1\n[b]\n[c]\n;\nk=2", &lex)),
            "good ::@-1(k=0@1, c.n@2(k=1@3), c.n@4, c.n@5([#]@106(#r@106), k=2@7))");
  EXPECT_EQ(outcome(kit::read("!\n", &lex)), "bad ::@-1(#r@101)") << "a slot said so";
  EXPECT_EQ(outcome(kit::read("k=0", &lex)), "good ::@-1(k=0@1)") << "the record serves again";
}

TEST(Read, ScannersOfOddElements) {
  cflexer lex{};
  lex.scanpar = [](cflexer *it) { // the first element, again and again: it moves
    return cfempty(it->top) ? cfnewpar("k", "v", it->nrow) : cfpar(it->top->elem.next);
  };
  lex.scangrp = [](cflexer *it) { // NULL, the root, another root, that one again while it is open
    return it->nrow == 2   ? nullptr
           : it->nrow == 3 ? it->top
           : it->nrow == 4 ? cfnewgrp("", "", cf_grptop, 4)
                           : cfgrp(it->top->elem.prev);
  };
  EXPECT_EQ(outcome(kit::read("a=1\na {\na {\na {\na {\nb=2\n}\n", &lex)),
            "E cfg:2: syntax error\nE cfg:3: syntax error\nE cfg:5: syntax error\n"
            "E cfg:7: group end without begin\nbad ::@-1(::@4(k=v@1))");
}

TEST(Read, StreamsThatFail) {
  const string begin = data("worked.conf"), file = begin + string(5000, 'x') + "\nlast = 1";
  for (size_t at = 0; at <= file.size();
       at += at > begin.size() && at < file.size() - 20 ? 97 : 1) {
    string whole = file.substr(0, file.substr(0, at).rfind('\n') + 1); // a line cut off is dropped
    if (at > begin.size() + 4094 && at <= begin.size() + 5000) // but a line too long is passed over
      whole += file.substr(at);
    const kit::tree expected(kit::read("?\n" + whole).top); // as bare of blocks as after any fault
    kit::asking<cflexer> slots;
    cflexer plain{}, &lex = at % 2 ? slots : plain;
    EXPECT_EQ(cflex(&lex, kit::source(file, at).get(), "cfg"), 0);
    const kit::tree top(lex.top);
    EXPECT_EQ(kit::dump(top.get(), false), kit::dump(expected.get(), false)) << at;
    const string said = kit::said(), last = "E cfg:" + std::to_string(lex.nrow) + ": read error\n";
    EXPECT_TRUE(said.ends_with(last) && said.find("read error") == said.rfind("read error"));
    EXPECT_EQ(said.find("E cfg:22: line overflow\n") == 0, at > begin.size() + 4094) << said;
  }
  const string late = string(16382, '\n') + "k=\n"; // the last byte comes alone
  cflexer lex{};
  EXPECT_EQ(cflex(&lex, kit::source(late, late.size()).get(), "cfg"), 0);
  EXPECT_EQ(kit::dump(kit::tree(lex.top).get()), "::@-1(k=@16383)");
  EXPECT_EQ(kit::said(), "E cfg:16384: read error\n");
}

TEST(Read, NothingAfterAnEndOfFileThatWasSeen) {
  for (const bool asks : {false, true}) {
    const kit::stream file(std::tmpfile(), std::fclose);
    while (std::fgetc(file.get()) != EOF)
      ;
    ASSERT_EQ(pwrite(fileno(file.get()), "k=1\n", 4, 0), 4); // there is more, but the mark stays
    kit::asking<cflexer> slots;
    cflexer plain{}, &lex = asks ? slots : plain;
    EXPECT_EQ(cflex(&lex, file.get(), "cfg"), 1);
    EXPECT_TRUE(cfempty(kit::tree(lex.top).get()) && lex.nrow == 1);
  }
}

TEST(Print, WhatNoFileGives) {
  const string long_text(100'000, 'x');
  const kit::tree top(cfaddpar(cfnewgrp("", "", cf_grptop, -1), cfnewpar("k", "1", 1)));
  cfgroup *blocks = cfaddgrp(cfnewgrp("", "", cf_grppar, 1), cfnewgrp("", "", cf_grprem, 1));
  cfaddrem(cfaddgrp(top.get(), blocks), cfnewrem(long_text.c_str(), 1));
  EXPECT_EQ(kit::print(top.get()), "k = 1\n\n# " + long_text + '\n');
  EXPECT_EQ(kit::print(blocks), "");
}

TEST(Print, StreamsThatFail) {
  const kit::tree top(kit::read(data("worked.conf")).top);
  for (int n = 0; n < 2; ++n) // so that it takes several pieces
    cfaddpar(top.get(), cfnewpar("k", string(3000, 'v').c_str(), 1));
  const string text = kit::print(top.get());
  for (size_t room = 0; room <= text.size(); ++room)
    for (const int buffer : {_IONBF, _IOLBF})
      for (const bool asks : {false, true}) {
        cfprinter plain{};
        kit::asking<cfprinter> slots;
        string out;
        const kit::stream to = kit::sink(out, room);
        std::setvbuf(to.get(), nullptr, buffer, BUFSIZ);
        EXPECT_EQ(cfprint(to.get(), asks ? &slots : &plain, top.get(), "a/b"), room == text.size());
        EXPECT_EQ(kit::said(), room == text.size() ? "" : "E a/b: write error\n");
        EXPECT_EQ(out, text.substr(0, room));
      }
  string out;
  const kit::stream marked = kit::sink(out, 0);
  std::setvbuf(marked.get(), nullptr, _IONBF, 0);
  std::fputc('x', marked.get());
  cfprinter prn{};
  EXPECT_EQ(cfprint(marked.get(), &prn, top.get(), "marked"), 0);
  EXPECT_EQ(kit::said(), "E marked: write error\n");
  EXPECT_EQ(out, text) << "a mark from before counts only at the end";
}
