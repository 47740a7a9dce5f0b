// Reader: trees and their blocks, faults of files and streams, slots that misbehave, sizes.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

#include <algorithm>

using std::string;

namespace {

/// A record whose slots call the defaults and may then change the answer or leave.
struct meddler : cflexer {
  cflexer dfl{};
  size_t calls = 0, leaves = 0; ///< the call that leaves by an exception; 0: none
  std::function<int(int)> answer = [](int yes) { return yes; };
  std::function<bool()> withheld = [] { return false; }; ///< does a scanner give NULL?

  template <auto... Slots> void meddle(int only, int slot = 0) {
    ((only < 0 || only == slot++ ? void(this->*Slots = through<Slots>) : void()), ...);
  }
  explicit meddler(int only = -1) : cflexer{} { ///< in all slots or in one
    cflexdfl(&dfl);
    meddle<&cflexer::isempty, &cflexer::isremark, &cflexer::isgrpbeg, &cflexer::isgrpend,
           &cflexer::isparam, &cflexer::scanrem, &cflexer::scangrp, &cflexer::scanpar>(only);
  }
  template <auto Slot> static auto through(cflexer *lex) {
    auto *it = static_cast<meddler *>(lex);
    if (++it->calls == it->leaves)
      throw kit::out();
    return it->pass((it->dfl.*Slot)(lex));
  }
  int pass(int yes) { return answer(yes); }
  template <class Element> Element *pass(Element *elem) {
    if (withheld())
      cfdelnd(&std::exchange(elem, nullptr)->link);
    return elem;
  }
};

/// What became of a file: messages, result, tree.
string outcome(const kit::reading &got) {
  const kit::tree top(got.top);
  kit::checktree(got.top);
  return got.said +
         (got.result == 1   ? "good\n"
          : got.result == 0 ? "bad\n"
                            : "?\n") +
         kit::dump(got.top);
}

const char *const spoilt = "# r\na {\n?\n}\n}\n# s\nb=1\nb {\nc {\n";

} // namespace

TEST(Reader, TreesAndFaults) {
  const struct {
    string file, outcome;
  } table[] = {
      {kit::data("worked.conf"), "good\n" + kit::data("worked.tree")},
      {"", "good\ntop -1\n"},
      {"\n\n", "good\ntop -1\n"},
      {"# a\n\n# b\n# c\nk = 1",
       "good\ntop -1\n  run 1\n    remark 1 'a'\n  blockpar 5 '' 'k'\n    run 3\n"
       "      remark 3 'b'\n      remark 4 'c'\n    param 5 'k' '1'\n"},
      {"# s\nh {\n# t\nn = 1\n# u\n}\nk=\n# x\nl=\n# y\ng{\n}\n# v\n# w\n",
       "good\ntop -1\n  blockgrp 2 '' 'h'\n    run 1\n      remark 1 's'\n    inst 2 '' 'h'\n      "
       "blockpar 4 '' 'n'\n"
       "        run 3\n          remark 3 't'\n        param 4 'n' '1'\n      run 5\n        "
       "remark 5 'u'\n"
       "  param 7 'k' ''\n  blockpar 9 '' 'l'\n    run 8\n      remark 8 'x'\n    param 9 'l' ''\n "
       " blockgrp 11 '' 'g'\n"
       "    run 10\n      remark 10 'y'\n    inst 11 '' 'g'\n  run 13\n    remark 13 'v'\n    "
       "remark 14 'w'\n"},
      {"a {\n  bad line\n  x = 1\n}\n}\nb {\n",
       "E cfg:2: syntax error\nE cfg:5: group end without begin\nE cfg:6: group begin without "
       "end\nbad\n"
       "top -1\n  inst 1 '' 'a'\n    param 3 'x' '1'\n  inst 6 '' 'b'\n"},
      {string(5000, 'x') + "\nk = 1", "E cfg:1: line overflow\nbad\ntop -1\n  param 2 'k' '1'\n"},
      {"a {\nb {",
       "E cfg:2: group begin without end\nbad\ntop -1\n  inst 1 '' 'a'\n    inst 2 '' 'b'\n"},
      {"a {\nb {\n}",
       "E cfg:1: group begin without end\nbad\ntop -1\n  inst 1 '' 'a'\n    inst 2 '' 'b'\n"},
      {"}\n# r\nk=1\n}", "E cfg:1: group end without begin\nE cfg:4: group end without begin\nbad\n"
                         "top -1\n  remark 2 'r'\n  param 3 'k' '1'\n"}};
  for (const auto &[file, expected] : table) {
    EXPECT_EQ(outcome(kit::read(file)), expected);
    for (int slot = -1; slot < 8; ++slot) {
      meddler lex(slot);
      EXPECT_EQ(outcome(kit::read(file, "cfg", &lex)), expected);
      EXPECT_TRUE(!lex.row && string(lex.fname) == "cfg" && lex.fd);
      EXPECT_EQ(lex.nrow, std::count(file.begin(), file.end(), '\n') +
                              (file.empty() || file.back() == '\n' ? 1 : 2));
      EXPECT_TRUE(lex.calls > 0 || &file != &table[0].file) << "slot " << slot << " was not asked";
    }
  }
}

TEST(Reader, AnApplicationsSyntax) {
  cflexer lex{};
  lex.isremark = [](cflexer *it) { return it->row[0] == ';' || it->row[0] == '!' ? 1 : 0; };
  lex.scanrem = [](cflexer *it) {
    it->valid = it->row[0] == ';' ? it->valid : char{0};
    return cfnewrem("r", it->nrow + 100);
  };
  lex.isgrpbeg = [](cflexer *it) { return it->row[0] == '[' ? 1 : 0; };
  lex.isgrpend = [](cflexer *it) { return !it->row || it->row[0] == '[' ? 1 : 0; };
  lex.scangrp = [](cflexer *it) { return cfnewgrp("c", "n", cf_grpinst, it->nrow); };
  EXPECT_EQ(
      outcome(kit::read("k=0\n[a]\nk=1\n[b]\n[c]\n;\nk=2", "cfg", &lex)),
      "good\ntop -1\n  param 1 'k' '0'\n  inst 2 'c' 'n'\n    param 3 'k' '1'\n  inst 4 'c' 'n'\n"
      "  inst 5 'c' 'n'\n    run 106\n      remark 106 'r'\n    param 7 'k' '2'\n");
  EXPECT_EQ(outcome(kit::read("!\n", "cfg", &lex)), "bad\ntop -1\n  remark 101 'r'\n")
      << "a slot said so";
  EXPECT_EQ(outcome(kit::read("k=0", "cfg", &lex)), "good\ntop -1\n  param 1 'k' '0'\n")
      << "the record serves again";
}

TEST(Reader, ScannersOfOddElements) {
  cflexer lex{};
  lex.scanpar = [](cflexer *it) { // one parameter, again and again: it moves
    cfnode *nd = cfseekpar(it->top->elem.next, nullptr, nullptr);
    return cfend(nd) ? cfnewpar("k", "v", it->nrow) : cfpar(nd);
  };
  lex.scangrp =
      [](cflexer *it) { // never a group of the configuration: NULL, the root, another root
        return it->nrow == 4   ? nullptr
               : it->nrow == 5 ? it->top
                               : cfnewgrp("", "", cf_grptop, it->nrow);
      };
  EXPECT_EQ(outcome(kit::read("a=1\n# r\n\na {\na {\na {\nb=2\n}\n", "cfg", &lex)),
            "E cfg:4: syntax error\nE cfg:5: syntax error\nE cfg:8: group end without begin\nbad\n"
            "top -1\n  remark 2 'r'\n  top 6\n    param 1 'k' 'v'\n");
}

TEST(Reader, StreamsThatBreak) {
  const kit::meter meter;
  const string begin = kit::data("worked.conf"), file = begin + string(5000, 'x') + "\nlast = 1";
  for (size_t at = 0; at <= file.size();
       at += at > begin.size() && at < file.size() - 20 ? 97 : 1) {
    string whole = file.substr(0, file.substr(0, at).rfind('\n') + 1); // a line cut off is dropped
    if (at > begin.size() + 4094 && at <= begin.size() + 5000) // but a line too long is passed over
      whole += file.substr(at);
    const kit::tree expected(kit::read("?\n" + whole).top); // as bare of blocks as after any fault
    meddler slots;
    cflexer plain{}, &lex = at % 2 ? slots : plain;
    EXPECT_EQ(cflex(&lex, kit::source(file, at).get(), "cfg"), 0);
    const kit::tree top(lex.top);
    EXPECT_EQ(kit::dump(top.get(), false), kit::dump(expected.get(), false)) << at;
    const string said = kit::said(), last = "E cfg:" + std::to_string(lex.nrow) + ": read error\n";
    EXPECT_TRUE(said.ends_with(last) && said.find("read error") == said.rfind("read error"))
        << said;
    EXPECT_EQ(said.find("E cfg:22: line overflow\n") == 0, at > begin.size() + 4094) << said;
  }
  const string late = string(16382, '\n') + "k=\n"; // the last byte comes alone
  cflexer lex{};
  EXPECT_EQ(cflex(&lex, kit::source(late, late.size()).get(), "cfg"), 0);
  EXPECT_EQ(kit::dump(kit::tree(lex.top).get()), "top -1\n  param 16383 'k' ''\n");
  EXPECT_EQ(kit::said(), "E cfg:16384: read error\n");
}

TEST(Reader, SlotsAndManagersThatLeave) {
  const string files[] = {kit::data("worked.conf"), spoilt};
  kit::meter meter;
  for (const string &file : files) {
    meddler lex;
    cflexer plain{};
    const auto expect_whole = [&](cflexer &it) {
      if (it.top)
        kit::checktree(it.top);
      cfdelgrp(std::exchange(it.top, nullptr));
      kit::said();
    };
    const auto read = [&](cflexer &it) {
      return meter.leave_at_each([&] { kit::read(file, "cfg", &it); }, [&] { expect_whole(it); });
    };
    const size_t blocks = read(plain);
    EXPECT_EQ(blocks, file == spoilt ? 1U + 6 : 1U + 15 + 8) << "one for each element";
    EXPECT_EQ(read(lex), blocks);
    for (lex.calls = 0, lex.leaves = 1; lex.calls + 1 >= lex.leaves; ++lex.leaves) {
      lex.calls = 0;
      try {
        kit::read(file, "cfg", &lex);
      } catch (const kit::out &) {
      }
      expect_whole(lex);
    }
    EXPECT_GT(lex.leaves, 20U);
  }
}

TEST(Reader, SlotsOfAnyAnswer) {
  int (*cflexer::*const kinds[])(cflexer *) = {&cflexer::isempty, &cflexer::isremark,
                                               &cflexer::isgrpbeg, &cflexer::isgrpend,
                                               &cflexer::isparam};
  std::mt19937 rng(1);
  for (int round = 0; round < 3000; ++round) {
    const kit::meter meter;
    meddler lex;
    const auto odds = rng() % 5;
    lex.answer = [&](int yes) { return rng() % 4 < odds ? static_cast<int>(rng() % 3) - 1 : yes; };
    lex.withheld = [&] { return rng() % 16 < odds; };
    lex.leaves = rng() % 200;
    if (round % 4 == 0)
      lex.*kinds[rng() % 5] = [](cflexer *) { return 1; };
    try {
      kit::read(round % 2 ? kit::random_file(rng) : spoilt, "cfg", &lex);
    } catch (const kit::out &) {
    }
    kit::checktree(lex.top);
    cfdelgrp(lex.top);
    kit::said();
  }
}

TEST(Reader, DepthAndLengthNeedNoStack) {
  constexpr size_t many = 1000000;
  string files[2];
  for (size_t i = 0; i < many; ++i) {
    files[0] += "a{\n";
    files[1] += "#\n";
  }
  for (size_t i = 0; i < many; ++i)
    files[0] += "}\n";
  kit::on_small_stack([&] {
    for (const size_t way : {0U, 1U, 2U, 3U}) { // with and without a slot of one's own
      const size_t run = way / 2;               // the remarks are held by a block
      const kit::meter meter;
      meddler slots;
      const kit::reading got = kit::read(files[run], "cfg", way % 2 ? &slots : nullptr);
      const kit::tree top(got.top);
      EXPECT_TRUE(got.result == 1 && meter.live() == 1 + many + run);
      const kit::tree copy(cfdupgrp(got.top));
      EXPECT_EQ(meter.live(), 2 * (1 + many + run));
      kit::checktree(copy.get());
      EXPECT_TRUE(cfempty(cfclrgrp(got.top)) && meter.live() == 1 + many + run + 1);
    }
  });
}
