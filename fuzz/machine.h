// machine: the calls that a program makes, each with what holds behind it, whether it left or not.
// SPDX-License-Identifier: MIT
#pragma once

#include "world.h"

namespace fuzz {

class machine {
public:
  explicit machine(program &choices) : in(choices), here(choices) {}
  void run();

private:
  program &in;
  world here;
  int leaving = 0; // the call out that leaves; 0: none
  bool for_good = false;

  void step();

  // Calls on trees; some take a node of a catalog too.
  void make();
  void read();
  void link();
  void chain();
  void xcg();
  void unlink();
  void del();
  void clear();
  void copy();
  void evaluate();
  void look();

  // Calls on catalogs; most take a node of a tree too.
  void stack();
  void unstack();
  void add();
  void set();
  void catxcg();
  void catdel();
  void catclear();

  void edit(const cfnode *nd, const cfnode *place);
  void add(cfgroup *gc, cfnode *elem, cfnode *(*adding)(cfnode *, cfnode *));
  void exchange(cfnode *cnd, cfnode *nd, cfnode *at, cfnode *(*exchanging)(cfnode *, cfnode *));
  void cutting(const cfnode *nd);

  bool full() const { return live() > 160; }

  /// Makes the call, which may leave as the program told. True if it did not.
  template <class Call> bool call(Call call) {
    leave_at(leaving, for_good);
    bool done = true;
    try {
      call();
    } catch (const left &) {
      done = false;
    }
    leave_at(0);
    return done;
  }
};

} // namespace fuzz
