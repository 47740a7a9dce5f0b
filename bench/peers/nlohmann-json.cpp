// nlohmann-json: JSON in C++, as ordinary containers.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <nlohmann/json.hpp>

#include <fstream>

namespace bench {
namespace {

class Nlohmann {
public:
  static constexpr const char *name = "nlohmann-json";
  static constexpr Syntax syntax = Syntax::json;

  explicit Nlohmann(const Shape &) {}

  bool readfile(const std::string &file) {
    std::ifstream stream(file);
    document = nlohmann::json::parse(stream);
    return true;
  }
  bool readmemory(const std::string &text) {
    document = nlohmann::json::parse(text);
    return true;
  }
  long get(const Route &route) { return find(route).get<long>(); }
  void set(const Route &route, long value) { find(route) = value; }
  void print(std::FILE *fd) { std::fputs(document.dump(2).c_str(), fd); }
  void clear() { document = nullptr; }

private:
  nlohmann::json &find(const Route &route) {
    nlohmann::json *at = &document;
    for (const std::string &step : route.path)
      at = &at->at(step);
    return *at;
  }

  nlohmann::json document;
};

[[maybe_unused]] const bool added = addpeer<Nlohmann>();

} // namespace
} // namespace bench
