// Invariants: what holds of every tree and of every catalog between two calls.
// SPDX-License-Identifier: MIT
#include "invariants.h"

#include "fuzz.h"

#include <cctype>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace fuzz {
namespace {

const cfgroup *group(const cfnode *nd) { return reinterpret_cast<const cfgroup *>(nd); }
const cfparam *param(const cfnode *nd) { return reinterpret_cast<const cfparam *>(nd); }

/// The value of a plain parameter is what its evaluator makes of its text; gives its blocks.
size_t check_value(const cfparam *par) {
  need(!par->eval == !par->vval, "a parameter has both a value and an evaluator or neither");
  if (!par->eval || par->vval == par->val)
    return 0;
  int size = par->eval(nullptr, nullptr);
  if (size < 0)
    size = par->eval(par->val, nullptr);
  need(size > 0, "a value of no size is the text");
  std::vector<unsigned char> fresh(static_cast<size_t>(size));
  need(par->eval(par->val, fresh.data()) >= 0, "a value comes from a valid text");
  need(std::memcmp(fresh.data(), par->vval, fresh.size()) == 0, "a value is that of the text");
  const bool inline_buffer = par->vval == par + 1;
  need(inline_buffer == (size <= 16), "values up to 16 bytes need no block");
  need(inline_buffer || born(par->vval), "a value's block is live");
  return inline_buffer ? 0 : 1;
}

void check_text(const char *text) { need(text && std::strlen(text) < 1'000'000, "a text ends"); }

size_t check_element(const cfnode *nd);

size_t check_children(const cfgroup *grp) {
  const cfnode *anchor = &grp->elem;
  need(anchor->type == cf_anchor && anchor->group == grp && !anchor->ref,
       "an anchor names its group");
  size_t blocks = 0;
  const cfnode *before = anchor;
  for (const cfnode *it = anchor->next; it != anchor; before = it, it = it->next) {
    need(born(it), "a linked element is live");
    need(it->prev == before && it->group == grp, "a ring is closed and names its group");
    blocks += check_element(it);
  }
  need(anchor->prev == before, "a ring ends on its anchor");
  return blocks;
}

size_t check_element(const cfnode *nd) {
  need(!nd->ref || nd->ref->type == nd->type, "a reference is of its target's kind");
  switch (nd->type) {
  case cf_group:
    need(group(nd)->type >= cf_grptop && group(nd)->type <= cf_grprem, "a kind of group");
    check_text(group(nd)->cat);
    check_text(group(nd)->name);
    return 1 + check_children(group(nd));
  case cf_remark: check_text(reinterpret_cast<const cfremark *>(nd)->txt); return 1;
  case cf_param:
    check_text(param(nd)->key);
    check_text(param(nd)->val);
    return 1 + (nd->ref ? 0 : check_value(param(nd)));
  default: need(false, "no anchor is an element"); return 0;
  }
}

/// A catalog beside its source.
class catalog_check {
public:
  catalog_check(cfgroup *catalog, bool everything_filed) : root(catalog), filed(everything_filed) {}

  void run() {
    check_reference(&root->link);
    collect(root);
    order[root->link.ref] = 0;
    references[root->link.ref] = &root->link;
    compare(group(root->link.ref));
    for (const auto &[target, ref] : references)
      need(order.count(target) || !filed, "a catalog refers to nothing but its source's elements");
    if (filed)
      check_order(root);
    if (references.size() < 200)
      for (const auto &[target, ref] : references)
        if (ref != &root->link && filed)
          check_lookup(ref);
  }

private:
  cfgroup *root;
  bool filed;
  std::map<const cfnode *, const cfnode *> references; // by target
  std::map<const cfnode *, size_t> order;              // of the source's elements

  static bool islevel(const cfnode *nd) {
    return nd->type == cf_group && !nd->ref &&
           (group(nd)->type == cf_grpcat || group(nd)->type == cf_grpval);
  }

  /// The group above that is a reference.
  static const cfgroup *owner(const cfnode *nd) {
    const cfgroup *grp = nd->group;
    while (!grp->link.ref)
      grp = grp->link.group;
    return grp;
  }

  static void check_reference(const cfnode *nd) {
    need(born(nd->ref), "a target is live");
    if (nd->type == cf_group) {
      const cfgroup *ref = group(nd);
      const cfgroup *target = group(nd->ref);
      need(ref->cat == target->cat && ref->name == target->name && ref->row == target->row &&
               ref->type == target->type,
           "a reference shows its target");
    } else {
      const cfparam *ref = param(nd);
      const cfparam *target = param(nd->ref);
      need(ref->key == target->key && ref->val == target->val && ref->row == target->row,
           "a reference shows its target");
    }
  }

  void collect(const cfgroup *grp) {
    std::set<std::string> levels;
    for (const cfnode *it = grp->elem.next; it->type != cf_anchor; it = it->next) {
      if (it->ref) {
        check_reference(it);
        need(references.emplace(it->ref, it).second, "an element has one reference");
        if (filed)
          check_place(it);
      } else {
        need(!filed || islevel(it), "a catalog holds levels and references");
        if (filed)
          check_level(group(it), levels);
      }
      if (it->type == cf_group)
        collect(group(it));
    }
  }

  static void check_level(const cfgroup *level, std::set<std::string> &levels) {
    need(level->row == -1 && (!*level->cat || !*level->name), "a level has one text and no row");
    std::string text = std::to_string(level->type) + level->cat + " " + level->name;
    for (char &ch : text)
      ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    if (*level->cat || *level->name)
      need(levels.insert(text).second, "no two levels of one text");
  }

  /// A reference stands where its texts belong; one without a name or key in the first level met.
  static void check_place(const cfnode *ref) {
    const cfgroup *level = ref->group;
    if (ref->type == cf_param) {
      const cfparam *par = param(ref);
      need(level->type == cf_grpval && level->link.group == owner(ref),
           "a value level holds values");
      need(!*par->key || same(par->key, level->name), "a value level holds one key");
      return;
    }
    const cfgroup *grp = group(ref);
    need(islevel(&level->link) && level->type == cf_grpcat, "an instance stands in a level");
    need(!*grp->name || same(grp->name, level->name), "a name level holds one name");
    if (*grp->cat) {
      const cfgroup *category = level->link.group;
      need(category->type == cf_grpcat && same(grp->cat, category->cat),
           "a category holds its own");
      level = category;
    }
    need(level->link.group == owner(ref), "a level belongs to an owner");
  }

  /// Each instance and parameter below `grp` has its reference, under the owner that stands for
  /// what is around it.
  void compare(const cfgroup *grp) {
    for (const cfnode *it = grp->elem.next; it->type != cf_anchor; it = it->next) {
      const bool instance = it->type == cf_group && group(it)->type == cf_grpinst;
      if (instance || it->type == cf_param) {
        order[it] = order.size();
        const auto ref = references.find(it);
        need(ref != references.end(), "an element has a reference");
        const cfgroup *around = it->group;
        while (!references.count(&around->link))
          around = around->link.group;
        need(&owner(ref->second)->link == references[&around->link], "a reference has its owner");
      }
      if (it->type == cf_group)
        compare(group(it));
    }
  }

  static bool nameless(const cfnode *nd) {
    return nd->type == cf_param ? !*param(nd)->key : !*group(nd)->name;
  }

  /// What one level holds stands in the order of the source; a text that is empty chooses no level.
  void check_order(const cfgroup *grp) {
    size_t last = 0;
    for (const cfnode *it = grp->elem.next; it->type != cf_anchor; it = it->next) {
      if (it->ref && order.count(it->ref) && !nameless(it)) {
        need(order[it->ref] > last, "a level keeps the source's order");
        last = order[it->ref];
      }
      if (it->type == cf_group)
        check_order(group(it));
    }
  }

  /// The lookup of a reference's texts gives the first of its level that has them.
  static void check_lookup(const cfnode *ref) {
    auto *gc = const_cast<cfgroup *>(owner(ref));
    const cfnode *first = ref->group->elem.next;
    if (nameless(ref))
      return;
    if (ref->type == cf_param) {
      while (!same(param(first)->key, param(ref)->key))
        first = first->next;
      need(&cfcatgetpar(gc, param(ref)->key, nullptr)->link == first, "a parameter is found");
      return;
    }
    const auto *grp = group(ref);
    while (!first->ref || !same(group(first)->name, grp->name) ||
           !same(group(first)->cat, grp->cat))
      first = first->next;
    need(&cfcatgetgrp(gc, grp->cat, grp->name)->link == first, "an instance is found");
  }
};

} // namespace

size_t check_tree(const cfnode *root) {
  need(born(root) && !root->group && !root->prev && !root->next, "a root is in no list");
  return check_element(root);
}

void check_catalog(cfgroup *root, bool filed) { catalog_check(root, filed).run(); }

} // namespace fuzz
