// simdjson: JSON in C++, into a tape that is only read.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <simdjson.h>

#include <optional>

namespace bench {
namespace {

class Simdjson {
public:
  static constexpr const char *name = "simdjson";
  static constexpr Syntax syntax = Syntax::json;

  explicit Simdjson(const Shape &) {}

  bool readfile(const std::string &file) {
    return parser.emplace().load(file).get(document) == simdjson::SUCCESS;
  }
  bool readmemory(const std::string &text) {
    return parser.emplace().parse(text).get(document) == simdjson::SUCCESS;
  }
  long get(const Route &route) {
    simdjson::dom::element at = document;
    for (const std::string &step : route.path)
      at = at.at_key(step).value();
    return static_cast<long>(at.get_int64().value());
  }
  void print(std::FILE *fd) { std::fputs(simdjson::to_string(document).c_str(), fd); }
  void clear() { parser.reset(); }

private:
  std::optional<simdjson::dom::parser> parser; // a fresh one each time: it owns what it read
  simdjson::dom::element document;
};

[[maybe_unused]] const bool added = addpeer<Simdjson>();

} // namespace
} // namespace bench
