// Catalogs: their shape, and edits through them by example.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace {

using std::string;

string shape(const cfgroup *grp) { return kit::dump(grp, false); }

const char *const worked = "# r\nh a {\np = 1\n# s\np = 2\nd {\nq = 3\n}\n}\nh b {\n}\nt = 4\n";

TEST(Catalog, HasItsShape) {
  const std::pair<const char *, const char *> rows[] = {
      {worked, "*::(h:(a/(*h.a(p=(*p=1, *p=2), d/(*.d(q=(*q=3))))), b/(*h.b)), t=(*t=4))"},
      {"h h {\n}\nh {\n}\nh = 1\n", "*::(h:(h/(*h.h)), h/(*.h), h=(*h=1))"},
      {"h a {\nk = 1\n}\nH A {\nK = 2\n}\nk = 3\n# r\nk = 4\n",
       "*::(h:(a/(*h.a(k=(*k=1)), *H.A(K=(*K=2)))), k=(*k=3, *k=4))"}};
  for (const auto &[file, wanted] : rows) {
    const kit::tree top(kit::read(file).top), root(cfcatalog(top.get()));
    const kit::tree upper(cfcatalog(root.get()));
    EXPECT_EQ(shape(root.get()), wanted);
    EXPECT_EQ(shape(upper.get()), wanted);
  }
  const kit::tree top(kit::read("a {\nb = 2\n}\nh b {\n}\nk = 1\n").top);
  for (const char *cat : {"", "h", "x"}) // what no file gives
    cfaddgrp(top.get(), cfnewgrp(cat, "", cf_grpinst, 1));
  cfaddrem(cfaddpar(top.get(), cfnewpar("", "v", 1)), cfnewrem("", 1));
  const kit::tree root(cfcatalog(top.get())), part(cfcatalog(cfgrp(top->elem.next)));
  EXPECT_EQ(shape(root.get()),
            "*::(a/(*.a(b=(*b=2)), *.), h:(b/(*h.b, *h.)), k=(*k=1, *=v), x:(:(*x.)))");
  EXPECT_EQ(shape(part.get()), "*.a(b=(*b=2))") << "an instance is its own source";
}

using edit = cfnode *(*)(cfnode *, cfnode *);
const std::map<string, edit> edits = {
    {"addgrp", [](cfnode *c, cfnode *e) { return &cfcataddgrp(cfgrp(c), cfgrp(e))->link; }},
    {"addpar", [](cfnode *c, cfnode *e) { return &cfcataddpar(cfgrp(c), cfpar(e))->link; }},
    {"setgrp", [](cfnode *c, cfnode *e) { return &cfcatsetgrp(cfgrp(c), cfgrp(e))->link; }},
    {"setpar", [](cfnode *c, cfnode *e) { return &cfcatsetpar(cfgrp(c), cfpar(e))->link; }},
    {"xcg", cfcatxcgnd},
    {"clr", [](cfnode *c, cfnode *) { return &cfcatclrgrp(cfgrp(c))->link; }},
    {"del", [](cfnode *c, cfnode *) {
       cfgrp(c) ? cfcatdelgrp(cfgrp(c)) : cfpar(c) ? cfcatdelpar(cfpar(c)) : cfcatdelnd(c);
       return c;
     }}};

// Calls on the tree of `worked` and its catalog. `at` is the element that is edited. `elem` is the
// new element: a file, with "/" for line ends, or the word of an element of the tree. `held` lists
// parts of the dumps of tree and catalog after the call, `released` the blocks that were released.
const struct {
  const char *call, *at, *elem, *result, *held, *released;
} examples[] = {
    {"addpar", "p=", "o = 5", "*o=5", "q=3), o=5);d/(*.d(q=(*q=3))), o=(*o=5))", ""},
    {"addgrp", "a/", "h c {/p = 6/}", "*h.c", "b/(*h.b), c/(*h.c(p=(*p=6))))", ""},
    {"addgrp", "b/", "g x {/}", "*g.x", "t=(*t=4), g:(x/(*g.x))", ""},
    {"addgrp", "d/", "x {/}", "*.x", "d/(*.d(q=(*q=3))), x/(*.x))", ""},
    {"addgrp", "*::", "# s/h c {/k = 8/}", "*::", "t=4, [h.c];c/(*h.c(k=(*k=8)))", ""},
    {"addpar", "a/", "x = 7", "x=7", "q=3)))), x=7)", ""},
    {"addgrp", "p=", "x {/}", ".x", "*p=2, .x)", ""},
    {"addgrp", "*h.a", "h.b", "*h.b", "q=3), h.b)), t=4;h:(b/(*h.b))", ""},
    {"setpar", "*h.a", "P = 9", "*P=9", "(P=9, [p=];p=(*P=9, *p=2)", "p=1"},
    {"setpar", "*h.a", "*p=1", "*p=1", "(p=1, [p=];p=(*p=1, *p=2)", ""},
    {"setgrp", "*::", "H A {/x = 1/}", "*H.A", "[h.a]([#](#r), H.A(x=1)), h.b;a/(*H.A(x=(*x=1)))",
     "q=3 .d p=2 #s [#] [p=] p=1 h.a *q=3 q= *.d d/ *p=2 *p=1 p="},
    {"setgrp", "*::", "b {/}", "*.b", "t=(*t=4), b/(*.b)", ""},
    {"setpar", "h:", "x = 1", "x=1", "b/(*h.b), x=1)", ""},
    {"xcg", "*p=2", "o = 2", "*o=2", "[p=]([#](#s), o=2);p=(*p=1, *o=2)", "p=2"},
    {"xcg", "*h.a", ".d", "*.d", "[h.a]([#](#r), .d(q=3)), h.b;a/(*.d(q=(*q=3))), b/",
     "p=2 #s [#] [p=] p=1 h.a *q=3 q= *.d d/ *p=2 *p=1 p="},
    {"xcg", "*h.a", "h.a", "*h.a", "", "*q=3 q= *.d d/ *p=2 *p=1 p="},
    {"xcg", "b/", "g {/}", ".g", "h.b, t=4;.g), t=", "*h.b b/"},
    {"xcg", "*::", "g {/z = 1/}", "*.g", "",
     "t=4 h.b q=3 .d p=2 #s [#] [p=] p=1 h.a #r [#] [h.a] :: *t=4 t= *h.b b/ *q=3 q= *.d d/ *p=2 "
     "*p=1 p= *h.a a/ h:"},
    {"xcg", "*p=1", "g {/}", "none", "", ""},
    {"del", "*p=2", "", "", "h.a(p=1, .d;p=(*p=1), d/", "*p=2 [#] #s [p=] p=2"},
    {"del", "*t=4", "", "", "h.b;b/(*h.b)), t=", "*t=4 t=4"},
    {"del", "*h.a", "", "", "h.b, t=4;h:(a/, b/(*h.b))",
     "*q=3 q=3 q= *.d .d d/ *p=2 p=2 *p=1 p=1 p= *h.a [#] #r [h.a] [p=] [#] #s h.a"},
    {"clr", "*h.a", "", "*h.a", "[h.a]([#](#r), h.a), h.b;a/(*h.a), b/",
     "*q=3 q=3 q= *.d .d d/ *p=2 [#] #s [p=] p=2 *p=1 p=1 p="},
    {"clr", "*::", "", "*::", "; ",
     "*t=4 t=4 t= *h.b h.b b/ *q=3 q=3 q= *.d .d d/ *p=2 p=2 *p=1 p=1 p= *h.a [#] #r [h.a] [p=] "
     "[#] #s h.a a/ h:"},
    {"del", "*::", "", "", "",
     "*t=4 t=4 t= *h.b h.b b/ *q=3 q=3 q= *.d .d d/ *p=2 p=2 *p=1 p=1 p= *h.a h.a a/ h: *:: [h.a] "
     "[p=] [#] #s [#] #r ::"},
    {"del", "#r", "", "", "[h.a](h.a(", "[#] #r"},
    {"del", "h.a", "", "", "h.b, t=4;", "[#] #r [h.a] q=3 .d [p=] p=2 [#] #s p=1 h.a"},
    {"clr", "[p=]", "", "[p=]", "p=1, [p=], .d", "p=2 [#] #s"},
    {"clr", "[#]", "", "[#]", "[h.a]([#], h.a", "#r"}};

TEST(Edit, DoesAsTheExamples) {
  for (const auto &[call, at, elem, result, held, released] : examples) {
    SCOPED_TRACE(call + string(" ") + at + ", " + elem);
    kit::meter memory;
    string file = elem;
    for (char &c : file)
      c = c == '/' ? '\n' : c;
    const kit::tree added(kit::read(file).top);
    kit::said();
    cfgroup *top = kit::read(worked).top, *root = cfcatalog(top);
    std::map<const void *, string> words;
    std::map<string, cfnode *> nodes;
    for (const cfgroup *grp : {top, root})
      for (cfnode *nd : kit::nodes(&grp->link))
        nodes.emplace(words[nd] = kit::word(nd), nd);
    cfnode *e = nodes.contains(elem) ? nodes[elem] : added->elem.next;
    cfnode *got = edits.at(call)(nodes.at(at), e);
    EXPECT_EQ(!*result ? "" : got ? kit::word(got) : "none", result);
    string gone;
    for (const void *block : memory.released)
      if (words.contains(block))
        gone += (gone.empty() ? "" : " ") + words[block];
    EXPECT_EQ(gone, released);
    const string all =
        memory.alive(root) && memory.alive(top) ? shape(top) + "; " + shape(root) : "";
    std::istringstream parts(held);
    for (string part; std::getline(parts, part, ';');)
      EXPECT_NE(all.find(part), string::npos) << part << "\n" << all;
    for (cfgroup *grp : {root, top})
      if (memory.alive(grp))
        cfdelgrp(grp);
    if (e != &added->elem && memory.alive(e) && !e->group)
      cfdelnd(e);
  }
}

TEST(Edit, TakesWhatNoCatalogHolds) {
  const kit::meter memory;
  const kit::tree top(cfaddrem(cfnewgrp("", "", cf_grptop, -1), cfnewrem("old", 1)));
  cfremark *ref = cfnewrem("", 0), *nd = cfnewrem("new", 2);
  cfinitrefnd(&ref->link, top->elem.next, nullptr);
  EXPECT_EQ(cfcatxcgnd(&ref->link, &nd->link), &ref->link);
  EXPECT_TRUE(ref->link.ref == &nd->link && ref->row == 2 && ref->txt == nd->txt);
  EXPECT_EQ(shape(top.get()), "::(#new)");
  cfdelrem(ref);
  const kit::tree empty(cfnewgrp("", "", cf_grptop, -1)), keys(cfcatalog(empty.get()));
  for (const char *val : {"1", "2"}) // an empty key names no element to replace
    cfcatsetpar(keys.get(), cfnewpar("", val, 1));
  EXPECT_EQ(shape(keys.get()), "*::(=(*=1, *=2))");
  cfgroup *level = cfnewgrp("", "l", cf_grpcat, 1); // the way up from it leads through it
  cfaddgrp(top.get(), cfaddgrp(cfnewgrp("", "g", cf_grpinst, 1), level));
  const kit::tree root(cfcatalog(level));
  EXPECT_EQ(cfcataddgrp(root.get(), level), root.get());
  EXPECT_EQ(shape(top.get()), "::(#new, .g(l/))");
  const kit::tree tree(kit::read("h a {\n}\n").top), lower(cfcatalog(tree.get()));
  level = cfgrp(lower->elem.next);
  const kit::tree upper(cfcatalog(level));
  EXPECT_EQ(cfcataddgrp(upper.get(), level), upper.get());
  EXPECT_TRUE(tree->elem.prev == &level->link && cfcatgetgrp(lower.get(), "h", "a"));
}

TEST(Edit, ThroughStackedCatalogs) {
  kit::meter memory;
  cfgroup *top = kit::read("k = 1\nl = 2\nb = 3").top, *lower = cfcatalog(top),
          *upper = cfcatalog(lower);
  // Exchanging a reference for an element of its own chain changes nothing, even repeatedly.
  cfparam *k = cfcatgetpar(lower, "k", nullptr), *ref = cfcatgetpar(upper, "k", nullptr);
  for (int n = 0; n < 2; ++n) {
    EXPECT_EQ(cfcatxcgnd(&ref->link, &k->link), &ref->link);
    EXPECT_TRUE(ref->link.ref == &k->link && k->link.ref == top->elem.next);
    EXPECT_EQ(cfcatsetpar(upper, ref), ref);
  }
  memory.countdown = 1;
  EXPECT_THROW(cfcatdelpar(ref), kit::thrown) << "a release does, and all is released";
  EXPECT_EQ(shape(top), "::(l=2, b=3)");
  EXPECT_EQ(shape(upper), "*::(k=, l=(*l=2), b=(*b=3))");
  cfcataddpar(upper, cfnewpar("K", "4", 1));
  EXPECT_EQ(shape(lower), "*::(k=(*K=4), l=(*l=2), b=(*b=3))") << "the empty level serves again";
  // If a block is added, its elements are filed in each catalog, in the order of the tree.
  cfgroup *block = cfaddpar(cfnewgrp("", "", cf_grppar, 1), cfnewpar("b", "5", 1));
  EXPECT_EQ(cfcataddgrp(upper, cfaddpar(block, cfnewpar("b", "6", 1))), upper);
  EXPECT_EQ(shape(upper), "*::(k=(*K=4), l=(*l=2), b=(*b=3, *b=5, *b=6))");
  cfcatdelgrp(upper);
}

} // namespace
