// edit_test: adding, exchanging and deleting through catalogs, by example and at random.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <algorithm>
#include <csetjmp>
#include <deque>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace {

using std::string;
using nodes = std::vector<cfnode *>;

/// A group and all below it, a group before what it holds.
nodes all(cfgroup *grp) {
  nodes found{&grp->link};
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it)) {
    const nodes below = cfgrp(it) ? all(cfgrp(it)) : nodes{it};
    found.insert(found.end(), below.begin(), below.end());
  }
  return found;
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

// Calls out of the library, to the manager and to callbacks, the n-th of which leaves.
size_t leave;
struct cfmmgr metered;
void call() {
  if (leave && --leave == 0)
    throw kit::out();
}
void *allocate(size_t size) { return call(), metered.cfmalloc(size); }
void release(void *block) { metered.cffree(block), call(); }

/// Runs a task of which the n-th call out leaves. Gives true if one did.
bool leaves(size_t n, const std::function<void()> &task) {
  const struct cfmmgr leaving = {allocate, release};
  metered = cfmmgr(&leaving);
  leave = n;
  bool left = false;
  try {
    task();
  } catch (const kit::out &) {
    left = true;
  }
  leave = 0;
  cfmmgr(&metered);
  return left;
}

/// A tree, its catalog, and new elements, with a label for each node.
class world {
public:
  std::map<string, cfnode *> at;

  explicit world(string file) {
    cfgroup *top = kit::read("# primary\nhost alpha {\nport = 1\n# secondary port\nport = 2\n"
                             "disk {\nsize = 9\n}\n}\nhost beta {\nport = 3\n}\nhost Alpha {\n}\n"
                             "misc {\n}\ntitle = demo\n")
                       .top;
    name(all(top), "T bA mA rA A P1 bP2 mP2 rP2 P2 D P3 B P4 A2 M P5");
    name(all(cfcatalog(top)), "K LH LA RA VP RP1 RP2 LD RD VS RP3 RA2 LB RB VQ RP4 LM RM VT RP5");
    std::ranges::replace(file, '/', '\n');
    const kit::tree given(kit::read(file).top);
    if (cfnode *e = cfiterator(given.get()); !cfend(e))
      name(cfgrp(cfunlknd(e)) ? all(cfgrp(e)) : nodes{e}, "e e1 e2 e3 e4");
    name({&cfnewgrp("host", "", cf_grpinst, 1)->link, &cfnewpar("", "v", 1)->link}, "n k");
    forget();
  }
  world(const world &) = delete;
  ~world() {
    for (const char *own : {"K", "T", "e", "n", "k"}) {
      if (const auto it = at.find(own); it != at.end() && !it->second->group)
        cfdelnd(it->second);
      forget();
    }
  }
  /// The labels of what was released since the last call.
  string forget() {
    string gone;
    for (; seen < memory.released().size(); ++seen)
      if (const auto it = label.extract(memory.released()[seen])) {
        gone += (gone.empty() ? "" : " ") + it.mapped();
        at.erase(it.mapped());
      }
    return gone;
  }
  /// A node as its label; a new one as what it refers to, or as its text with all that it holds.
  string show(cfnode *nd, bool open = false) {
    cfgroup *grp = cfgrp(nd);
    const bool known = label.contains(nd);
    string text = known     ? label[nd]
                  : !nd     ? "none"
                  : nd->ref ? '*' + label[nd->ref]
                            : '+' + string(grp->cat) + grp->name;
    if (known && nd->ref && label[nd->ref] != "T" && !text.ends_with(label[nd->ref]))
      text += '>' + label[nd->ref];
    string held;
    if (grp && (open || !known))
      for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
        held += (held.empty() ? "" : " ") + show(it);
    return text + (open ? ": " + held + ';' : held.empty() ? "" : '(' + held + ')');
  }

private:
  kit::meter memory;
  std::map<const void *, string> label;
  size_t seen = 0;

  void name(const nodes &found, const char *labels) {
    std::istringstream words(labels);
    for (cfnode *nd : found) {
      words >> label[nd];
      at[label[nd]] = nd;
    }
  }
};

// A call; the new element; the result; what groups hold then; what was released, in this order.
const char *const examples = R"(addpar RA  |port = 4|*e|A: P1 bP2 D e;VP: RP1 RP2 *e;RA: VP LD;|
addpar VP  |other = 5|*e|A: P1 bP2 D e;RA: VP LD +other(*e);|
addpar K   |title = x|*e|T: bA B A2 M P5 e;VT: RP5 *e;|
addgrp LA  |host gamma {/port = 6/}|*e(+port(*e1))|T: bA B A2 M P5 e;LH: LA LB +gamma(*e(+port(*e1)));|
addgrp K   |host Beta {/}|*e|T: bA B A2 M P5 e;LB: RB *e;|
addgrp RA  |net {/}|*e|A: P1 bP2 D e;RA: VP LD +net(*e);|
addgrp LD  |net {/}|*e|A: P1 bP2 D e;RA: VP LD +net(*e);|
addgrp LB  |guest g {/}|*e|T: bA B A2 M P5 e;LB: RB;K: LH LM VT +guest(+g(*e));|
addgrp K   |# r/host delta {/k = 8/}|K|T: bA B A2 M P5 e;LH: LA LB +delta(*e3(+k(*e4)));|
addpar A   |port = 4|e|A: P1 bP2 D e;VP: RP1 RP2;|
addpar LA  |stray = 7|e|T: bA B A2 M P5;LA: RA RA2 e;|
addgrp VP  |any {/}|e|A: P1 bP2 D;VP: RP1 RP2 e;|
setpar RA  |PORT = 9|RP1>e|A: e bP2 D;VP: RP1>e RP2;|P1
setpar VP  |port = 10|RP1>e|A: e bP2 D;VP: RP1>e RP2;|P1
setpar RA  |fresh = 1|*e|A: P1 bP2 D e;RA: VP LD +fresh(*e);|
setgrp K   |host BETA {/speed = 7/}|RB>e|T: bA e A2 M P5;LB: RB>e;RB>e: +speed(*e1);|P4 B RP4 VQ
setgrp K   |host alpha {/}|RA>e|bA: mA e;LA: RA>e RA2;RA>e: ;|P3 D P2 rP2 mP2 bP2 P1 A RP3 VS RD LD RP2 RP1 VP
xcg RP2    |port = 2b|RP2>e|bP2: mP2 e;VP: RP1 RP2>e;|P2
xcg RP2    |other = 2b|RP2>e|bP2: mP2 e;VP: RP1 RP2>e;RA: VP LD;|P2
xcg LB     |g {/}|e|T: bA B A2 M P5;B: P4;LH: LA e;|RP4 VQ RB LB
xcg K      |g {/z = 1/}|K>e|K>e: +z(*e1);|P5 M A2 P4 B P3 D P2 rP2 mP2 bP2 P1 A rA mA bA T RP5 VT RM LM RP4 VQ RB LB RA2 RP3 VS RD LD RP2 RP1 VP RA LA LH
xcg P5     |g {/}|e|T: bA B A2 M e;|P5
setpar A   |port = 9|e|A: e bP2 D;|P1
setpar T   |new = 1|e|T: bA B A2 M P5 e;|
setgrp T   |host ALPHA {/}|e|bA: mA e;|P3 D P2 rP2 mP2 bP2 P1 A
setgrp T   |beta {/}|e|T: bA e A2 M P5;|P4 B
setgrp K   |beta {/}|*e|T: bA B A2 M P5 e;K: LH LM VT +beta(*e);|
setgrp VP  |any {/}|e|VP: RP1 RP2 e;|
setpar LH  |any = 1|e|LH: LA LB e;|
xcg RA D   ||RA>D|bA: mA D;LA: RA>D RA2;RA>D: +size(*P3);|P2 rP2 mP2 bP2 P1 A RP3 VS RD LD RP2 RP1 VP
xcg RA A   ||RA|bA: mA A;RA: +port(*P1 *P2) +disk(*D(+size(*P3)));|RP3 VS RD LD RP2 RP1 VP
xcg RP1 P1 ||RP1|A: P1 bP2 D;VP: RP1 RP2;|
xcg P1 P2  ||P2|A: P2 bP2 D;bP2: mP2;|P1
xcg P1 P1  ||P1|A: P1 bP2 D;|
setpar A P1||P1|A: P1 bP2 D;|
addgrp RA B||*B(+port(*P4))|T: bA A2 M P5;A: P1 bP2 D B;RA: VP LD +host(+beta(*B(+port(*P4))));|
addpar D P1||P1|A: bP2 D;D: P3 P1;|
xcg RA P1  ||none|A: P1 bP2 D;LA: RA RA2;|
xcg RP1    |g {/}|none|A: P1 bP2 D;VP: RP1 RP2;|
setgrp K n ||*n|T: bA B A2 M P5 n;LA: RA RA2 *n;K: LH LM VT;|
setpar RA k||*k|A: P1 bP2 D k;VP: RP1 RP2 *k;RA: VP LD;|
del RP2    |||A: P1 D;VP: RP1;|RP2 mP2 rP2 bP2 P2
del RP1    |||A: bP2 D;VP: RP2;bP2: mP2 P2;|RP1 P1
del RP5    |||T: bA B A2 M;K: LH LM VT;VT: ;|RP5 P5
del RA     |||T: B A2 M P5;LA: RA2;|RP3 P3 VS RD D LD RP2 P2 RP1 P1 VP RA mA rA bA bP2 mP2 rP2 A
del RM     |||T: bA B A2 P5;K: LH LM VT;LM: ;|RM M
clr RA     ||RA|bA: mA A;A: ;LA: RA RA2;RA: ;|RP3 P3 VS RD D LD RP2 mP2 rP2 bP2 P2 RP1 P1 VP
del LA     |||T: B M P5;LH: LB;|RA2 A2 RP3 P3 VS RD D LD RP2 P2 RP1 P1 VP RA mA rA bA bP2 mP2 rP2 A LA
del LH     |||T: M P5;K: LM VT;|RP4 P4 VQ RB B LB RA2 A2 RP3 P3 VS RD D LD RP2 P2 RP1 P1 VP RA mA rA bA bP2 mP2 rP2 A LA LH
clr K      ||K|T: ;K: ;|RP5 P5 VT RM M LM RP4 P4 VQ RB B LB RA2 A2 RP3 P3 VS RD D LD RP2 P2 RP1 P1 VP RA mA rA bA bP2 mP2 rP2 A LA LH
del K      ||||RP5 P5 VT RM M LM RP4 P4 VQ RB B LB RA2 A2 RP3 P3 VS RD D LD RP2 P2 RP1 P1 VP RA A LA LH K bA bP2 mP2 rP2 mA rA T
del rA     |||T: bA B A2 M P5;bA: A;|mA rA
del A      |||T: B A2 M P5;|mA rA bA P3 D bP2 P2 mP2 rP2 P1 A
del P2     |||A: P1 D;|mP2 rP2 bP2 P2
del mP2    |||A: P1 bP2 D;bP2: P2;|mP2 rP2
clr bP2    ||bP2|A: P1 bP2 D;bP2: ;|P2 mP2 rP2
clr mP2    ||mP2|bP2: mP2 P2;mP2: ;|rP2)";

/// Makes the call of an example of which the n-th call out leaves; if it was to put something in, it
/// is made again then. Gives true if one left.
bool made(const string (&row)[5], size_t n) {
  world w(row[1]);
  string name, to, what = "e", result, gone, groups;
  std::istringstream(row[0]) >> name >> to >> what;
  cfnode *c = w.at.at(to), *e = w.at.contains(what) ? w.at[what] : nullptr;
  const auto make = [&] {
    cfnode *got = edits.at(name)(c, e);
    result = row[2].empty() ? "" : w.show(got);
  };
  const bool left = leaves(n, make);
  gone = w.forget();
  for (const char *whole : {"T", "K"})
    if (left && w.at.contains(whole))
      kit::checktree(cfgrp(w.at[whole]));
  EXPECT_TRUE(!left || !name.starts_with("add") || !e->group);
  if (left && e && w.at.contains(to) && (c->ref || !e->group)) {
    make();
    if (const string more = w.forget(); !more.empty())
      gone += (gone.empty() ? "" : " ") + more;
  }
  EXPECT_EQ(result.empty() ? row[2] : result, row[2]);
  std::istringstream wanted(row[3]);
  for (string group; std::getline(wanted, group, ';');)
    groups += w.show(w.at.at(group.substr(0, group.find_first_of(":>"))), true);
  EXPECT_EQ(groups, row[3]);
  if ((result[0] == '*' || result[0] == 'R' || result[0] == 'K') && name + what != "addgrpB")
    kit::checkcatalog(cfgrp(w.at["K"]));
  EXPECT_EQ(gone, row[4]) << "leaving at call " << n;
  return left;
}

TEST(Edit, DoesAsTheExamples) {
  std::istringstream rows(examples);
  for (string line; std::getline(rows, line);) {
    SCOPED_TRACE(line);
    string row[5];
    std::istringstream cells(line);
    for (string &cell : row)
      std::getline(cells, cell, '|');
    made(row, 0);
    long n = 1;
    while (made(row, static_cast<size_t>(n)))
      ++n;
    EXPECT_GT(n, std::ranges::count(row[4], ' ')) << "each release may leave, and is seen to";
  }
}

TEST(Edit, BearsWhatNoCatalogHolds) {
  const kit::meter memory;
  const kit::tree top(cfaddrem(cfnewgrp("", "", cf_grptop, -1), cfnewrem("old", 1)));
  cfremark *ref = cfnewrem("", 0), *nd = cfnewrem("new", 2);
  cfinitrefnd(&ref->link, top->elem.next, nullptr);
  EXPECT_EQ(cfcatxcgnd(&ref->link, &nd->link), &ref->link);
  EXPECT_TRUE(ref->link.ref == &nd->link && ref->row == 2 && ref->txt == nd->txt);
  EXPECT_EQ(kit::dump(top.get()), "top -1\n  remark 2 'new'\n");
  cfdelrem(ref);
  cfgroup *level = cfnewgrp("", "l", cf_grpcat, 1); // the way up from it leads through it
  cfaddgrp(top.get(), cfaddrem(cfaddgrp(cfnewgrp("", "g", cf_grpinst, 1), level), cfnewrem("", 1)));
  const kit::tree root(cfcatalog(level));
  EXPECT_EQ(cfcataddgrp(root.get(), level), root.get());
  const kit::tree tree(kit::read("h a {\n}\n").top), lower(cfcatalog(tree.get()));
  level = cfgrp(lower->elem.next);
  const kit::tree upper(cfcatalog(level));
  EXPECT_EQ(cfcataddgrp(upper.get(), level), upper.get());
  EXPECT_TRUE(tree->elem.prev == &level->link && cfcatgetgrp(lower.get(), "h", "a"));
  cfgroup *block = cfaddpar(cfnewgrp("", "", cf_grppar, 1), cfnewpar("k", "1", 1));
  cfcataddgrp(root.get(), cfaddpar(block, cfnewpar("k", "2", 1)));
  EXPECT_EQ(cfcatgetpar(root.get(), "k", nullptr)->val, string("1")) << "in the order of the tree";
  cfdelgrp(block);
  EXPECT_EQ(kit::dump(top.get()), "top -1\n  remark 2 'new'\n  inst 1 '' 'g'\n    remark 1 ''\n"
                                  "    cat 1 '' 'l'\n");
  cfcatdelnd(nullptr), cfcatdelgrp(nullptr), cfcatdelpar(nullptr), cfcatdelnd(&top->elem);
  EXPECT_TRUE(!cfcatclrgrp(nullptr) && cfcatclrgrp(top.get()) == top.get() && cfempty(top.get()));
}

/// The texts of the levels of a reference, or of those where it belongs, in lower case.
string levels(cfnode *nd, bool belongs) {
  string text;
  if (!belongs)
    for (const cfgroup *up = nd->group; !up->link.ref; up = up->link.group)
      text = (up->type == cf_grpval ? "=" : "") + string(up->cat) + '/' + up->name + text;
  else if (const cfgroup *grp = cfgrp(nd))
    text = (*grp->cat ? string(grp->cat) + '/' : "") + '/' + grp->name;
  else
    text = string("=/") + cfpar(nd)->key;
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

/// The references of a catalog by owner and texts of levels, each level in its order. Those that an
/// exchange left where the texts of the old element belong are left out, as `moved`.
std::multimap<std::pair<cfnode *, string>, cfnode *> filed(cfgroup *root,
                                                           std::set<cfnode *> &moved) {
  std::multimap<std::pair<cfnode *, string>, cfnode *> found;
  for (cfnode *nd : all(root)) {
    const cfgroup *owner = nd->group;
    while (nd->ref && owner && !owner->link.ref)
      owner = owner->link.group;
    if (!nd->ref || !owner)
      continue;
    if (levels(nd, false) != levels(nd, true))
      moved.insert(nd->ref);
    if (!moved.contains(nd->ref))
      found.emplace(std::pair(owner->link.ref, levels(nd, false)), nd->ref);
    if (const cfparam *par = cfpar(nd), *target = cfpar(nd->ref); par) {
      EXPECT_TRUE(par->eval == target->eval && par->vval == target->vval);
    }
  }
  return found;
}

int block(const char *, void *) { return 17; }

/// A tree under catalogs, edited at random through the uppermost; and a twin, a copy of the tree as it
/// was before the last edit, to which the same was done by links alone.
class session {
public:
  session(unsigned int seed, size_t catalogs) : rng(seed) {
    roots.push_back(kit::read(kit::random_file(rng)).top);
    while (roots.size() <= catalogs)
      roots.push_back(cfcatalog(roots.back()));
  }
  ~session() { cfcatdelgrp(roots.back()); }
  session(const session &) = delete;

  /// Gives how many nodes the tree had.
  size_t step() {
    twin.reset(cfdupgrp(roots[0]));
    tree = all(roots[0]);
    mirror = all(twin.get());
    const nodes catalog = all(roots.back());
    cfnode *c = any(catalog), *nd = any(tree);
    const size_t what = die(tree.size() < 20 ? 9 : 4);
    if (what < 3)
      take(c, cfgrp(c) && (c == catalog[0] || die(2)));
    else if (what > 4)
      put(c, nd);
    else if (cfpar(c))
      die(3) ? cfevalpar(cfpar(c), die(2) ? block : cfevint) : !cfunevalpar(cfpar(c));
    else if (cfrem(nd)) {
      cfdelnd(mirrored(&nd->group->link));
      cfcatdelnd(nd);
    }
    return tree.size();
  }

  /// Each catalog is as one made afresh, but for empty levels, the order of levels, and what was
  /// moved; the tree is as its twin, and as it reads back.
  void check() {
    kit::checkcatalog(roots.back());
    for (size_t i = 1; i < roots.size(); ++i) {
      std::set<cfnode *> moved;
      const auto edited = filed(roots[i], moved);
      EXPECT_EQ(edited, filed(kit::tree(cfcatalog(roots[i - 1])).get(), moved));
    }
    const string text = kit::print(roots[0]);
    EXPECT_EQ(text, kit::print(twin.get()));
    EXPECT_EQ(text, kit::print(kit::tree(kit::read(text).top).get()));
  }

private:
  kit::meter memory;
  std::mt19937 rng;
  std::vector<cfgroup *> roots; // the tree, and the catalogs from the lowest up
  kit::tree twin, elsewhere{cfnewgrp("", "", cf_grptop, -1)};
  nodes tree, mirror; // the tree as it was, and its twin, node for node

  size_t die(size_t sides) { return rng() % sides; }
  cfnode *any(const nodes &of) { return of[die(of.size())]; }
  static cfnode *target(cfnode *nd) { return nd->ref ? target(nd->ref) : nd; }
  cfnode *mirrored(cfnode *nd) {
    return mirror[static_cast<size_t>(std::ranges::find(tree, target(nd)) - tree.begin())];
  }

  cfnode *make(cfnode_t type, cfnode *like) {
    if (like->type == type && like != tree[0])
      return cfdupnd(like);
    const char *const words[] = {"", "a", "B", "b", "A", "c"};
    const char *cat = words[die(6)], *name = words[1 + die(5)];
    if (type == cf_param) {
      cfparam *par = cfnewpar(name, cat, 5);
      return cfevalpar(par, die(2) ? block : cfevstr), &par->link;
    }
    cfgroup *grp = cfnewgrp(cat, name, cf_grpinst, 5);
    for (size_t n = die(3); n > 0; --n)
      cflinknd(grp, make(die(3) ? cf_param : cf_group, any(tree)));
    return &grp->link;
  }

  /// Adds, sets or exchanges, where `c` allows it.
  void put(cfnode *c, cfnode *like) {
    cfgroup *gc = cfgrp(c);
    const bool par = !gc || gc->type == cf_grpval || (gc->type != cf_grpcat && die(2));
    cfnode *e = make(par ? cf_param : cf_group, like), *hit = nullptr;
    const bool block = !par && cfgrp(e)->type != cf_grpinst;
    const size_t what = !gc ? 2 : block ? 0 : die(!par && c->ref && c->group ? 3 : 2);
    while (gc && !gc->link.ref)
      gc = gc->link.group;
    if (what == 2)
      hit = c;
    else if (what == 1 && par)
      hit = reinterpret_cast<cfnode *>(cfcatgetpar(gc, cfpar(e)->key, nullptr));
    else if (what == 1)
      hit = reinterpret_cast<cfnode *>(cfcatgetgrp(gc, cfgrp(e)->cat, cfgrp(e)->name));
    if (hit)
      cfdelnd(cfxcgnd(mirrored(hit), cfdupnd(e)));
    else
      cflinknd(cfgrp(mirrored(&gc->link)), cfdupnd(e));
    if (die(2)) // to be taken out of another tree
      cflinknd(elsewhere.get(), e);
    edits.at(what == 2 ? "xcg" : string(what ? "set" : "add") + (par ? "par" : "grp"))(c, e);
  }

  /// Deletes or clears.
  void take(cfnode *c, bool clear) {
    std::set<cfnode *> dying;
    for (cfnode *nd : cfgrp(c) ? all(cfgrp(c)) : nodes{c})
      if (nd->ref && !(clear && nd == c)) {
        cfgroup *holder = target(nd)->group;
        const bool bound = holder->type == (cfpar(nd) ? cf_grppar : cf_grpgrp);
        dying.insert(bound ? &holder->link : target(nd));
      }
    for (size_t i = tree.size(); i-- > 0;)
      if (dying.contains(tree[i]))
        cfdelnd(mirror[i]);
    edits.at(clear ? "clr" : "del")(c, nullptr);
  }
};

TEST(Edit, KeepsTreeAndCatalogsTogether) {
  for (unsigned long seed = 0, end = kit::rounds(1000); seed < end; ++seed) {
    session s(static_cast<unsigned int>(seed), 1 + seed % 3);
    for (int n = 0; n < 100 && !HasFailure(); ++n)
      if (s.step() < 8 || n % 8 == 0)
        s.check();
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

TEST(Leaving, LosesNothing) {
  kit::meter memory;
  const string name(1500, 'n'); // more than fits on the stack
  const kit::tree top(kit::read(name + " {\n# r\nk = 1\n" + name + " b {\n}\n}\nk = 1\n").top);
  const kit::tree root(cfcatalog(top.get()));
  cfparam *par = cfcatgetpar(root.get(), "k", nullptr);
  static const cfeval_t sized = [](const char *, void *) { return call(), 40; };
  cfparser parser{nullptr, nullptr, 0, 0, nullptr, nullptr};
  parser.scopedef = [](const char *) {
    static cfscope record = {"", sized, 0};
    return call(), &record;
  };
  cfdiff diff{nullptr, [](const char *) { return call(), 1; }, cf_diffrem | cf_diffref, 1};
  diff.genscope = [](char *text, cfnode *) {
    call();
    return text ? *text = 'n', 0U : 3000U;
  };
  const std::function<void()> tasks[] = {
      [&] { EXPECT_EQ(cfevalpar(par, sized), 1); },
      [&] { EXPECT_EQ(cfevalpar(par, sized) + cfevalpar(par, cfevint), 2); },
      [&] { cfdelgrp(cfdupgrp(top.get())); },
      [&] { cfcatdelgrp(cfdupgrp(root.get())); },
      [&] { cfdelgrp(cfcatalog(root.get())); },
      [&] { EXPECT_EQ(cfparse(&parser, top.get(), "cfg"), 1); },
      [&] { EXPECT_EQ(cfdiffnd(&diff, &root->link, &root->link), 0); }};
  for (int i = 0; i < 8; ++i, parser.genscope = i == 7 ? diff.genscope : nullptr)
    for (size_t n = 1, live = memory.live(), left = 1; left; ++n) {
      left = leaves(n, tasks[i < 7 ? i : 5]);
      kit::checkcatalog(root.get());
      kit::checktree(top.get());
      for (cfnode *nd : all(root.get()))
        cfpar(nd) ? cfunevalpar(cfpar(nd)) : nullptr;
      EXPECT_EQ(memory.live(), live) << "task " << i << " leaving at call " << n;
    }
}

// A manager that leaves by a jump, and keeps all that it gave until the end.
std::jmp_buf away;
size_t jump;
std::deque<string> given;
void *take(size_t size) {
  if (jump && --jump == 0)
    std::longjmp(away, 1);
  return given.emplace_back(size, 'j').data();
}

/// Runs a task of which the n-th allocation jumps. Gives true if one did.
bool jumps(size_t n, void (*task)()) {
  jump = n;
  if (setjmp(away))
    return true;
  task();
  jump = 0;
  return false;
}

TEST(Leaving, ByAJumpKeepsWhatIsLinked) {
  const struct cfmmgr jumping = {take, [](void *) {}}, former = cfmmgr(&jumping);
  static FILE *file;
  static cflexer lex;
  static cfgroup *root;
  void (*const tasks[])() = {[] { cflex(&lex, file, "cfg"); },
                             [] { root = cfcatalog(cfcatalog(lex.top)); },
                             [] { cfcatsetgrp(root, cfdupgrp(cfcatgetgrp(lex.top, "c", "a"))); },
                             [] { cfcataddgrp(root, cfdupgrp(cfcatgetgrp(lex.top, "c", "a"))); },
                             [] { cfcatxcgnd(&root->link, &cfdupgrp(lex.top)->link); }};
  const string text = "# r\nc a {\nk = 1\n}\n# s\nk = 2\n";
  for (const auto task : tasks)
    for (size_t n = 1, left = 1; left; ++n) {
      const kit::stream stream = kit::source(text);
      file = stream.get();
      lex = {};
      root = nullptr;
      if (task != tasks[0])
        tasks[0]();
      if (task != tasks[0] && task != tasks[1])
        tasks[1]();
      left = jumps(n, task);
      cfgroup *top = lex.top;
      for (cfgroup *at = root ? root : top; at; at = cfgrp(at->link.ref))
        kit::checktree(top = at);
      EXPECT_TRUE(left || kit::print(top).find("  k = 1\n") != string::npos);
      root ? cfcatdelgrp(root) : cfdelgrp(top);
    }
  cfmmgr(&former);
}

} // namespace
