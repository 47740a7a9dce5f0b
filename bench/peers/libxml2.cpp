// libxml2: XML in C.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>

namespace bench {
namespace {

bool istext(const xmlChar *xml, const std::string &text) {
  return std::strcmp(reinterpret_cast<const char *>(xml), text.c_str()) == 0;
}

bool hasname(const xmlNode *node, const std::string &text) {
  return node->properties && istext(node->properties->children->content, text);
}

xmlNode *child(xmlNode *node, const std::string &tag, const std::string *name) {
  for (node = node->children; node; node = node->next)
    if (node->type == XML_ELEMENT_NODE && istext(node->name, tag) &&
        (!name || hasname(node, *name)))
      return node;
  broken("an element is not found");
}

class Libxml2 {
public:
  static constexpr const char *name = "libxml2";
  static constexpr Syntax syntax = Syntax::xml;

  explicit Libxml2(const Shape &) {}
  Libxml2(const Libxml2 &) = delete;
  Libxml2 &operator=(const Libxml2 &) = delete;
  ~Libxml2() { clear(); }

  bool readfile(const std::string &file) {
    return (document = xmlReadFile(file.c_str(), nullptr, options)) != nullptr;
  }
  bool readmemory(const std::string &text) {
    document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, options);
    return document != nullptr;
  }
  long get(const Route &route) {
    const xmlChar *text = find(route)->children->content;
    return std::strtol(reinterpret_cast<const char *>(text), nullptr, 10);
  }
  void set(const Route &route, long value) {
    const std::string text = std::to_string(value);
    xmlNodeSetContent(find(route), reinterpret_cast<const xmlChar *>(text.c_str()));
  }
  void print(std::FILE *fd) { xmlDocFormatDump(fd, document, 1); }
  void clear() {
    xmlFreeDoc(document);
    document = nullptr;
  }

private:
  xmlNode *find(const Route &route) {
    xmlNode *at = xmlDocGetRootElement(document);
    for (const Element *grp : route.groups)
      at = grp->cat.empty() ? child(at, grp->name, nullptr) : child(at, grp->cat, &grp->name);
    return child(at, route.param->name, nullptr);
  }

  static constexpr int options = XML_PARSE_NOBLANKS;
  xmlDoc *document = nullptr;
};

[[maybe_unused]] const bool added = addpeer<Libxml2>();

} // namespace
} // namespace bench
