// Threads: many that read one tree, many with trees of their own.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <future>
#include <gtest/gtest.h>

namespace {

using std::string;

/// Runs `task` in some threads at once, each time with another number.
void inthreads(void (*task)(unsigned int)) {
  std::vector<std::future<void>> threads;
  for (unsigned int n = 0; n < 4; ++n)
    threads.push_back(std::async(std::launch::async, task, n));
  for (std::future<void> &thread : threads)
    thread.get();
}

/// Checks a tree; what is named port or size is evaluated.
int check(cfgroup *top) {
  cfparser parser{};
  parser.scopedef = [](const char *scope) {
    static cfscope number{"", cfevint, 1}, text{"", nullptr, 1};
    return string(scope).ends_with("port") || string(scope).ends_with("size") ? &number : &text;
  };
  return cfparse(&parser, top, "cfg");
}

kit::tree tree, catalog;
string printed;

TEST(Threads, ReadOneTreeWithItsCatalog) {
  tree.reset(kit::read(kit::data("worked.conf") + "host alpha {\nport = 80\n}\n").top);
  catalog.reset(cfcatalog(tree.get()));
  ASSERT_EQ(check(catalog.get()), 1);
  printed = kit::print(tree.get());
  inthreads([](unsigned int) {
    for (int round = 0; round < 100; ++round) {
      cfparam *port = cfcatgetpar(cfcatgetgrp(catalog.get(), "host", "ALPHA"), "port", "80");
      EXPECT_EQ(cfint(port), 80);
      EXPECT_EQ(cfevalpar(port, cfevint), 1) << "that is its value already";
      const kit::tree copy(cfdupgrp(tree.get()));
      cfdiff diff{nullptr, nullptr, cf_diffrem, 1};
      EXPECT_EQ(cfdiffnd(cfdiffdfl(&diff), &copy->link, &tree->link), 0);
      EXPECT_EQ(kit::print(tree.get()), printed);
    }
  });
  catalog.reset();
  tree.reset();
}

TEST(Threads, HaveTreesOfTheirOwn) {
  inthreads([](unsigned int n) {
    std::mt19937 rng(n);
    for (int round = 0; round < 50; ++round) {
      cfgroup *top = kit::read(kit::random_file(rng)).top, *root = cfcatalog(top);
      check(root);
      cfcatsetgrp(root, cfaddpar(cfnewgrp("host", "own", cf_grpinst, 1), cfnewpar("port", "1", 1)));
      cfcatdelgrp(cfcatgetgrp(root, nullptr, nullptr));
      const kit::tree again(kit::read(kit::print(top)).top);
      EXPECT_EQ(kit::dump(again.get(), false), kit::dump(top, false));
      cfcatdelgrp(root);
    }
  });
}

} // namespace
