// Limits: depth and length on a small stack, threads, and messages of one thread.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <future>
#include <gtest/gtest.h>

namespace {

using std::string;

constexpr size_t many = 100'000; // far more than the steps of a recursion that 256 KiB hold

string times(size_t count, const char *line) {
  string all;
  while (count-- > 0)
    all += line;
  return all;
}

/// Reads, copies, compares, prints, catalogs, checks and deletes a tree.
void use(const string &file, bool deep, bool asks) {
  kit::asking<cflexer> lexer;
  kit::asking<cfprinter> printer;
  cfgroup *top = kit::read(file, asks ? &lexer : nullptr).top, *catalog = cfcatalog(top);
  EXPECT_GT(kit::nodes(&top->link).size(), many);
  const kit::tree copy(cfdupgrp(top));
  cfdiff diff{nullptr, nullptr, cf_diffrem, 1};
  EXPECT_EQ(cfdiffnd(cfdiffdfl(&diff), &copy->link, &top->link), 0);
  cfparser parser{};
  EXPECT_EQ(cfparse(&parser, catalog, "f"), 1);
  EXPECT_TRUE(
      kit::said().ends_with(deep ? " f:1: undefined symbol\n" : ":100001: undefined symbol\n"));
  const kit::tree less(kit::read(times(3000, "g{\n") + times(3000, "}\n")).top);
  EXPECT_EQ(kit::print(less.get(), asks ? &printer : nullptr).size(), 3000U * (2 * 2999 + 6));
  cfnode *run = cfgrp(top->elem.next)->elem.next;
  if (!deep)
    cfcatdelnd(cfgrp(run)->elem.next); // a remark with all of its run
  cfcatdelgrp(catalog);
}

TEST(Stack, HoldsAnyDepthAndLength) {
  const string deep = times(many, "g{\n") + times(many, "}\n"), wide = times(many, "#\n") + "k=\n";
  for (const bool asks : {false, true})
    for (const string &file : {deep, wide})
      kit::on_small_stack([&] { use(file, file == deep, asks); });
}

TEST(Threads, ShareWhatTheyOnlyRead) {
  const kit::tree tree(kit::read("# r\nhost alpha {\nport = 80\n}\n").top);
  const kit::tree catalog(cfcatalog(tree.get()));
  const string printed = kit::print(tree.get());
  const auto work = [&] {
    for (int round = 0; round < 100; ++round) {
      cfparam *port = cfcatgetpar(cfcatgetgrp(catalog.get(), "host", "ALPHA"), "port", "80");
      EXPECT_EQ(cfevalpar(port, cfevint) ? cfint(port) : 0, 80) << "that is its value already";
      cfgroup *copy = cfdupgrp(tree.get()), *own = cfcatalog(copy);
      cfdiff diff{nullptr, nullptr, cf_diffrem, 1};
      EXPECT_EQ(cfdiffnd(cfdiffdfl(&diff), &copy->link, &tree->link), 0);
      cfcatdelgrp(own);
      EXPECT_EQ(kit::print(tree.get()), printed);
    }
  };
  work();
  std::future<void> threads[4];
  for (std::future<void> &thread : threads)
    thread = std::async(std::launch::async, work);
}

thread_local string received;
CF_FORMAT void own_emsg(const char *fmt, ...) { received += fmt[0] ? "E" : "?"; }
CF_FORMAT void own_wmsg(const char *fmt, ...) { received += fmt[0] ? "W" : "?"; }

/// Reads, checks and prints with a fault each, and returns the messages.
string messages() {
  const kit::reading got = kit::read("}\nk = 1");
  const kit::tree top(got.top);
  cfparser parser{};
  cfparse(&parser, got.top, "cfg");
  cfprinter prn{};
  prn.outparam = [](cfprinter *, cfparam *) { return -1; };
  kit::print(got.top, &prn);
  return std::exchange(received, "") + got.said + kit::said();
}

TEST(Messages, GoToTheFunctionsOfTheirThread) {
  const struct cfmsgs none = {}, errors = {own_emsg, nullptr, nullptr};
  const struct cfmsgs all = {own_emsg, own_wmsg, [](const char *text) { throw string(text); }};
  const string usual = messages();
  EXPECT_EQ(usual, "E cfg:1: group end without begin\nW cfg:2: undefined symbol\n"
                   "E out: write error\n");
  EXPECT_FALSE(cfmsgs(&errors).emsg) << "none before";
  EXPECT_EQ(messages(), "EEW cfg:2: undefined symbol\n");
  EXPECT_EQ(std::async(std::launch::async, messages).get(), usual) << "of another thread";
  EXPECT_EQ(cfmsgs(&all).emsg, own_emsg);
  EXPECT_EQ(messages(), "EWE");
  EXPECT_THROW(cfmmgr(nullptr).cfmalloc(SIZE_MAX / 4 * 3), string);
  EXPECT_EQ(cfmsgs(nullptr).wmsg, own_wmsg);
  EXPECT_EQ(cfmsgs(&none).fail, all.fail) << "a question changes nothing";
  EXPECT_EQ(messages(), usual);
}

} // namespace
