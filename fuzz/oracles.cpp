// Oracles: invariants of trees and catalogs, and the expected results of calls, computed in the
// simplest way.
// SPDX-License-Identifier: MIT
#include "oracles.h"

#include <cstring>
#include <map>
#include <set>

using kit::need;
using std::string;

namespace fuzz {
namespace {

string lower(string text) {
  for (char &c : text)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

/// Checks the value of a plain parameter against its evaluator. Returns how many blocks it has.
size_t check_value(const cfparam *par) {
  need(!par->eval == !par->vval, "a parameter has both a value and an evaluator or neither");
  if (!par->eval || par->vval == par->val)
    return 0;
  const int fixed = par->eval(nullptr, nullptr);
  string fresh(static_cast<size_t>(fixed < 0 ? par->eval(par->val, nullptr) : fixed), '\0');
  need(par->eval(par->val, fresh.data()) >= 0, "a value comes from a valid text");
  need(std::memcmp(fresh.data(), par->vval, fresh.size()) == 0, "a value is that of the text");
  need((par->vval == par + 1) == (fresh.size() <= 16), "a value of up to 16 bytes needs no block");
  return fresh.size() > 16;
}

/// True if a reference has the texts, the row and the kind of its target.
bool shows(cfnode *ref) {
  if (const cfparam *a = cfpar(ref), *b = cfpar(ref->ref); a && b)
    return a->key == b->key && a->val == b->val && a->row == b->row;
  const cfgroup *a = cfgrp(ref), *b = cfgrp(ref->ref);
  return a && b && a->cat == b->cat && a->name == b->name && a->row == b->row && a->type == b->type;
}

/// Prints a group by recursion. `gaps` has a bit for each type before which a blank line is due.
/// True if anything was printed.
bool print(cfgroup *grp, string &out, unsigned &gaps) {
  const auto line = [&](cfgroup *in, const string &text) {
    string indentation;
    for (; in; in = in->link.group)
      indentation += in->type == cf_grpinst ? "  " : "";
    out += indentation + text + '\n';
  };
  const auto gap = [&](const cfnode *nd) {
    if (gaps >> nd->type & 1U)
      line(nd->group, "");
  };
  const bool instance = grp->type == cf_grpinst, holds_all = instance || grp->type == cf_grptop;
  if (instance) {
    gap(&grp->link);
    line(grp->link.group, (*grp->cat ? grp->cat + string(" ") : "") + grp->name + " {");
  }
  gaps = holds_all ? 0 : gaps;
  bool any = false;
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it)) {
    cfgroup *child = cfgrp(it);
    if (child) {
      any = print(child, out, gaps) || any;
    } else {
      gap(it);
      line(grp, cfrem(it) ? string("# ") + cfrem(it)->txt
                          : cfpar(it)->key + string(" = ") + cfpar(it)->val);
      any = true;
    }
    const bool remarks = cfrem(it) || is(it, cf_grprem);
    if (!any)
      continue;
    gaps = grp->type == cf_grprem ? 0 : 1U << cf_remark;
    if (holds_all || grp->type == cf_grpcat || grp->type == cf_grpval)
      gaps |= 1U << cf_group;
    if (holds_all && remarks)
      gaps |= 1U << cf_param;
  }
  if (instance)
    line(grp->link.group, "}");
  return any || instance;
}

/// Elements of the source of a catalog, in their order, by where they are filed: by the target of
/// the owner, and the texts of the levels in it.
using filing = std::multimap<std::pair<cfgroup *, string>, cfnode *>;

/// Where the elements below `source` belong.
filing expected_filing(cfgroup *source) {
  filing expected;
  for (cfnode *nd : kit::nodes(&source->link))
    if (nd != &source->link && (cfpar(nd) || is(nd, cf_grpinst))) {
      cfgroup *holder = nd->group;
      while (holder != source && holder->type != cf_grpinst)
        holder = holder->link.group;
      const cfgroup *grp = cfgrp(nd);
      const string texts = !grp        ? string("=/") + cfpar(nd)->key
                           : *grp->cat ? string(grp->cat) + "//" + grp->name
                                       : string("/") + grp->name;
      expected.emplace(std::pair(holder, lower(texts)), nd);
    }
  return expected;
}

} // namespace

string text_of(cfgroup *top) {
  string out;
  unsigned gaps = 0;
  print(top, out, gaps);
  return out;
}

size_t check_tree(cfnode *root) {
  const auto all = kit::nodes(root);
  size_t blocks = all.size();
  need(!root->group && !root->prev && !root->next, "a root is in no list");
  for (cfnode *nd : all) {
    need(!nd->ref || (kit::meter::alive(nd->ref) && shows(nd)), "a reference shows its target");
    blocks += cfpar(nd) && !nd->ref ? check_value(cfpar(nd)) : 0;
  }
  return blocks;
}

void check_catalog(cfgroup *root) {
  filing found;
  std::set<std::pair<cfgroup *, string>> levels;
  for (cfnode *nd : kit::nodes(&root->link)) {
    string texts;
    cfgroup *up = nd->ref ? nd->group : cfgrp(nd);
    for (; up && !up->link.ref; up = up->link.group) {
      need(up->row == -1 && (!*up->cat || !*up->name), "a level has one text");
      texts = (up->type == cf_grpval ? "=" : up->cat) + string("/") + up->name + texts;
    }
    if (!nd->ref)
      need(levels.emplace(up, lower(texts)).second, "no two levels have one text");
    else if (nd->group)
      found.emplace(std::pair(cfgrp(up->link.ref), lower(texts)), nd->ref);
  }
  const filing expected = expected_filing(cfgrp(root->link.ref));
  need(found == expected, "each element is filed once, where it belongs");
}

cfnode *find_group(cfgroup *gc, const char *cat, const char *name) {
  cfnode *it = cfiterator(gc);
  if (cat && *cat) {
    it = cfseekgrp(it, cat, nullptr);
    if (!name || !*name)
      return is(it, cf_grpcat) ? it : nullptr;
    it = is(it, cf_grpcat) ? cfiterator(cfgrp(it)) : it;
  }
  it = cfseekgrp(it, nullptr, name);
  it = is(it, cf_grpcat) ? cfiterator(cfgrp(it)) : it;
  for (it = cfseekgrp(it, cat, name); !cfend(it) && !is(it, cf_grpinst);)
    it = cfseekgrp(cfiterator(cfgrp(it)), cat, name);
  return cfend(it) ? nullptr : it;
}

cfnode *find_param(cfgroup *gc, const char *key, const char *val) {
  for (;;) {
    cfnode *hit = cfseekpar(cfiterator(gc), key, val);
    if (val && cfend(hit)) {
      hit = cfseekpar(cfiterator(gc), key, nullptr);
      while (cfpar(hit))
        hit = cfseekpar(hit->next, key, nullptr);
    }
    if (!cfgrp(hit))
      return cfend(hit) ? nullptr : hit;
    gc = cfgrp(hit);
  }
}

} // namespace fuzz
