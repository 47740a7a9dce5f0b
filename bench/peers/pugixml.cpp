// pugixml: XML in C++.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <pugixml.hpp>

namespace bench {
namespace {

class Pugixml {
public:
  static constexpr const char *name = "pugixml";
  static constexpr Syntax syntax = Syntax::xml;

  explicit Pugixml(const Shape &) {}

  bool readfile(const std::string &file) { return bool(document.load_file(file.c_str(), options)); }
  bool readmemory(const std::string &text) {
    return bool(document.load_buffer(text.data(), text.size(), options));
  }
  long get(const Route &route) { return find(route).as_int(); }
  void set(const Route &route, long value) { find(route).set(value); }
  void print(std::FILE *fd) {
    pugi::xml_writer_file writer(fd);
    document.save(writer, "  ");
  }
  void clear() { document.reset(); }

private:
  pugi::xml_text find(const Route &route) {
    pugi::xml_node at = document.document_element();
    for (const Element *grp : route.groups)
      at = grp->cat.empty()
               ? at.child(grp->name.c_str())
               : at.find_child_by_attribute(grp->cat.c_str(), "name", grp->name.c_str());
    return at.child(route.param->name.c_str()).text();
  }

  static constexpr unsigned options = pugi::parse_default | pugi::parse_comments;
  pugi::xml_document document;
};

[[maybe_unused]] const bool added = addpeer<Pugixml>();

} // namespace
} // namespace bench
