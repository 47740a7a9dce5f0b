// Shapes: the contents that are measured, in no library's syntax.
// SPDX-License-Identifier: MIT
#include "shapes.h"

#include <array>
#include <cstdlib>
#include <map>
#include <numeric>
#include <stdexcept>

namespace bench {
namespace {

constexpr std::array<const char *, 11> subjects = {"server", "disk", "client", "queue",
                                                   "worker", "mail", "proxy",  "buffer",
                                                   "index",  "job",  "user"};

std::string subject(std::size_t i) { return subjects[i % subjects.size()]; }

// The last letter of a key tells the type of its value: t, e, d, h.
constexpr std::array<const char *, 4> aspects = {"_limit", "_rate", "_enabled", "_path"};
constexpr std::size_t keys = subjects.size() * aspects.size();

std::string value(Type type, std::size_t i) {
  switch (type) {
  case Type::integer: return std::to_string(1000 + i * 37 % 9000);
  case Type::real: return std::to_string(i % 90) + "." + std::to_string(5 + i % 4 * 10);
  case Type::boolean: return i % 3 ? "true" : "false";
  case Type::text: break;
  }
  return "/var/lib/" + subject(i) + "/data" + std::to_string(i % 1000);
}

Element remark(std::size_t i) {
  return {Kind::remark, "", "what the " + subject(i) + " may use at most"};
}

Element param(std::size_t i) {
  const auto type = static_cast<Type>(i % aspects.size());
  return {Kind::param, subject(i / aspects.size()) + aspects[i % aspects.size()], value(type, i),
          type};
}

Element group(std::string cat, std::string name) {
  return {Kind::group, std::move(name), "", Type::text, std::move(cat), {}};
}

/// Adds `params` parameters to a group, `remarks` of them with a remark.
void fill(Element &grp, std::size_t params, std::size_t remarks, std::size_t seed) {
  for (std::size_t i = 0; i < params; ++i) {
    if (remarks > 0 && i % (params / remarks) == 0 && i / (params / remarks) < remarks)
      grp.children.push_back(remark(seed + i));
    grp.children.push_back(param((seed * aspects.size() + i) % keys));
    grp.children.back().text = value(grp.children.back().type, seed * 7 + i);
  }
}

Element typical() {
  Element top = group("", "");
  top.children = {remark(0), remark(1), {Kind::blank}};
  fill(top, 6, 0, 1);
  Element net = group("", "net");
  fill(net, 6, 1, 2);
  Element tls = group("", "tls");
  fill(tls, 4, 0, 3);
  net.children.push_back(tls);
  top.children.push_back(net);
  for (const char *name : {"alpha", "beta", "gamma"}) {
    Element host = group("host", name);
    fill(host, 6, 1, top.children.size());
    top.children.push_back(host);
  }
  Element cache = group("", "cache");
  fill(cache, 4, 0, 5);
  top.children.push_back(cache);
  return top;
}

/// Groups side by side, each with its parameters and remarks.
Element flat(std::size_t groups, std::size_t params, std::size_t remarks) {
  Element top = group("", "");
  top.children.reserve(groups);
  for (std::size_t i = 0; i < groups; ++i) {
    top.children.push_back(group("host", subject(i) + std::to_string(i)));
    fill(top.children.back(), params, remarks, i);
  }
  return top;
}

/// Chains of groups in one another.
Element nested(std::size_t chains, std::size_t depth, std::size_t params, std::size_t remarks) {
  Element top = group("", "");
  for (std::size_t chain = 0; chain < chains; ++chain) {
    Element *at = &top;
    for (std::size_t level = 0; level < depth; ++level) {
      at->children.push_back(
          group("", subject(level) + std::to_string(chain) + "_" + std::to_string(level)));
      at = &at->children.back();
      fill(*at, params, remarks, chain + level);
    }
  }
  return top;
}

/// One group of different keys, in no order.
Element crowded(std::size_t params) {
  Element top = group("", "");
  for (std::size_t i = 0; i < params; ++i)
    top.children.push_back({Kind::param, subject(i) + std::to_string(i * 7919 % params),
                            value(Type::integer, i), Type::integer});
  return top;
}

Element content(const std::string &name) {
  if (name == "typical")
    return typical();
  if (name == "wide")
    return flat(2000, 44, 4);
  if (name == "deep")
    return nested(34, 50, 8, 1);
  if (name.starts_with("crowded:"))
    return crowded(std::stoul(name.substr(8)));
  if (name == "guard")
    return flat(100, 44, 4);
  if (name.starts_with("chain:"))
    return group("", "");
  if (name.starts_with("scale:"))
    return flat(std::stoul(name.substr(6)) / 50, 44, 5);
  throw std::invalid_argument("no such shape: " + name);
}

std::size_t count(const Element &elem) {
  return std::accumulate(elem.children.begin(), elem.children.end(), std::size_t{0},
                         [](std::size_t sum, const Element &child) {
                           return sum + (child.kind != Kind::blank) + count(child);
                         });
}

Route route(const std::vector<const Element *> &groups, const Element &param) {
  Route way{groups, &param, {}, "", std::strtol(param.text.c_str(), nullptr, 10)};
  for (const Element *grp : groups) {
    if (!grp->cat.empty())
      way.path.push_back(grp->cat);
    way.path.push_back(grp->name);
  }
  way.path.push_back(param.name);
  for (const std::string &step : way.path)
    way.dotted += (way.dotted.empty() ? "" : ".") + step;
  return way;
}

void collect(const Element &grp, std::vector<const Element *> &above, std::vector<Route> &routes) {
  for (const Element &child : grp.children) {
    if (child.kind == Kind::param && child.type == Type::integer)
      routes.push_back(route(above, child));
    if (child.kind == Kind::group) {
      above.push_back(&child);
      collect(child, above, routes);
      above.pop_back();
    }
  }
}

/// Integer parameters spread evenly over the content, at most 64.
std::vector<Route> sample(const Element &top) {
  std::vector<Route> all;
  std::vector<const Element *> above;
  collect(top, above, all);
  const std::size_t wanted = std::min<std::size_t>(all.size(), 64);
  std::vector<Route> some;
  for (std::size_t i = 0; i < wanted; ++i)
    some.push_back(all[i * all.size() / wanted]);
  return some;
}

} // namespace

const Shape &shape(const std::string &name) {
  static std::map<std::string, Shape> shapes;
  const auto [it, fresh] = shapes.try_emplace(name);
  Shape &made = it->second;
  if (fresh) {
    made.name = name;
    made.top = content(name);
    made.elements = count(made.top);
    made.routes = sample(made.top);
  }
  return made;
}

} // namespace bench
