// edit: the input is a program of calls on a tree and on catalogs over it. It also selects the
// calls of the application's functions that throw or jump out. After each step the tree is compared
// with a model, and the catalogs with the tree. Without a catalog, lists are edited directly;
// catalogs are edited through the uppermost one.
// SPDX-License-Identifier: MIT
#include "oracles.h"

#include <algorithm>
#include <array>
#include <set>

using kit::need;
using std::string;

namespace fuzz {
namespace {

using nodes = std::vector<cfnode *>;

cfnode *target(cfnode *nd) { return nd->ref ? target(nd->ref) : nd; }

/// True if `nd` is `place` or a group around it.
bool is_above(const cfnode *nd, const cfnode *place) {
  while (place != nd && place->group)
    place = &place->group->link;
  return place == nd;
}

/// The group that an element is filed under if it is added to `gc`.
cfgroup *owner(cfgroup *gc, cfnode *elem) {
  while (gc->type == (cfpar(elem) ? cf_grpval : cf_grpcat) && gc->link.group)
    gc = gc->link.group;
  return gc;
}

/// Collects what a deletion through a catalog deletes: the element, its contents, its target, the
/// block that binds remarks to it, and all that is deleted with these.
void collect(cfnode *nd, std::set<cfnode *> &dying) {
  if (!nd || !dying.insert(nd).second)
    return;
  collect(nd->ref, dying);
  for (cfnode *it : kit::nodes(nd))
    collect(it, dying);
  const cfgroup *in = nd->group;
  if (in && (!cfgrp(nd) || is(nd, cf_grpinst)) &&
      in->type == (cfrem(nd)   ? cf_grprem
                   : cfpar(nd) ? cf_grppar
                               : cf_grpgrp))
    collect(&nd->group->link, dying);
}

class program {
public:
  explicit program(std::string_view bytes) : left(bytes) {}

  void run() {
    using it = program;
    static constexpr void (program::*acts[])() = {
        &it::link, &it::link, &it::link,   &it::put,    &it::put,      &it::put,  &it::put,
        &it::put,  &it::put,  &it::remove, &it::remove, &it::exchange, &it::copy, &it::look,
        &it::look, &it::look, &it::stack,  &it::stack,  &it::stack};
    begin();
    read();
    while (!left.empty() && top) {
      begin();
      (this->*acts[choose(std::size(acts))])();
      jumped ? restart() : verify();
    }
    if (top)
      cfcatdelgrp(catalogs.empty() ? top : catalogs.back());
  }

private:
  kit::meter memory;
  std::string_view left; // of the input
  size_t failing = 0;    // the number of the called() that throws or jumps out; 0: none
  bool jumps = false, jumped = false;
  cfgroup *top = nullptr;          // the tree
  std::vector<cfgroup *> catalogs; // each over the one before, the first over the tree
  nodes before;                    // the tree's, when a step began
  std::set<cfnode *> dying, moved; // what a step is to delete; what it is to move or to add

  /// A number below `count`, from the next byte of the input; 0 at its end.
  size_t choose(size_t count) {
    const size_t choice = left.empty() ? 0 : static_cast<unsigned char>(left[0]);
    left.remove_prefix(!left.empty());
    return choice % count;
  }
  const char *name() {
    static const string longer(1200, 'k');
    return std::array<const char *, 6>{"a", "A", "b", "ab", "B", longer.c_str()}[choose(6)];
  }
  const char *value() {
    return std::array<const char *, 6>{"1", "true", "x", "F", nullptr, "longer"}[choose(6)];
  }
  cfnode *pick(cfnode_t type = cf_anchor) {
    nodes found = kit::nodes(catalogs.empty() ? &top->link : &catalogs.back()->link);
    if (type)
      std::erase_if(found, [=](const cfnode *nd) { return nd->type != type; });
    return found.empty() ? nullptr : found[choose(found.size())];
  }

  /// Begins a step: selects the call in it that fails, and notes what the tree holds.
  void begin() {
    const size_t choice = choose(8);
    failing = choice < 3 ? 1 + choose(24) : 0;
    jumps = choice == 0;
    memory.always = choice == 1;
    jumped = false;
    kit::said();
    before = top ? kit::nodes(&top->link) : nodes();
    dying.clear();
    moved.clear();
  }
  /// Makes a call. True if it neither threw nor jumped out.
  template <class Call> bool call(Call made) {
    std::jmp_buf away;
    memory.jump = jumps ? &away : nullptr;
    memory.countdown = failing;
    volatile bool done = false;
    try {
      jumped = jumps && setjmp(away);
      if (!jumped) {
        made();
        done = true;
      }
    } catch (const kit::thrown &) {
    }
    memory.countdown = 0;
    return done;
  }
  /// Compares the tree and the catalogs with what they must be after a step that did not jump out.
  void verify() {
    nodes after = top ? kit::nodes(&top->link) : nodes();
    const auto goes = [this](cfnode *nd) { return dying.contains(nd) || moved.contains(nd); };
    std::erase_if(before, goes);
    std::erase_if(after, [this](cfnode *nd) { return moved.contains(nd); });
    need(after == before, "all else is there, in its order");
    size_t blocks = top ? check_tree(&top->link) : 0;
    for (cfgroup *root : catalogs)
      blocks += check_tree(&root->link), check_catalog(root);
    need(blocks == memory.live, "each live block is reached from somewhere");
  }
  /// Continues after a jump. What is linked is complete and may be deleted. What the interrupted
  /// call had not linked is lost.
  void restart() {
    const auto is_kept = [this](cfgroup *grp) { return memory.alive(grp) && !grp->link.prev; };
    for (cfgroup *root : std::exchange(catalogs, {}))
      if (is_kept(root))
        cfdelgrp(root);
    top = top && is_kept(top) ? top : nullptr;
    memory.live = top ? check_tree(&top->link) : 0;
  }
  /// Deletes the catalogs, which do not match the tree any more.
  void drop() {
    for (; !catalogs.empty() && !jumped; catalogs.pop_back())
      if (memory.alive(catalogs.back()))
        cfdelgrp(catalogs.back());
  }

  cfnode *make(size_t type) {
    const long row = static_cast<long>(choose(4)) - 1;
    if (type == cf_remark)
      return &cfnewrem(name(), row)->link;
    if (type == cf_param)
      return &cfnewpar(name(), value(), row)->link;
    const char *cat = choose(2) ? name() : nullptr;
    cfgroup *grp = cfnewgrp(cat, name(), choose(4) ? cf_grpinst : cfgroup_t(choose(7)), row);
    for (size_t held = memory.live < 100 ? choose(3) : 0; held > 0; --held)
      cflinknd(grp, make(1 + choose(3)));
    return &grp->link;
  }
  /// An element to insert: a new one or, without a catalog, one of the tree.
  cfnode *element(cfnode_t type) {
    cfnode *nd = catalogs.empty() && choose(3) == 0 ? pick(type) : make(type);
    for (cfnode *it : nd ? kit::nodes(nd) : nodes())
      moved.insert(it);
    return nd;
  }

  /// Reads a file, with slots that may return anything.
  void read() {
    kit::asking<cflexer> slots;
    cflexer plain{}, &lex = choose(2) ? slots : plain;
    if (choose(2))
      slots.answer = [&](int yes) { return choose(4) ? yes : static_cast<int>(choose(3)) - 1; };
    const kit::stream fd = kit::source("# r\n# s\na b {\n# t\nk = 1\nk = x\n}\nb = F\n");
    call([&] { cflex(&lex, fd.get(), "cfg"); });
    top = lex.top;
    restart();
  }

  void link() {
    cfnode *it = pick(), *nd = pick();
    cfgroup *grp = cfgrp(it);
    const size_t what = choose(5);
    if (!catalogs.empty() || is_above(nd, it) || (grp == top && what > 2))
      return;
    for (cfnode *below : kit::nodes(nd))
      moved.insert(below);
    if (what == 0) {
      need(cfunlknd(nd) == nd && !nd->prev && !nd->next && !nd->group, "taken out");
      cfdelnd(nd);
    } else if (what < 3 && grp) {
      cfnode *end = &grp->elem;
      what == 1 ? void(cflinknd(grp, nd)) : void(cfchainnd(end, nd));
      need(end->prev == nd, "linked as the last");
    } else if (what == 3) {
      exchange(it, nd, [=] { return cfdelnd(cfxcgnd(it, nd)), nd; });
    } else {
      need(cfchainnd(it, nd) == it && it->prev == nd, "linked before another");
    }
  }

  /// Copies an element, with its targets if it is a reference, and deletes the copies.
  void copy() {
    cfnode *nd = pick(), *made = nullptr;
    if (memory.live > 100 || !call([&] { made = cfdupnd(nd); }))
      return;
    need(kit::dump(nd) == kit::dump(made), "a copy is the same");
    cfcatdelnd(made);
  }

  void stack() {
    cfgroup *source = catalogs.empty() ? top : catalogs.back(), *made = nullptr;
    if (catalogs.size() < 3 && call([&] { made = cfcatalog(source); }))
      catalogs.push_back(made);
  }

  /// Adds an element, or sets it.
  void put() {
    cfgroup *gc = cfgrp(pick(cf_group));
    cfnode *elem = element(choose(2) ? cf_group : cf_param), *hit = nullptr;
    cfgroup *grp = elem ? cfgrp(elem) : nullptr, *filer = elem ? owner(gc, elem) : nullptr;
    if (!elem || is_above(elem, target(&filer->link)))
      return;
    cfparam *par = cfpar(elem);
    const bool set = choose(2);
    const auto act = [&] {
      return grp ? &(set ? cfcatsetgrp : cfcataddgrp)(gc, grp)->link
                 : &(set ? cfcatsetpar : cfcataddpar)(gc, par)->link;
    };
    if (set && *(grp ? grp->name : par->key))
      hit = grp ? find_group(filer, grp->cat, grp->name) : find_param(filer, par->key, nullptr);
    if (hit)
      return exchange(hit, elem, act);
    if (!call(act) && !elem->group)
      return cfdelnd(elem);
    need(cfgrp(target(&filer->link))->elem.prev == elem, "added as the last");
    if (!is_above(&top->link, elem))
      drop(); // it is in a level
  }

  /// Exchanges an element. Drops the catalogs, which may then have it in the wrong level.
  void exchange() {
    cfnode *cnd = pick(), *nd = element(cnd->type);
    exchange(cnd, nd, [&] { return cfcatxcgnd(cnd, nd); });
    drop();
  }

  template <class Act> void exchange(cfnode *cnd, cfnode *nd, Act act) {
    cfnode *old = target(cnd), *next = old->next;
    cfgroup *in = old->group;
    if (is_above(nd, old))
      return;
    const bool ref = cnd->ref;
    for (cfnode *it : kit::nodes(old))
      if (!moved.contains(it))
        dying.insert(it);
    if (!call([&] { need(act() == (ref ? cnd : nd), "an exchange has its result"); }) && ref)
      need(cfcatxcgnd(cnd, nd) == cnd, "the call may be repeated");
    need(nd->group == in && (next == nd || nd->next == next), "in the place of the old element");
    need(!ref || target(cnd) == nd, "the reference leads to the new element");
    top = old == &top->link ? cfgrp(nd) : top;
    if (!is_above(&top->link, nd) || (cfgrp(nd) && !is(nd, cf_grpinst)))
      drop();
  }

  /// Deletes an element, the contents of a group, or a catalog with or without its targets.
  void remove() {
    if (!catalogs.empty() && choose(4) == 0) {
      call([&] { cfdelgrp(catalogs.back()); });
      return catalogs.pop_back();
    }
    cfnode *nd = pick();
    const bool alone = catalogs.empty() && choose(2);
    cfgroup *clear = choose(3) == 0 ? cfgrp(nd) : nullptr;
    std::set<cfnode *> kept; // a group that is cleared, with its targets
    for (cfnode *it = clear ? nd : nullptr; it; it = it->ref)
      kept.insert(it);
    dying = kept; // so that no block of them is collected
    for (cfnode *it : kit::nodes(nd))
      if (!clear || it != nd)
        alone ? void(dying.insert(it)) : collect(it, dying);
    std::erase_if(dying, [&](cfnode *it) { return kept.contains(it); });
    bool lost = false; // a catalog, or the target of a reference
    for (cfgroup *root : catalogs)
      for (cfnode *it : kit::nodes(&root->link))
        lost = lost || (dying.contains(it) ? it == &root->link : dying.contains(it->ref));
    call([&] {
      clear ? void((alone ? cfclrgrp : cfcatclrgrp)(clear)) : (alone ? cfdelnd : cfcatdelnd)(nd);
    });
    top = dying.contains(&top->link) && !jumped ? nullptr : top;
    if (lost)
      drop();
  }

  /// Makes calls that change nothing.
  void look() {
    cfgroup *grp = cfgrp(pick(cf_group));
    const char *cat = grp->type == cf_grpcat || choose(2) ? nullptr : name();
    const char *key = choose(4) ? name() : "", *val = value();
    need(cfcatgetgrp(grp, cat, key) == cfgrp(find_group(grp, cat, key)), "a group is looked up");
    need(cfcatgetpar(grp, key, val) == cfpar(find_param(grp, key, val)),
         "a parameter is looked up");
    need(kit::print(grp) == text_of(grp), "a group is printed");
    jumps = false; // a jump would leak the strings of the model
    call([&] { check(grp, static_cast<unsigned char>(choose(256))); });
  }
};

} // namespace

void edit(std::string_view bytes) { program(bytes).run(); }

} // namespace fuzz
