// A file as a program uses it: read, checked, and every value taken, by the C functions and by the
// C++ interface.
// SPDX-License-Identifier: MIT
#include "operations.h"
#include "ours/trees.h"

#include <cf.hpp>

#include <cstring>
#include <map>
#include <set>

namespace bench {
namespace {

/// What the values of a shape add up to: the same by the C functions and by the C++ interface.
struct Sum {
  double numbers = 0;
  std::size_t texts = 0, truths = 0;
  bool operator==(const Sum &) const = default;
};

/// Goes through all values of a shape. `step` gives a group's child, `take` adds a parameter's
/// value.
template <class Group, class Step, class Take>
void visit(const Element &elem, Group grp, const Step &step, const Take &take) {
  for (const Element &child : elem.children)
    if (child.kind == Kind::param)
      take(grp, child);
    else if (child.kind == Kind::group)
      visit(child, step(grp, child), step, take);
}

// By the C functions. Instead of a table of symbols, the last letter of a key tells the type.

cfscope *definition(const char *scope) {
  static cfscope integer = {"", cfevint, 0}, real = {"", cfevflt, 0}, boolean = {"", cfevbool, 0},
                 text = {"", cfevstr, 0}, group = {"", nullptr, 0};
  switch (scope[std::strlen(scope) - 1]) {
  case 't': return &integer;
  case 'e': return &real;
  case 'd': return &boolean;
  case 'h': return &text;
  default: return &group;
  }
}

void take(Sum &sum, const cfparam *par, Type type) {
  switch (type) {
  case Type::integer: sum.numbers += static_cast<double>(cfint(par)); break;
  case Type::real: sum.numbers += cfflt(par); break;
  case Type::boolean: sum.truths += cfbool(par) != 0; break;
  case Type::text: sum.texts += std::strlen(cfstr(par)); break;
  }
}

Sum use(const Shape &shape, std::FILE *fd) {
  cfgroup *top = readtree(fd);
  cfparser parser{};
  parser.scopedef = definition;
  if (!cfparse(&parser, top, "shape"))
    broken("a shape does not check");
  cfgroup *catalog = cfcatalog(top);
  Sum sum;
  visit(
      shape.top, catalog,
      [](cfgroup *grp, const Element &child) {
        return cfcatgetgrp(grp, child.cat.c_str(), child.name.c_str());
      },
      [&](cfgroup *grp, const Element &child) {
        take(sum, cfcatgetpar(grp, child.name.c_str(), nullptr), child.type);
      });
  cfdelgrp(catalog);
  cfdelgrp(top);
  return sum;
}

// By the C++ interface.

cf::entry keyof(const Element &param) {
  const cf::key key(param.name);
  switch (param.type) {
  case Type::integer: return key.integer(0, 10000);
  case Type::real: return key.real();
  case Type::boolean: return key.boolean();
  case Type::text: break;
  }
  return key.text();
}

/// The entries for what any of these groups holds. The groups share one entry in the schema.
cf::entry entries(const std::vector<const Element *> &groups) {
  std::vector<cf::entry> list;
  std::map<std::pair<std::string, std::string>, std::vector<const Element *>> inner;
  std::set<std::string> keys;
  for (const Element *grp : groups)
    for (const Element &child : grp->children)
      if (child.kind == Kind::group)
        inner[{child.cat, child.cat.empty() ? child.name : ""}].push_back(&child);
      else if (child.kind == Kind::param && keys.insert(child.name).second)
        list.push_back(keyof(child));
  for (const auto &[name, members] : inner)
    if (name.first.empty())
      list.push_back(cf::one(name.second, entries(members)));
    else
      list.push_back(cf::each(name.first, entries(members)));
  return list;
}

void take(Sum &sum, const cf::group &grp, const Element &param) {
  switch (param.type) {
  case Type::integer: sum.numbers += static_cast<double>(grp.get<long>(param.name)); break;
  case Type::real: sum.numbers += grp.get<double>(param.name); break;
  case Type::boolean: sum.truths += grp.get<bool>(param.name); break;
  case Type::text: sum.texts += grp.get<std::string_view>(param.name).size(); break;
  }
}

Sum use(const Shape &shape, const cf::document &doc) {
  Sum sum;
  visit(
      shape.top, doc.top(),
      [](const cf::group &grp, const Element &child) {
        return child.cat.empty() ? grp.group(child.name) : grp.group(child.cat, child.name);
      },
      [&](const cf::group &grp, const Element &child) { take(sum, grp, child); });
  return sum;
}

Stream openmemory(const Shape &shape) {
  const std::string &text = input(shape, Syntax::cf).text;
  return {fmemopen(const_cast<char *>(text.data()), text.size(), "r"), Close()};
}

template <Stream (*open)(const Shape &)> Task byfunctions(const Shape &shape) {
  return {.work = [&shape] {
    if (use(shape, open(shape).get()).texts == 0)
      broken("no texts");
  }};
}

template <class Load> Task byinterface(const Shape &shape, Load load) {
  auto schema = std::make_shared<cf::schema>(std::vector{entries({&shape.top})});
  if (use(shape, load(*schema)) != use(shape, openinput(shape).get()))
    broken("the interface takes other values");
  return {.work = [&shape, schema, load] {
    if (use(shape, load(*schema)).texts == 0)
      broken("no texts");
  }};
}

Task loadfile(const Shape &shape) {
  return byinterface(shape, [&in = input(shape, Syntax::cf)](const cf::schema &schema) {
    return cf::load(in.file, schema);
  });
}

Task loadmemory(const Shape &shape) {
  return byinterface(shape, [&in = input(shape, Syntax::cf)](const cf::schema &schema) {
    return cf::parse(in.text, schema);
  });
}

const bool added[] = {
    add({"UseFile", "cf", byfunctions<openinput>}),
    add({"UseFile", "cf.hpp", loadfile}),
    add({"UseMemory", "cf", byfunctions<openmemory>}),
    add({"UseMemory", "cf.hpp", loadmemory}),
};

} // namespace
} // namespace bench
