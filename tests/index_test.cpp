// The index: operations find the same with it and without it, and it needs little memory.
// SPDX-License-Identifier: MIT
#include "node/index.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>

namespace {

using std::string;
using std::to_string;

std::mt19937 chance;
unsigned upto(size_t n) { return static_cast<unsigned>(chance() % n); }
const char *text() { // some of them are equal in some locales
  constexpr const char *texts[] = {"",     "a",    "A",    "b",    "i",  "I",
                                   "\xdd", "\xfd", "\xe4", "\xc4", "one"};
  return texts[upto(std::size(texts))];
}

long row; // tells elements apart

/// Adds elements of all kinds. Blocks and levels are also in places where no file and no catalog
/// has them.
cfgroup *fill(cfgroup *grp, unsigned elements, unsigned depth) {
  for (; elements > 0; --elements)
    if (const unsigned kind = upto(depth > 0 ? 8 : 4); kind < 3)
      cfaddpar(grp, cfnewpar(text(), "1", ++row));
    else if (kind == 3)
      cfaddrem(grp, cfnewrem("", ++row));
    else
      cfaddgrp(grp, fill(cfnewgrp(text(), text(), upto(2) ? cf_grpinst : cfgroup_t(upto(7)), ++row),
                         upto(16), depth - 1));
  return grp;
}
cfgroup *tree(cfgroup_t kind) { return fill(cfnewgrp(text(), text(), kind, ++row), upto(24), 2); }

string dump(cfgroup *grp) {
  string out = to_string(grp->row) + grp->cat + '/' + grp->name + '{';
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
    out += cfgrp(it)   ? dump(cfgrp(it))
           : cfpar(it) ? to_string(cfpar(it)->row) + cfpar(it)->key
                       : "";
  return out + '}';
}

string reports;
void report(const char *, ...) { reports += '!'; }
string check(cfgroup *top) {
  constexpr struct cfmsgs sink = {report, nullptr, nullptr};
  const struct restored {
    struct cfmsgs former;
    ~restored() { cfmsgs(&former); }
  } guard = {cfmsgs(&sink)};
  cfparser parser = {};
  parser.scopedef = [](const char *scope) {
    static cfscope definition;
    definition.multi = string(scope).size() % 4 == 0;
    reports.append(scope) += '\n';
    return &definition;
  };
  cfparse(&parser, top, "f");
  return std::exchange(reports, "");
}

/// The results of all operations that search, on a random tree.
string outcome(unsigned seed, ptrdiff_t threshold) {
  const ptrdiff_t usual = std::exchange(cfcore::index_threshold, threshold);
  chance.seed(seed);
  row = 0;
  cfgroup *top = tree(cfgroup_t(upto(7))), *lower = cfcatalog(top), *upper = cfcatalog(lower);
  cfcataddgrp(upper, tree(cf_grpinst));
  cfcataddgrp(upper, tree(cf_grpgrp)); // its contents are filed one by one
  if (cfgroup *ref = cfcatgetgrp(upper, nullptr, nullptr))
    cfcatxcgnd(&ref->link, &tree(cf_grpinst)->link);
  fill(upper, upto(5), 1); // plain elements among levels
  cfcataddgrp(upper, tree(cf_grppar));
  const string out = dump(lower) + dump(upper) + check(top) + check(lower) + check(upper);
  for (cfgroup *each : {upper, lower, top})
    cfdelgrp(each);
  cfcore::index_threshold = usual;
  return out;
}

TEST(Index, ChangesNoResult) {
  std::setlocale(LC_ALL, std::getenv("CF_LOCALE") ? std::getenv("CF_LOCALE") : "C");
  const char *rounds = std::getenv("CF_ROUNDS");
  for (unsigned seed = 0; seed < (rounds ? std::strtoul(rounds, nullptr, 10) : 500); ++seed) {
    const string plain = outcome(seed, PTRDIFF_MAX);
    ASSERT_TRUE(plain == outcome(seed, 0) && plain == outcome(seed, 5)) << seed;
  }
}

size_t live, most, fails_at; // bytes; the allocation from now that throws
void *take(size_t size) {
  if (fails_at > 0 && --fails_at == 0)
    throw std::bad_alloc();
  most = std::max(most, live += size);
  size_t *block = static_cast<size_t *>(std::malloc(size + 16));
  *block = size;
  return block + 2;
}
void give(void *block) {
  live -= static_cast<size_t *>(block)[-2];
  std::free(static_cast<size_t *>(block) - 2);
}

TEST(Index, TakesLittleMemoryAndGivesItBack) {
  const struct cfmmgr counting = {take, give}, former = cfmmgr(&counting);
  for (const unsigned n : {25U, 100U, 20000U}) {
    cfgroup *top = cfnewgrp("", "", cf_grptop, -1);
    for (unsigned i = 0; i < n; ++i) {
      const string name = to_string(i);
      cfaddpar(top, cfnewpar(string("key").append(name).c_str(), "", 1));
      cfaddgrp(top, cfnewgrp(string("c").append(name).c_str(), name.c_str(), cf_grpinst, 1));
    }
    const size_t before = most = live;
    EXPECT_EQ(check(top).find('!'), string::npos);
    EXPECT_LE(most - before, n == 25 ? 0 : 2 * n * 64);
    for (size_t at = 1; at < 12; ++at) {
      fails_at = at;
      try {
        check(top);
        cfdelgrp(cfcatalog(top));
      } catch (const std::bad_alloc &) {
      }
      EXPECT_EQ(live, before) << at;
    }
    fails_at = 0;
    cfdelgrp(top);
  }
  cfmmgr(&former);
}

} // namespace
