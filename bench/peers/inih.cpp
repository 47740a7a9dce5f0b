// inih, with the reader that keeps what was read in a map; sections do not nest.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <INIReader.h>

#include <optional>

namespace bench {
namespace {

class Inih {
public:
  static constexpr const char *name = "inih";
  static constexpr Syntax syntax = Syntax::ini;

  explicit Inih(const Shape &) {}

  bool readfile(const std::string &file) {
    reader.emplace(file);
    return reader->ParseError() == 0;
  }
  bool readmemory(const std::string &text) {
    reader.emplace(text.data(), text.size());
    return reader->ParseError() == 0;
  }
  long get(const Route &route) {
    if (route.groups.empty())
      return reader->GetInteger("", route.param->name, -1);
    const Element &grp = *route.groups.back();
    return reader->GetInteger(grp.cat.empty() ? grp.name : grp.cat + "." + grp.name,
                              route.param->name, -1);
  }
  void clear() { reader.reset(); }

private:
  std::optional<INIReader> reader;
};

[[maybe_unused]] const bool added = addpeer<Inih>();

} // namespace
} // namespace bench
