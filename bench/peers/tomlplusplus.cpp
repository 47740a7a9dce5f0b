// toml++: TOML in C++.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <toml++/toml.h>

#include <sstream>

namespace bench {
namespace {

class Tomlplusplus {
public:
  static constexpr const char *name = "toml++";
  static constexpr Syntax syntax = Syntax::toml;

  explicit Tomlplusplus(const Shape &) {}

  bool readfile(const std::string &file) {
    table = toml::parse_file(file);
    return true;
  }
  bool readmemory(const std::string &text) {
    table = toml::parse(text);
    return true;
  }
  long get(const Route &route) { return static_cast<long>(find(route).ref<std::int64_t>()); }
  void set(const Route &route, long value) { find(route).ref<std::int64_t>() = value; }
  void print(std::FILE *fd) {
    std::ostringstream out;
    out << table;
    std::fputs(out.str().c_str(), fd);
  }
  void clear() { table = toml::table(); }

private:
  toml::node_view<toml::node> find(const Route &route) {
    toml::node_view<toml::node> at{table};
    for (const std::string &step : route.path)
      at = at[step];
    return at;
  }

  toml::table table;
};

[[maybe_unused]] const bool added = addpeer<Tomlplusplus>();

} // namespace
} // namespace bench
