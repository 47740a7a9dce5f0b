// yaml-cpp: YAML in C++.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <yaml-cpp/yaml.h>

namespace bench {
namespace {

class Yamlcpp {
public:
  static constexpr const char *name = "yaml-cpp";
  static constexpr Syntax syntax = Syntax::yaml;

  explicit Yamlcpp(const Shape &) {}

  bool readfile(const std::string &file) {
    root = YAML::LoadFile(file);
    return root.IsMap();
  }
  bool readmemory(const std::string &text) {
    root = YAML::Load(text);
    return root.IsMap();
  }
  long get(const Route &route) { return find(route).as<long>(); }
  void set(const Route &route, long value) { find(route) = value; }
  void print(std::FILE *fd) {
    YAML::Emitter out;
    out << root;
    std::fputs(out.c_str(), fd);
  }
  void clear() { root.reset(); }

private:
  YAML::Node find(const Route &route) {
    YAML::Node at = root;
    for (const std::string &step : route.path)
      at.reset(at[step]);
    return at;
  }

  YAML::Node root;
};

[[maybe_unused]] const bool added = addpeer<Yamlcpp>();

} // namespace
} // namespace bench
