// diff_test: the comparison of trees and catalogs.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

namespace {

using std::string;

string asked, refused;

/// Leaves out all whose scope begins as told.
int chkscope(const char *scope) {
  asked += scope + string(" ");
  return !string(scope).starts_with(refused);
}

/// Compares both ways round. Gives the result as a digit.
char differ(const cfnode *a, const cfnode *b, unsigned int opt = 0, int (*chk)(const char *) = {}) {
  cfdiff diff{nullptr, chk, opt, 7};
  const int result = cfdiffnd(cfdiffdfl(&diff), b, a);
  asked.clear();
  EXPECT_EQ(cfdiffnd(&diff, a, b), result);
  EXPECT_TRUE(diff.diff == result && diff.opt == opt);
  return static_cast<char>('0' + result);
}

TEST(Comparison, SeesWhatCounts) {
  constexpr unsigned int both = cf_diffrem | cf_diffref;
  const struct {
    const char *a, *b;
    string results; // of trees, with remarks; of catalogs, with targets and their remarks
  } rows[] = {
      {"# note one\nmode = FAST\nhost alpha {\nport = 80\n}\n",
       "# note two\nMODE = fast\nHOST ALPHA {\nport = 80\n}\n", "01 00"},
      {"host alpha {\nport = 80\naddr = x\n}\n", "host alpha {\nport = 81\naddr = x\n}\n", "11 11"},
      {"misc {\na = 1\n}\nb = 2\n", "misc {\na = 1\nb = 2\n}\n", "00 01"},
      {"a = 1\nb = 2\n", "b = 2\na = 1\n", "11 11"},
      {"a = 1\nb = 2\na = 3\n", "a = 1\na = 3\nb = 2\n", "11 00"},
      {"h {\n# x\n\n}\n", "h {\n# X\n}\n", "01 01"}, // a catalog holds no remarks, its targets do
      {"# x\n\na = 1\n", "\n# x\na = 1\n", "00 00"},
      {"# x\n", "", "01 00"},
      {"# x\n# y\n", "# x\n# z\n", "01 00"},
      {"a = 0x10\n", "a = 16\n", "11 11"},
      {"a =\n", "a {\n}\n", "11 11"},
      {"a {\n}\n", "a a {\n}\n", "11 11"},
      {"a a {\n}\n", "a b {\n}\n", "11 11"},
      {"a = 1\n", "a = 1\na = 1\n", "11 11"}};
  for (const auto &[a, b, results] : rows) {
    const kit::tree t1(kit::read(a).top), t2(kit::read(b).top);
    const kit::tree c1(cfcatalog(t1.get())), c2(cfcatalog(t2.get()));
    EXPECT_EQ((string{differ(&t1->link, &t2->link, ~both), differ(&t1->link, &t2->link, both), ' ',
                      differ(&c1->link, &c2->link, ~both), differ(&c1->link, &c2->link, both)}),
              results)
        << a << "against\n"
        << b;
    EXPECT_EQ(differ(&c1->link, &c1->link, both), '0');
    EXPECT_EQ(differ(&t1->link, &c1->link), string(a).find("b = 2\na") == string::npos ? '0' : '1');
  }
}

TEST(Comparison, TakesAnyElement) {
  cfdiff dfl{};
  EXPECT_EQ(cfdiffdfl(&dfl)->chkscope("::any"), 1);
  const kit::tree top(kit::read("# x\n\n# y\n\na = 1\ng {\na = 1\n}\nh {\na = 1\n}\na = 1\n").top);
  cfnode *x = cfgrp(top->elem.next)->elem.next, *y = cfgrp(top->elem.next->next)->elem.next;
  cfnode *a = top->elem.next->next->next, *g = a->next, *h = g->next;
  const kit::tree root(cfcatalog(top.get()));
  cfnode *ref = &cfcatgetpar(root.get(), "a", nullptr)->link;
  const struct {
    const cfnode *a, *b;
    unsigned int opt;
    char result;
  } rows[] = {{nullptr, nullptr, 0, '0'},
              {a, nullptr, 0, '1'},
              {x, y, 0, '0'},
              {x, y, cf_diffrem, '1'},
              {a, x, 0, '1'},
              {a, h->next, 3, '0'},
              {g, h, 0, '1'},
              {ref, a, 1, '0'},
              {ref, a, cf_diffref, '1'},
              {x, &x->group->link, cf_diffrem, '0'}};
  for (const auto &[one, other, opt, result] : rows)
    EXPECT_EQ(differ(one, other, opt), result);
  cfgrp(g)->type = cfgrp(h)->type = cf_grptop;
  EXPECT_EQ(differ(g, h), '0') << "of a top group only what it holds counts";
}

TEST(Comparison, AsksWhatTakesPart) {
  const struct {
    const char *a, *b, *refused, *asked;
    char result;
  } rows[] = {{"host alpha {\nport = 80\naddr = x\n}\n", "host alpha {\nport = 81\naddr = x\n}\n",
               "host::port",
               "::alpha.host:: ::alpha.host:: host::port host::addr host::port host::addr ", '0'},
              {"keep = 1\nx {\ny = 1\n}\n", "# r\nkeep = 1\n", "::x", "::keep ::keep ::x. ", '0'},
              {"Keep = 1\n", "KEEP = 1\n", "::Keep", "::Keep ::KEEP ", '1'}};
  for (const auto &[a, b, out, scopes, result] : rows) {
    const kit::tree t1(kit::read(a).top), t2(kit::read(b).top);
    refused = out;
    EXPECT_EQ(differ(&t1->link, &t2->link, 0, chkscope), result);
    EXPECT_EQ(asked, scopes);
    refused = "::";
    EXPECT_EQ(differ(t1->elem.next, t2->elem.prev, 0, chkscope), '0') << "two that are left out";
    EXPECT_EQ(differ(t1->elem.next, nullptr, 0, chkscope), '1');
  }
}

} // namespace
