// tree_calls: what the machine calls on trees.
// SPDX-License-Identifier: MIT
#include "machine.h"

#include "aim.h"
#include "supply.h"

#include <memory>

namespace fuzz {

void machine::make() {
  if (full())
    return;
  const char *first = name(in.choose(8));
  const size_t second = in.choose(8);
  const long row = static_cast<long>(in.choose(8)) - 1;
  cfnode *made = nullptr;
  call([&] {
    switch (in.choose(4)) {
    case 0: made = &cfnewrem(first, row)->link; break;
    case 1: made = &cfnewpar(first, value(second), row)->link; break;
    case 2: made = &cfnewgrp(first, name(second), cf_grpinst, row)->link; break;
    default: made = &cfnewgrp(first, name(second), cfgroup_t(in.choose(7)), row)->link;
    }
  });
  here.involve(made);
}

void machine::read() {
  if (full())
    return;
  const std::string_view bytes = file(in.choose(5));
  const std::unique_ptr<FILE, int (*)(FILE *)> fd(
      fmemopen(const_cast<char *>(bytes.data()), bytes.size(), "r"), std::fclose);
  cflexer lex = {};
  call([&] { cflex(&lex, fd.get(), "cfg"); });
  if (lex.top)
    here.involve(&lex.top->link);
}

/// Remarks are in no catalog: those stay true when one comes or goes.
void machine::edit(const cfnode *nd, const cfnode *place) {
  if (nd->type == cf_remark)
    return;
  here.edit(nd);
  here.edit(place);
}

void machine::link() {
  cfgroup *grp = here.pick_group(world::reach::trees);
  cfnode *nd = here.pick(world::reach::trees);
  if (!grp || !nd || above(nd, &grp->link))
    return;
  edit(nd, &grp->link);
  need(cflinknd(grp, nd) == grp && grp->elem.prev == nd, "linked last");
}

void machine::chain() {
  cfnode *it = here.pick(world::reach::trees);
  cfnode *nd = here.pick(world::reach::trees);
  if (above(nd, it))
    return;
  edit(nd, it);
  need(cfchainnd(it, nd) == it && it->prev == (it->group ? nd : nullptr), "chained in front");
}

void machine::xcg() {
  cfnode *it = here.pick(world::reach::trees);
  cfnode *nd = here.pick(world::reach::trees);
  if (above(nd, it))
    return;
  const cfgroup *in_group = it->group;
  here.edit(it);
  here.edit(nd);
  need(cfxcgnd(it, nd) == it && !it->group && nd->group == in_group, "exchanged");
}

void machine::unlink() {
  cfnode *nd = here.pick(world::reach::trees);
  edit(nd, nd);
  need(cfunlknd(nd) == nd && !nd->group, "taken out");
}

void machine::del() {
  const handle nd(here.pick(world::reach::all));
  edit(nd.nd, nd.nd);
  call([&] { cfdelnd(nd.nd); });
  need(!nd.alive(), "a deleted element is gone, also if the call left");
}

void machine::clear() {
  cfgroup *grp = here.pick_group(world::reach::all);
  if (!grp)
    return;
  here.edit(&grp->link);
  call([&] { cfclrgrp(grp); });
  need(cfempty(grp), "a cleared group is empty, also if the call left");
}

/// What is copied from a catalog brings its targets along and goes with them at once.
void machine::copy() {
  cfnode *nd = here.pick(world::reach::all);
  if (full() || (here.storey(nd) && live() > 60))
    return;
  cfnode *made = nullptr;
  const size_t before = live();
  if (!call([&] { made = cfdupnd(nd); }))
    return need(live() == before, "a copy that was not made leaves nothing");
  if (group(nd))
    need(dump(group(nd), true) == dump(group(made), true), "a copy is the same");
  if (here.storey(nd) == 0)
    return here.involve(made);
  call([&] { cfcatdelnd(made); });
  need(live() == before, "the copy of a catalog goes with its targets");
}

void machine::evaluate() {
  cfparam *par =
      param(here.pick(world::reach::all, [](const cfnode *nd) { return nd->type == cf_param; }));
  if (!par)
    return;
  const cfparam *last = param(target(&par->link));
  if (in.choose(4) == 0) {
    call([&] { cfunevalpar(par); });
    return need(!par->eval && !par->vval && !last->vval, "a value is dropped at all references");
  }
  const cfeval_t eval = evaluators[in.choose(evaluators.size())];
  const cfparam before = *last;
  int result = 0;
  if (!call([&] { result = cfevalpar(par, eval); }))
    return;
  if (result)
    need(par->eval == eval && last->eval == eval && par->vval == last->vval, "evaluated");
  else
    need(last->eval == before.eval && last->vval == before.vval, "a refusal changes nothing");
}

/// Calls that only look; what they find is text and links that must be alive.
void machine::look() {
  cfnode *one = here.pick(world::reach::all);
  cfnode *other = here.pick(world::reach::all);
  cfdiff diff = {};
  diff.opt = static_cast<unsigned>(in.choose(4));
  if (in.choose(2))
    diff.chkscope = chkscope;
  cfdiffdfl(&diff);
  call([&] {
    need(!cfdiffnd(&diff, one, one), "an element is the same as itself");
    need(cfdiffnd(&diff, one, other) == cfdiffnd(&diff, other, one), "as different both ways");
  });
  cfgroup *grp = here.pick_group(world::reach::all);
  if (!grp)
    return;
  const char *cat = grp->type == cf_grpcat ? nullptr : name(in.choose(8));
  const char *key = name(in.choose(8));
  const bool given = key && *key;
  const cfgroup *found = cfcatgetgrp(grp, cat, key);
  need(!found || found->type == cf_grpinst || (found->type == cf_grpcat && cat && !given),
       "an instance, or the category that was asked for");
  need(!found || !given || same(found->name, key), "an instance of that name");
  const cfparam *par = cfcatgetpar(grp, key, nullptr);
  need(!par || !given || same(par->key, key), "a parameter of that key");
  cfparser parser = {};
  parser.scopedef = scopedef;
  int valid = 0;
  if (call([&] { valid = cfparse(&parser, grp, "cfg"); }))
    need(valid == (said().find("E ") == std::string::npos), "reports are failures");
  need(print(grp) == print(grp), "printing changes nothing");
}

} // namespace fuzz
