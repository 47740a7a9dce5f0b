// libConfuse: sections and options, which are to be declared before reading.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <confuse.h>

#include <deque>
#include <map>

namespace bench {
namespace {

/// The declarations of a content, made once. A category is a section with titles.
class Declarations {
public:
  explicit Declarations(const Element &top) : root(declare({&top})) {}
  cfg_opt_t *options() const { return root; }

private:
  std::deque<std::vector<cfg_opt_t>> lists; // a deque, which does not move them when it grows
  cfg_opt_t *root;

  static cfg_opt_t option(const Element &par) {
    const char *name = par.name.c_str();
    switch (par.type) {
    case Type::integer: return CFG_INT(name, 0, CFGF_NODEFAULT);
    case Type::real: return CFG_FLOAT(name, 0, CFGF_NODEFAULT);
    case Type::boolean: return CFG_BOOL(name, cfg_false, CFGF_NODEFAULT);
    case Type::text: break;
    }
    return CFG_STR(name, nullptr, CFGF_NODEFAULT);
  }

  /// Declares what any of the groups of one kind holds.
  cfg_opt_t *declare(const std::vector<const Element *> &groups) {
    std::map<std::string, const Element *> params;
    std::map<std::string, std::vector<const Element *>> sections;
    for (const Element *grp : groups)
      for (const Element &child : grp->children) {
        if (child.kind == Kind::param)
          params.emplace(child.name, &child);
        if (child.kind == Kind::group)
          sections[child.cat.empty() ? child.name : child.cat].push_back(&child);
      }
    std::vector<cfg_opt_t> list;
    for (const auto &[name, par] : params)
      list.push_back(option(*par));
    for (const auto &[name, members] : sections) {
      const Element &one = *members.front();
      const cfg_flag_t flags = one.cat.empty() ? CFGF_NONE : CFGF_MULTI | CFGF_TITLE;
      cfg_opt_t *inner = declare(members);
      list.push_back(CFG_SEC((one.cat.empty() ? one.name : one.cat).c_str(), inner, flags));
    }
    list.push_back(CFG_END());
    lists.push_back(std::move(list));
    return lists.back().data();
  }
};

class Libconfuse {
public:
  static constexpr const char *name = "libconfuse";
  static constexpr Syntax syntax = Syntax::confuse;

  explicit Libconfuse(const Shape &shape) : declarations(shape.top) {}
  Libconfuse(const Libconfuse &) = delete;
  Libconfuse &operator=(const Libconfuse &) = delete;
  ~Libconfuse() { clear(); }

  bool readfile(const std::string &file) {
    start();
    return cfg_parse(config, file.c_str()) == CFG_SUCCESS;
  }
  bool readmemory(const std::string &text) {
    start();
    return cfg_parse_buf(config, text.c_str()) == CFG_SUCCESS;
  }
  long get(const Route &route) { return cfg_getint(find(route), route.param->name.c_str()); }
  void set(const Route &route, long value) {
    cfg_setint(find(route), route.param->name.c_str(), value);
  }
  void print(std::FILE *fd) { cfg_print(config, fd); }
  void clear() {
    if (config)
      cfg_free(config);
    config = nullptr;
  }

private:
  Declarations declarations;
  cfg_t *config = nullptr;

  cfg_t *find(const Route &route) {
    cfg_t *section = config;
    for (const Element *grp : route.groups)
      section = grp->cat.empty() ? cfg_getsec(section, grp->name.c_str())
                                 : cfg_gettsec(section, grp->cat.c_str(), grp->name.c_str());
    return section;
  }

  void start() {
    clear();
    config = cfg_init(declarations.options(), CFGF_NONE);
  }
};

[[maybe_unused]] const bool added = addpeer<Libconfuse>();

} // namespace
} // namespace bench
