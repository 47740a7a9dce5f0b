// catalog_calls: what the machine calls on catalogs.
// SPDX-License-Identifier: MIT
#include "machine.h"

#include "aim.h"

namespace fuzz {
namespace {

template <class Grp, class Par> cfnode *typed(cfnode *elem, Grp grp, Par par) {
  if (cfparam *it = param(elem))
    return &par(it)->link;
  return &grp(group(elem))->link;
}
cfnode *cataddnd(cfnode *gc, cfnode *elem) {
  return typed(
      elem, [=](cfgroup *it) { return cfcataddgrp(group(gc), it); },
      [=](cfparam *it) { return cfcataddpar(group(gc), it); });
}
cfnode *catsetnd(cfnode *gc, cfnode *elem) {
  return typed(
      elem, [=](cfgroup *it) { return cfcatsetgrp(group(gc), it); },
      [=](cfparam *it) { return cfcatsetpar(group(gc), it); });
}

} // namespace

void machine::stack() {
  cfgroup *source =
      here.storeys() ? here.catalog(here.storeys()) : here.pick_group(world::reach::trees);
  if (!source || here.storeys() == 3 || full())
    return;
  cfgroup *made = nullptr;
  if (call([&] { made = cfcatalog(source); }))
    here.stack(made);
}

void machine::unstack() {
  if (!here.storeys())
    return;
  cfgroup *root = here.catalog(1 + in.choose(here.storeys()));
  here.edit(&root->link);
  call([&] { cfdelgrp(root); });
}

void machine::add() {
  cfgroup *gc = here.pick_group(world::reach::all);
  cfnode *elem = here.pick_elem(in.choose(2) ? cf_group : cf_param);
  if (gc && elem && !above(elem, &place(gc, elem)->link))
    add(gc, elem, cataddnd);
}

void machine::add(cfgroup *gc, cfnode *elem, cfnode *(*adding)(cfnode *, cfnode *)) {
  cfgroup *to = place(gc, elem);
  cfgroup *filer = owner(gc, elem);
  const size_t storey = here.storey(&gc->link);
  here.edit(elem);
  if (storey)
    here.edit_through(storey);
  else
    here.edit(&to->link);
  if (here.storey(&to->link) || &to->link != target(&filer->link))
    here.untrue(storey); // plainly into a catalog, or beside what it stands for, a level of a tree
  cfnode *made = nullptr;
  if (!call([&] { made = adding(&gc->link, elem); }))
    return need(!elem->group, "what is not added is in no list");
  need(to->elem.prev == elem, "added last");
  if (!filer->link.ref)
    need(made == elem, "what is plainly linked is the result");
  else if (elem->type == cf_param || group(elem)->type == cf_grpinst)
    need(made->ref && target(made) == elem, "the new reference is the result");
  else
    need(made == &filer->link, "the owner is the result");
}

void machine::set() {
  cfgroup *gc = here.pick_group(world::reach::all);
  cfnode *elem = here.pick_elem(in.choose(2) ? cf_group : cf_param);
  if (!gc || !elem || above(elem, &place(gc, elem)->link))
    return;
  cfnode *cnd = hit(gc, elem);
  if (!cnd)
    return add(gc, elem, catsetnd);
  if (exchangeable(elem, cnd))
    exchange(cnd, elem, &gc->link, catsetnd);
}

void machine::catxcg() {
  cfnode *cnd = here.pick(world::reach::all);
  cfnode *nd = in.choose(8) ? here.pick_elem(cnd->type) : here.pick(world::reach::trees);
  if (!nd)
    return;
  if (cnd->ref && cnd->type != nd->type)
    return need(!cfcatxcgnd(cnd, nd), "kinds that differ are refused");
  if (exchangeable(nd, cnd))
    exchange(cnd, nd, cnd, cfcatxcgnd);
}

void machine::exchange(cfnode *cnd, cfnode *nd, cfnode *at,
                       cfnode *(*exchanging)(cfnode *, cfnode *)) {
  const bool ref = cnd->ref != nullptr;
  const handle old(target(cnd));
  if (nd != old.nd)
    here.edit(nd);
  if (!ref)
    here.edit(cnd);
  else
    here.edit_through(here.storey(cnd));
  if (ref && cnd->group && !alike(cnd, nd))
    here.untrue(here.storey(cnd));
  cfnode *result = nullptr;
  const bool done = call([&] { result = exchanging(at, nd); });
  if (!done && ref)
    result = cfcatxcgnd(cnd, nd); // once more, to its end
  if (done || ref)
    need(result == (ref ? cnd : nd), "an exchange has its result");
  need(nd == old.nd || !old.alive(), "the old element is gone, also if the call left");
  need(!ref || target(cnd) == nd, "the reference leads to the new one");
}

/// Notes a deletion through a node. What hangs on an irregular block dies with it untold.
void machine::cutting(const cfnode *nd) {
  if (here.storey(nd) == 0)
    here.edit(nd);
  else
    here.edit_through(here.irregular() ? 0 : here.storey(nd));
}

void machine::catdel() {
  const handle nd(here.pick(world::reach::all));
  const handle last(target(nd.nd));
  const handle block(binder(last.nd));
  cutting(nd.nd);
  call([&] { cfcatdelnd(nd.nd); });
  need(!nd.alive() && !last.alive(), "an element goes with its target, also if the call left");
  need(!block.alive(), "the block that bound remarks to it goes too");
}

void machine::catclear() {
  cfgroup *grp = here.pick_group(world::reach::all);
  if (!grp)
    return;
  cutting(&grp->link);
  const handle last(target(&grp->link));
  const bool regular = !here.irregular(); // else the target may hang on a block that goes
  call([&] { cfcatclrgrp(grp); });
  need(cfempty(grp) && (last.alive() || !regular), "a cleared group stays, as its target does");
}

} // namespace fuzz
