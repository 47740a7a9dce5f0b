// Nodes: layout, links, construction, deletion, copies, iteration, search.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <sstream>
#include <strings.h>
#include <type_traits>

using std::string;
using sizes = std::vector<size_t>;

namespace {

/// An evaluator of values too large for the buffer in the parameter.
int large(const char *val, void *vval) {
  if (vval)
    std::memset(vval, *val, 40);
  return 40;
}

template <class... Record> constexpr bool plain = (std::is_standard_layout_v<Record> && ...);

} // namespace

#define AT(record, field) offsetof(record, field) / sizeof(void *)
TEST(Node, LayoutIsTheAbi) {
  static_assert(plain<cfnode, cfgroup, cfremark, cfparam, struct cfmmgr, cflexer, cfprinter>);
  EXPECT_EQ((sizes{sizeof(cfnode), sizeof(cfgroup), sizeof(cfremark), sizeof(cfparam)}),
            (sizes{40, 112, 56, 80}));
  EXPECT_EQ((sizes{AT(cfnode, prev),  AT(cfnode, next),  AT(cfnode, group), AT(cfnode, ref),
                   AT(cfnode, type),  AT(cfgroup, link), AT(cfgroup, row),  AT(cfgroup, cat),
                   AT(cfgroup, name), AT(cfgroup, type), AT(cfgroup, elem), AT(cfremark, link),
                   AT(cfremark, row), AT(cfremark, txt), AT(cfparam, link), AT(cfparam, row),
                   AT(cfparam, key),  AT(cfparam, val),  AT(cfparam, eval), AT(cfparam, vval)}),
            (sizes{0, 1, 2, 3, 4, 0, 5, 6, 7, 8, 9, 0, 5, 6, 0, 5, 6, 7, 8, 9}));
  EXPECT_EQ((sizes{AT(cflexer, isempty), AT(cflexer, isparam), AT(cflexer, scanrem),
                   AT(cflexer, scanpar), AT(cflexer, top), AT(cflexer, valid), AT(cflexer, fd),
                   AT(cflexer, fname), AT(cflexer, row), AT(cflexer, nrow), AT(cfprinter, outempty),
                   AT(cfprinter, outparam), AT(cfprinter, valid), AT(cfprinter, top),
                   AT(cfprinter, fd), AT(cfprinter, fname), AT(cfprinter, brk)}),
            (sizes{0, 4, 5, 7, 8, 9, 10, 11, 12, 13, 0, 4, 5, 6, 7, 8, 9}));
}

TEST(Node, OneBlockForEachElement) {
  kit::meter meter;
  const kit::tree grp(cfnewgrp("cat", "name", cf_grpcat, -1)),
      none(cfnewgrp(nullptr, nullptr, cf_grptop, -1));
  cfremark *rem = cfnewrem("text", 7), *norem = cfnewrem(nullptr, 7);
  cfparam *par = cfnewpar("key", "val", 3), *nopar = cfnewpar("k", nullptr, 3);
  cfevalpar(par, cfevstr);
  cfparam *refpar = cfnewrefpar(par);
  const kit::tree ref(cfnewrefgrp(cfaddpar(grp.get(), par)));
  EXPECT_EQ(meter.sizes(), (sizes{112 + 3 + 4 + 2, 112 + 2, 56 + 4 + 1, 56 + 1, 80 + 16 + 3 + 3 + 2,
                                  80 + 16 + 1 + 2, 80, 112}));
  const auto at = [](const auto *record, const char *text) {
    return text - reinterpret_cast<const char *>(record + 1);
  };
  EXPECT_TRUE(at(grp.get(), grp->cat) == 0 && at(grp.get(), grp->name) == 4 &&
              at(rem, rem->txt) == 0);
  EXPECT_TRUE(at(par, par->key) == 16 && at(par, par->val) == 20 && at(nopar, nopar->val) == 18);
  // The texts and the value of a reference are its target's; what the target holds it does not.
  EXPECT_TRUE(refpar->key == par->key && refpar->val == par->val && refpar->vval == par->vval);
  EXPECT_TRUE(ref->cat == grp->cat && ref->name == grp->name);
  cfaddpar(cfaddpar(cfaddrem(cfaddrem(none.get(), rem), norem), nopar), refpar);
  EXPECT_EQ(kit::dump(ref.get()), "cat -1 'cat' 'name' -> cat -1\n");
  EXPECT_EQ(kit::dump(none.get()), "top -1\n  remark 7 'text'\n  remark 7 ''\n  param 3 'k' ''\n  "
                                   "param 3 'key' 'val' evaluated -> param 3\n");
  kit::checktree(ref.get());
  kit::checktree(none.get());
  for (string text; text.size() < 40; text += static_cast<char>('a' + text.size() % 26)) {
    const kit::tree longer(cfnewgrp(text.c_str(), text.c_str(), cf_grpinst, 1));
    EXPECT_TRUE(longer->cat == text && longer->name == text) << text;
  }
}

TEST(Node, MemoryManager) {
  const struct cfmmgr before = cfmmgr(nullptr), other = {before.cfmalloc, [](void *) {}};
  EXPECT_EQ(cfmmgr(&other).cffree, before.cffree);
  EXPECT_EQ(cfmmgr(nullptr).cffree, other.cffree);
  EXPECT_EQ(cfmmgr(&before).cffree, other.cffree);
}

/// All link operations, on nodes of every kind in the lists of two groups, in a ring that is no
/// group's and in no list at all (which is list 3), against vectors that are told the same.
TEST(Node, LinksAgreeWithAModel) {
  std::mt19937 rng(1);
  const kit::tree groups[] = {kit::tree(cfnewgrp("", "", cf_grptop, 1)),
                              kit::tree(cfnewgrp("", "", cf_grptop, 2))};
  cfnode ring;
  cfnode *const anchors[] = {&groups[0]->elem, &groups[1]->elem,
                             cfinitnd(&ring, cf_anchor, nullptr)};
  std::vector<cfnode *> lists[4], &none = lists[3];
  for (int i = 0; i < 3; ++i)
    none.insert(none.end(), {&cfnewgrp("", "", cf_grpinst, i)->link, &cfnewrem("", i)->link,
                             &cfnewpar("", "", i)->link});
  const auto elems = none;
  const auto listof = [&](cfnode * nd) -> auto & {
    return *std::find_if(lists, lists + 3,
                         [&](auto &list) { return std::count(list.begin(), list.end(), nd); });
  };
  const auto move = [&](cfnode *nd, auto &to, cfnode *before) {
    std::erase(listof(nd), nd);
    to.insert(std::find(to.begin(), to.end(), before), nd);
  };
  for (int round = 0; round < 20000; ++round) {
    cfnode *nd = elems[rng() % 9], *it = elems[rng() % 9];
    const size_t op = rng() % 5, to = rng() % 2;
    cfgroup *grp = groups[to].get();
    if (op == 0) {
      EXPECT_EQ(cfunlknd(nd), nd);
      move(nd, none, nullptr);
    } else if (op == 1) {
      EXPECT_EQ(cfgrp(nd)   ? cfaddgrp(grp, cfgrp(nd))
                : cfrem(nd) ? cfaddrem(grp, cfrem(nd))
                            : cfaddpar(grp, cfpar(nd)),
                grp);
      move(nd, lists[to], nullptr);
    } else if (op == 2) {
      EXPECT_EQ(cfchainnd(anchors[to + 1], nd), anchors[to + 1]);
      move(nd, lists[to + 1], nullptr);
    } else if (nd != it) {
      EXPECT_EQ(op == 3     ? cfxcgnd(it, nd)
                : cfgrp(nd) ? cfchaingrp(it, cfgrp(nd))
                : cfrem(nd) ? cfchainrem(it, cfrem(nd))
                            : cfchainpar(it, cfpar(nd)),
                it);
      move(nd, listof(it), it);
      if (op == 3)
        move(it, none, nullptr);
    }
    for (size_t i = 0; i < 3; ++i) {
      std::vector<cfnode *> forth, back;
      for (cfnode *at = anchors[i]->next; at != anchors[i]; at = at->next)
        forth.push_back(at);
      for (cfnode *at = anchors[i]->prev; at != anchors[i]; at = at->prev)
        back.insert(back.begin(), at);
      ASSERT_TRUE(forth == lists[i] && back == lists[i]) << "round " << round;
      for (const cfnode *at : forth)
        ASSERT_EQ(at->group, anchors[i]->group);
    }
    for (const cfnode *at : none)
      ASSERT_TRUE(!at->group && !at->prev && !at->next);
  }
  std::for_each(elems.begin(), elems.end(), cfdelnd);
}

TEST(Node, DeletionGoesFromTheLastChildUp) {
  kit::meter meter;
  cfgroup *top = cfnewgrp("", "", cf_grptop, -1), *h = cfnewgrp("", "h", cf_grpinst, 2);
  cfremark *a = cfnewrem("a", 1), *b = cfnewrem("b", 5), *d = cfnewrem("d", 3),
           *e = cfnewrem("e", 4);
  cfparam *p = cfnewpar("p", "v", 6);
  cfaddpar(cfaddrem(cfaddgrp(cfaddrem(top, a), cfaddrem(cfaddrem(h, d), e)), b), p);
  ASSERT_EQ(cfevalpar(p, large), 1);
  const string told = kit::dump(top);
  const void *value = p->vval;
  const std::vector<const void *> order{value, p, b, e, d, h, a, top};
  cfdelpar(cfnewrefpar(p));
  cfdelgrp(cfaddgrp(cfnewrefgrp(h), cfnewrefgrp(h)));
  EXPECT_EQ(meter.released().size(), 3U) << "what the targets hold is theirs";
  EXPECT_EQ(kit::dump(top), told);
  cfdelgrp(top);
  EXPECT_TRUE(std::equal(order.begin(), order.end(), meter.released().begin() + 3));
}

TEST(Node, DeletionClosesTheRing) {
  const kit::meter meter;
  const kit::tree top(kit::read("# r\n\nk=1\nc g{\nx=1\n# y\n}\nl=2").top);
  cfnode *g = top->elem.prev->prev, former = *g;
  EXPECT_TRUE(cfclrgrp(cfgrp(g)) == cfgrp(g) && cfempty(cfgrp(g)) == 1 && !cfclrgrp(nullptr));
  EXPECT_TRUE(g->prev == former.prev && g->next == former.next && g->group == former.group);
  cfdelnd(top->elem.prev);
  cfdelpar(cfpar(top->elem.next->next));
  cfdelrem(cfrem(cfgrp(top->elem.next)->elem.next));
  cfdelnd(&top->elem), cfdelnd(nullptr), cfdelgrp(nullptr), cfdelrem(nullptr), cfdelpar(nullptr);
  kit::checktree(top.get());
  EXPECT_EQ(kit::dump(top.get()), "top -1\n  run 1\n  inst 4 'c' 'g'\n");
}

TEST(Node, DeletionEndsThoughTheManagerLeaves) {
  kit::meter meter;
  cfgroup *top = kit::read("# r\na {\nk=1\n}\nl=2\n").top;
  cfevalpar(cfpar(top->elem.prev), large);
  meter.leave_releasing(true);
  EXPECT_THROW(cfclrgrp(top), kit::out);
  EXPECT_TRUE(cfempty(top) && meter.live() == 1);
  EXPECT_THROW(cfdelgrp(top), kit::out);
}

TEST(Node, Copies) {
  kit::meter meter;
  const kit::tree top(kit::read("# r\nc g {\n# s\na=text\nb=12\nc=large\nd=x\n}\n# t\n").top);
  const auto par = [](const kit::tree &from, const char *key) {
    return cfcatgetpar(cfcatgetgrp(from.get(), "c", "g"), key, nullptr);
  };
  cfevalpar(par(top, "a"), cfevstr);
  cfevalpar(par(top, "b"), cfevint);
  cfevalpar(par(top, "c"), large);
  const string told = kit::dump(top.get());
  EXPECT_EQ(meter.leave_at_each([&] { kit::tree(cfdupgrp(top.get())); }), 15U);
  const kit::tree copy(cfgrp(cfdupnd(&top->link)));
  cfclrgrp(top.get()); // and yet the copy is whole
  EXPECT_EQ(kit::dump(copy.get()), told);
  kit::checktree(copy.get());
  const cfparam *a = par(copy, "a"), *b = par(copy, "b"), *c = par(copy, "c");
  EXPECT_TRUE(a->vval == a->val && b->vval == b + 1 && cfint(b) == 12 && *cfvstr(c) == 'l');
  EXPECT_TRUE(!cfdupnd(nullptr) && !cfdupnd(&copy->elem) && !cfdupgrp(nullptr) &&
              !cfduprem(nullptr) && !cfduppar(nullptr));
  cfremark *rem = cfduprem(cfrem(cfgrp(copy->elem.prev)->elem.next));
  EXPECT_TRUE(rem->txt == string("t") && rem->row == 9 && !rem->link.group);
  cfdelrem(rem);
  // References are copied with their targets, which are in no list.
  const kit::tree catalog(cfcatalog(copy.get()));
  meter.leave_at_each([&] { cfcatdelgrp(cfdupgrp(catalog.get())); });
  cfgroup *second = cfdupgrp(catalog.get());
  EXPECT_EQ(kit::dump(second), kit::dump(catalog.get()));
  EXPECT_TRUE(second->link.ref != catalog->link.ref && kit::dump(cfgrp(second->link.ref)) == told);
  cfcatdelgrp(second);
}

TEST(Node, IterationAndSearch) {
  const kit::tree list(cfnewgrp("", "", cf_grptop, -1));
  const auto add = [&](const char *cat, const char *name, cfgroup_t type) {
    cfgroup *grp = cfnewgrp(cat, name, type, 1);
    cfaddgrp(list.get(), cfaddrem(cfaddpar(grp, cfnewpar("inner", "x", 1)), cfnewrem("", 1)));
  };
  add("", "", cf_grprem);
  add("", "speed", cf_grppar);
  cfaddpar(list.get(), cfnewpar("speed", "10", 1));
  add("link", "main", cf_grpinst);
  add("link", "aux", cf_grpgrp);
  cfaddpar(cfaddpar(list.get(), cfnewpar("mode", "fast", 1)), cfnewpar("last", "", 1));
  add("", "solo", cf_grpcat);
  add("", "vals", cf_grpval);
  add("t", "t", cf_grptop);
  std::vector<cfnode *> nodes{&list->elem};
  cfnode *it = cfiterator(list.get());
  for (; !cfend(it); cfnext(&it))
    nodes.push_back(it);
  EXPECT_TRUE(cftype(nodes[1]) == cf_group && cftype(nodes[3]) == cf_param && !cftype(it));
  EXPECT_TRUE(cfnext(&it) == nodes[0] && it == nodes[0] && cfend(it) == 1 && cfend(nodes[1]) == 0);
  EXPECT_TRUE(!cfgrp(it) && !cfrem(it) && !cfpar(it) && !cfgrp(nullptr) && !cfrem(nullptr) &&
              !cfpar(nullptr));
  EXPECT_TRUE(!cfgrp(nodes[3]) && !cfrem(nodes[1]) && !cfpar(nodes[1]) && !cfpar(nodes[1]->next));
  EXPECT_EQ(cfseekrem(cfgrp(nodes[1])->elem.next), cfgrp(nodes[1])->elem.prev);
  // What, with which texts ("-": NULL, ".": empty), from which place on, is found where (0: anchor).
  for (const string row :
       {"p speed - 1 2",  "p speed - 3 3",  "p speed - 4 0", "p SPEED 10 1 3", "p - - 1 2",
        "p - FAST 1 6",   "g - - 1 4",      "g link - 1 4",  "g link - 5 5",   "g link - 6 0",
        "g link aux 1 5", "r - - 1 1",      "r - - 2 0",     "p . - 1 2",      "p - . 1 7",
        "p last x 1 0",   "p Vals - 1 9",   "p vals . 1 0",  "p - - 8 9",      "p main - 1 0",
        "p inner - 1 0",  "p - - 10 0",     "p - - 0 0",     "p speed . 1 0",  "g . - 1 4",
        "g - . 1 4",      "g LinK Aux 1 5", "g - aux 1 5",   "g - solo 1 8",   "g x solo 1 0",
        "g t t 1 0",      "g - speed 1 0",  "g - - 9 0",     "g - - 0 0",      "r - - 0 0"}) {
    std::istringstream in(row);
    string what, texts[2];
    size_t from = 0, to = 0;
    in >> what >> texts[0] >> texts[1] >> from >> to;
    const auto text = [&](size_t i) {
      return texts[i] == "-" ? nullptr : texts[i] == "." ? "" : texts[i].c_str();
    };
    EXPECT_EQ(what == "p"   ? cfseekpar(nodes[from], text(0), text(1))
              : what == "g" ? cfseekgrp(nodes[from], text(0), text(1))
                            : cfseekrem(nodes[from]),
              nodes[to])
        << row;
  }
}

TEST(Node, TextsAreEqualAsTheLocaleSays) {
  for (int a = 1; a < 256; ++a) {
    const char name[] = {'x', static_cast<char>(a), '\0'};
    const kit::tree list(
        cfaddgrp(cfnewgrp("", "", cf_grptop, -1), cfnewgrp("", name, cf_grpinst, 1)));
    for (int b = 1; b < 256; ++b) {
      const char sought[] = {'X', static_cast<char>(b), '\0'};
      EXPECT_EQ(!cfend(cfseekgrp(list->elem.next, nullptr, sought)), !strcasecmp(name, sought))
          << a << ' ' << b;
    }
  }
}
