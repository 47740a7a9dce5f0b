// values: what a checked file says, or a default where it says nothing.
// SPDX-License-Identifier: MIT
#pragma once

#include <cf.h>

//! [values]
// The check has given every parameter that is there the type of its symbol. A group that is not
// there, NULL, leaves everything to the defaults.

inline const cfparam *parameter(cfgroup *gc, const char *key) {
  return gc ? cfcatgetpar(gc, key, nullptr) : nullptr;
}

inline long number(cfgroup *gc, const char *key, long otherwise) {
  const cfparam *par = parameter(gc, key);
  return par ? cfint(par) : otherwise;
}

inline const char *text(cfgroup *gc, const char *key, const char *otherwise) {
  const cfparam *par = parameter(gc, key);
  return par ? cfstr(par) : otherwise;
}

/// Calls `what` for each instance of a category. A catalog has a level for each category, in it one
/// for each name, and in that the instances.
template <class What> void each(cfgroup *gc, const char *cat, What what) {
  cfgroup *category = cfcatgetgrp(gc, cat, nullptr);
  if (!category)
    return;
  for (cfnode *name = cfiterator(category); !cfend(name); cfnext(&name))
    for (cfnode *inst = cfiterator(cfgrp(name)); !cfend(inst); cfnext(&inst))
      what(cfgrp(inst));
}
//! [values]
