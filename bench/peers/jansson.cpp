// Jansson: JSON in C.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <jansson.h>

namespace bench {
namespace {

class Jansson {
public:
  static constexpr const char *name = "jansson";
  static constexpr Syntax syntax = Syntax::json;

  explicit Jansson(const Shape &) {}
  Jansson(const Jansson &) = delete;
  Jansson &operator=(const Jansson &) = delete;
  ~Jansson() { clear(); }

  bool readfile(const std::string &file) {
    return (document = json_load_file(file.c_str(), 0, nullptr)) != nullptr;
  }
  bool readmemory(const std::string &text) {
    return (document = json_loads(text.c_str(), 0, nullptr)) != nullptr;
  }
  long get(const Route &route) { return static_cast<long>(json_integer_value(find(route))); }
  void set(const Route &route, long value) { json_integer_set(find(route), value); }
  void print(std::FILE *fd) { json_dumpf(document, fd, JSON_INDENT(2)); }
  void clear() {
    json_decref(document);
    document = nullptr;
  }

private:
  json_t *find(const Route &route) {
    json_t *at = document;
    for (const std::string &step : route.path)
      at = json_object_get(at, step.c_str());
    return at;
  }

  json_t *document = nullptr;
};

[[maybe_unused]] const bool added = addpeer<Jansson>();

} // namespace
} // namespace bench
