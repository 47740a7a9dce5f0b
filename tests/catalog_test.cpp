// catalog_test: catalogs made, searched and stacked; and sizes that no stack carries.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using std::string;

/// A node as its texts: "cat:", "name/" and "key=" of levels, "*" before those of a reference.
string text(cfnode *nd) {
  if (const cfparam *par = cfpar(nd))
    return (nd->ref ? "*" : "") + string(par->key) + '=' + par->val;
  const cfgroup *grp = cfgrp(nd);
  return !grp                       ? "-"
         : grp->type == cf_grpval   ? string(grp->name) + '='
         : grp->type != cf_grpcat   ? (nd->ref ? "*" : "") + string(grp->cat) + ' ' + grp->name
         : *grp->cat || !*grp->name ? string(grp->cat) + ':'
                                    : string(grp->name) + '/';
}

/// What a group holds, as texts.
string shape(cfgroup *grp) {
  string all;
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
    all += (all.empty() ? "" : ", ") + text(it) +
           (cfgrp(it) && !cfempty(cfgrp(it)) ? '(' + shape(cfgrp(it)) + ')' : "");
  return all;
}

TEST(Catalog, HasItsShape) {
  const std::pair<const char *, const char *> rows[] = {
      {"# primary\nhost alpha {\nport = 1\n# secondary port\nport = 2\ndisk {\nsize = 9\n}\n}\n"
       "host beta {\nport = 3\n}\nhost Alpha {\n}\nmisc {\n}\ntitle = demo\n",
       "host:(alpha/(*host alpha(port=(*port=1, *port=2), disk/(* disk(size=(*size=9)))), "
       "*host Alpha), beta/(*host beta(port=(*port=3)))), misc/(* misc), title=(*title=demo)"},
      {"", ""},
      {"# a\n\n# b\n", ""},
      {"host host {\n}\nhost {\n}\nhost = 1\n",
       "host:(host/(*host host)), host/(* host), host=(*host=1)"},
      {"h a {\nk = 1\n}\nH A {\nK = 2\n}\nk = 3\n# r\nk = 4\n",
       "h:(a/(*h a(k=(*k=1)), *H A(K=(*K=2)))), k=(*k=3, *k=4)"}};
  for (const auto &[file, wanted] : rows) {
    const kit::tree top(kit::read(file).top);
    const string before = kit::dump(top.get());
    const kit::tree root(cfcatalog(top.get())), upper(cfcatalog(root.get()));
    EXPECT_EQ(shape(root.get()), wanted);
    EXPECT_EQ(shape(upper.get()), wanted);
    EXPECT_EQ(kit::dump(top.get()), before);
    kit::checkcatalog(upper.get());
  }
  std::mt19937 rng(7);
  for (int n = 0; n < 300; ++n) {
    const kit::tree top(kit::read(kit::random_file(rng)).top), root(cfcatalog(top.get()));
    const kit::tree upper(cfcatalog(root.get()));
    kit::checkcatalog(upper.get());
  }
}

TEST(Catalog, HasAPlaceForWhatNoFileGives) {
  const kit::tree top(kit::read("a {\nb = 2\n}\nh b {\n}\nk = 1\n").top);
  for (const char *cat : {"", "h", "x"})
    cfaddgrp(top.get(), cfnewgrp(cat, "", cf_grpinst, 1));
  cfaddrem(cfaddpar(top.get(), cfnewpar("", "v", 1)), cfnewrem("", 1));
  const kit::tree root(cfcatalog(top.get()));
  EXPECT_EQ(shape(root.get()),
            "a/(* a(b=(*b=2)), * ), h:(b/(*h b, *h )), k=(*k=1, *=v), x:(:(*x ))");
  kit::checkcatalog(root.get());
  const kit::tree part(cfcatalog(cfcatgetgrp(top.get(), "", "a"))); // an instance is its own source
  EXPECT_EQ(text(&part->link) + '(' + shape(part.get()) + ')', "* a(b=(*b=2))");
  EXPECT_EQ(cfcatgetgrp(part.get(), "", "a"), nullptr);
}

TEST(Lookup, FindsOnCatalogAndTree) {
  const char *const files[] = {
      "label = demo\nlabel = other\nhost alpha {\nport = 1\n}\nhost beta {\nport = 2\n}\n"
      "misc {\nlevel = 3\n}\n",
      "# one\nlabel = demo\n# two\nlabel = other\nlabel = third\nlast =\nhost a {\n}\n"
      "# r\na {\n}\nhost A {\nx = 1\n}\n# r\nend b {\n}\n",
      "", "h x {\n}\ng a {\n}\nh a {\n}\n"};
  const struct {
    int file;
    bool group;
    const char *first, *second, *catalog, *tree;
  } rows[] = {{0, true, "host", "beta", "*host beta", "host beta"},
              {0, true, "HOST", "BETA", "*host beta", "host beta"},
              {0, true, "host", nullptr, "host:", "-"},
              {0, true, "host", "", "host:", "-"},
              {0, true, nullptr, "misc", "* misc", " misc"},
              {0, true, "", "alpha", "-", "host alpha"},
              {0, true, nullptr, nullptr, "*host alpha", "host alpha"},
              {0, true, "host", "gamma", "-", "-"},
              {0, false, "label", nullptr, "*label=demo", "label=demo"},
              {0, false, "LABEL", "OTHER", "*label=other", "label=other"},
              {0, false, "label", "none", "-", "-"},
              {0, false, "label", "", "-", "-"},
              {0, false, nullptr, nullptr, "*label=demo", "label=demo"},
              {0, false, "port", nullptr, "-", "-"},
              {1, false, "label", "demo", "*label=demo", "label=demo"},
              {1, false, "label", "third", "*label=third", "label=third"},
              {1, false, "label", "other", "*label=other", "-"}, // the tree's second block
              {1, false, "last", "", "*last=", "last="},
              {1, false, "", "third", "*label=third", "label=third"},
              {1, false, "", "", "-", "last="}, // the catalog's first level alone
              {1, true, "", "a", "* a", "host a"},
              {1, true, "host", "a", "*host a", "host a"},
              {1, true, "end", "b", "*end b", "end b"}, // in a block
              {2, true, "a", "b", "-", "-"},
              {2, true, "", "", "-", "-"},
              {2, false, "", nullptr, "-", "-"},
              {3, true, "h", "a", "*h a", "h a"}};
  for (const auto &[file, group, first, second, catalog, tree] : rows) {
    const kit::tree top(kit::read(files[file]).top), root(cfcatalog(top.get()));
    const auto find = [&, by = group, a = first, b = second](const kit::tree &grp) {
      cfgroup *const hit = by ? cfcatgetgrp(grp.get(), a, b) : nullptr;
      cfparam *const par = by ? nullptr : cfcatgetpar(grp.get(), a, b);
      return text(hit ? &hit->link : par ? &par->link : nullptr);
    };
    EXPECT_EQ(find(root), catalog) << first << ' ' << second;
    EXPECT_EQ(find(top), tree) << first << ' ' << second;
  }
}

// A manager that only counts, so that much can be made.
size_t made, live;
void *make(size_t size) { return ++made, ++live, std::malloc(size); }
void drop(void *block) { --live, std::free(block); }

/// Deletes a node, after which so many blocks stay; and then the rest.
void deletes(cfgroup *root, cfnode *nd, size_t stay) {
  const size_t before = made;
  cfcatdelnd(nd);
  EXPECT_EQ(live, stay);
  if (stay > 0)
    cfcatdelgrp(root);
  EXPECT_EQ(live, 0U);
  EXPECT_EQ(made, before) << "a deletion allocates";
}

/// Copies, compares and checks a million groups, each in the last.
void usesdeep(cfgroup *top, cfgroup *root) {
  const kit::tree copy(cfdupgrp(top));
  cfdiff diff{nullptr, nullptr, cf_diffrem, 1};
  EXPECT_EQ(cfdiffnd(cfdiffdfl(&diff), &copy->link, &root->link), 0);
  cfparser parser{};
  parser.scopedef = [](const char *) {
    static cfscope record = {"", cfevint, 0};
    return &record;
  };
  EXPECT_EQ(cfparse(&parser, root, "mem"), 0);
  const string said = kit::said(), all = "::int: value expression error\n";
  EXPECT_EQ(said.substr(0, 12), "E mem/::g.g.");
  EXPECT_EQ(said.size(), 6 + 2'000'000 + all.size());
}

void chained() {
  cfgroup *top = kit::read("a = 1\ng {\nb = 2\n}\nc = 3\n").top, *root = top;
  for (int n = 0; n < 100; ++n)
    root = cfcatalog(root);
  cfgroup *g = cfcatgetgrp(root, "", "g");
  const cfparam *b = cfcatgetpar(g, "b", nullptr);
  EXPECT_EQ(cfcatsetpar(g, cfnewpar(b->key, b->val, 1)), b); // of the texts of what it replaces
  EXPECT_EQ(cfevalpar(cfcatgetpar(g, b->key, b->val), cfevint) ? cfint(b) : 0, 2);
  cfcatsetgrp(root, cfaddpar(cfnewgrp("", "G", cf_grpinst, 1), cfnewpar("d", "5", 1)));
  cfcataddpar(cfcatgetgrp(root, "", "g"), cfnewpar("d", "6", 1));
  cfcatdelpar(cfcatgetpar(root, "a", nullptr));
  cfcatdelpar(cfcatgetpar(root, "c", nullptr));
  EXPECT_EQ(cfcatgetpar(root, "c", nullptr), nullptr) << "its level has run empty";
  cfcataddpar(root, cfnewpar("C", "7", 1));
  EXPECT_EQ(shape(root), "a=, g/(* G(d=(*d=5, *d=6))), c=(*C=7)");
  EXPECT_EQ(kit::print(top), "G {\n  d = 5\n  d = 6\n}\nC = 7\n");
  kit::checkcatalog(root);
  deletes(root, &root->link, 0);
}

TEST(Size, OfAnyKindFitsASmallStack) {
  const struct cfmmgr counting = {make, drop}, former = cfmmgr(&counting);
  for (int way = 0; way < 5; ++way)
    kit::on_small_stack([way] {
      cfgroup *top = cfnewgrp("", "", cf_grptop, -1), *at = top;
      if (way < 3) { // a million groups, each in the last
        for (int n = 0; n < 1'000'000; ++n)
          at = cfgrp(cfaddgrp(at, cfnewgrp("", "g", cf_grpinst, -1))->elem.next);
        cfaddpar(at, cfnewpar("int", "x", -1));
      } else { // a million remarks above a parameter
        at = cfnewgrp("", "", cf_grprem, 1);
        cfaddgrp(top,
                 cfaddpar(cfaddgrp(cfnewgrp("", "k", cf_grppar, 1), at), cfnewpar("k", "", 1)));
        for (int n = 0; n < 1'000'000; ++n)
          cfaddrem(at, cfnewrem("", n));
      }
      cfgroup *root = cfcatalog(top), *level = cfgrp(root->elem.next);
      if (way == 0)
        usesdeep(top, root);
      cfnode *const nodes[] = {&root->link, &level->link, level->elem.next, level->elem.next,
                               at->elem.next};
      deletes(root, nodes[way], std::array{0U, 2U, 3U, 3U, 6U}[static_cast<size_t>(way)]);
    });
  kit::on_small_stack(chained);
  cfmmgr(&former);
}

} // namespace
