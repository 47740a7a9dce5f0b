// libconfig: a tree of settings in C.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <libconfig.h>

namespace bench {
namespace {

class Libconfig {
public:
  static constexpr const char *name = "libconfig";
  static constexpr Syntax syntax = Syntax::libconfig;

  explicit Libconfig(const Shape &) { config_init(&config); }
  Libconfig(const Libconfig &) = delete;
  Libconfig &operator=(const Libconfig &) = delete;
  ~Libconfig() { config_destroy(&config); }

  bool readfile(const std::string &file) { return config_read_file(&config, file.c_str()); }
  bool readmemory(const std::string &text) { return config_read_string(&config, text.c_str()); }
  long get(const Route &route) {
    int value = 0;
    config_lookup_int(&config, route.dotted.c_str(), &value);
    return value;
  }
  void set(const Route &route, long value) {
    config_setting_set_int(config_lookup(&config, route.dotted.c_str()), static_cast<int>(value));
  }
  void print(std::FILE *fd) { config_write(&config, fd); }
  void clear() {
    config_destroy(&config);
    config_init(&config);
  }

private:
  config_t config{};
};

[[maybe_unused]] const bool added = addpeer<Libconfig>();

} // namespace
} // namespace bench
