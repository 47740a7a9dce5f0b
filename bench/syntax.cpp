// Syntax: a content as each library reads it.
// SPDX-License-Identifier: MIT
#include "syntax.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>

namespace bench {
namespace {

std::string quoted(const std::string &text) { return '"' + text + '"'; }

std::string typed(const Element &par) {
  return par.type == Type::text ? quoted(par.text) : par.text;
}

/// For libraries without categories: the groups of one category become members of a group.
Element fold(const Element &grp) {
  Element out{Kind::group, grp.name, "", Type::text, "", {}};
  for (const Element &child : grp.children) {
    if (child.kind != Kind::group) {
      out.children.push_back(child);
    } else if (child.cat.empty()) {
      out.children.push_back(fold(child));
    } else {
      if (out.children.empty() || out.children.back().name != child.cat)
        out.children.push_back({Kind::group, child.cat, "", Type::text, "", {}});
      out.children.back().children.push_back(fold(child));
    }
  }
  return out;
}

/// A line-oriented syntax: how each kind of element is written.
struct Lines {
  std::string remark, remark_end;
  std::string (*param)(const Element &);
  std::string (*begin)(const Element &);
  std::string (*end)(const Element &);
};

void put(std::string &out, const Element &grp, const Lines &lines, const std::string &indent) {
  for (const Element &child : grp.children) {
    switch (child.kind) {
    case Kind::blank: out += '\n'; break;
    case Kind::remark: out += indent + lines.remark + child.text + lines.remark_end + '\n'; break;
    case Kind::param: out += indent + lines.param(child) + '\n'; break;
    case Kind::group:
      out += '\n' + indent + lines.begin(child) + '\n';
      put(out, child, lines, indent + "  ");
      if (const std::string end = lines.end(child); !end.empty())
        out += indent + end + '\n';
    }
  }
}

std::string brace(const Element &) { return "}"; }

std::string assign(const Element &par) { return par.name + " = " + par.text; }

const Lines cf_lines = {
    "# ", "", assign,
    [](const Element &grp) { return grp.cat + (grp.cat.empty() ? "" : " ") + grp.name + " {"; },
    brace};

const Lines confuse_lines = {
    "# ", "", [](const Element &par) { return par.name + " = " + typed(par); },
    [](const Element &grp) {
      return grp.cat.empty() ? grp.name + " {" : grp.cat + " " + quoted(grp.name) + " {";
    },
    brace};

const Lines libconfig_lines = {
    "# ", "", [](const Element &par) { return par.name + " = " + typed(par) + ";"; },
    [](const Element &grp) { return grp.name + " : {"; },
    [](const Element &) { return std::string("};"); }};

const Lines yaml_lines = {"# ", "", [](const Element &par) { return par.name + ": " + typed(par); },
                          [](const Element &grp) { return grp.name + ":"; },
                          [](const Element &) { return std::string(); }};

const Lines xml_lines = {
    "<!-- ", " -->",
    [](const Element &par) { return "<" + par.name + ">" + par.text + "</" + par.name + ">"; },
    [](const Element &grp) {
      return grp.cat.empty() ? "<" + grp.name + ">"
                             : "<" + grp.cat + " name=" + quoted(grp.name) + ">";
    },
    [](const Element &grp) { return "</" + (grp.cat.empty() ? grp.name : grp.cat) + ">"; }};

/// For syntaxes in which sections do not nest: the section of a group precedes those of the groups
/// in it. With `whole_path`, as in TOML, a section has its path as name, and texts are quoted.
void putsections(std::string &out, const Element &grp, const std::string &path, bool whole_path) {
  for (const Element &child : grp.children) {
    switch (child.kind) {
    case Kind::blank: out += '\n'; break;
    case Kind::remark: out += "# " + child.text + '\n'; break;
    case Kind::param:
      out += child.name + " = " + (whole_path ? typed(child) : child.text) + '\n';
      break;
    case Kind::group:
      const std::string head = (child.cat.empty() ? "" : child.cat + ".") + child.name;
      const std::string section = whole_path && !path.empty() ? path + "." + head : head;
      out += "\n[" + section + "]\n";
      putsections(out, child, section, whole_path);
    }
  }
}

void putjson(std::string &out, const Element &grp, const std::string &indent) {
  std::size_t number = 0;
  out += '{';
  for (const Element &child : grp.children) {
    if (child.kind == Kind::blank)
      continue;
    out += (number++ ? ",\n" : "\n") + indent + "  ";
    if (child.kind == Kind::remark) {
      out += quoted("//" + std::to_string(number)) + ": " + quoted(child.text);
    } else {
      out += quoted(child.name) + ": ";
      if (child.kind == Kind::group)
        putjson(out, child, indent + "  ");
      else
        out += typed(child);
    }
  }
  out += '\n' + indent + '}';
}

/// Groups in each other, with a parameter in the innermost. The text grows with the depth, not with
/// its square: no indentation, and in TOML one head with the whole path.
std::string chain(std::size_t depth, Syntax syntax) {
  struct {
    const char *begin, *innermost, *end;
  } parts{};
  switch (syntax) {
  case Syntax::cf: parts = {"g {\n", "k = 1\n", "}\n"}; break;
  case Syntax::libconfig: parts = {"g : {\n", "k = 1;\n", "};\n"}; break;
  case Syntax::yaml: parts = {"{g: ", "{k: 1}", "}"}; break;
  case Syntax::json: parts = {"{\"g\": ", "{\"k\": 1}", "}"}; break;
  case Syntax::xml: parts = {"<g>", "<k>1</k>", "</g>"}; break;
  case Syntax::toml: parts = {".g", "]\nk = 1\n", ""}; break;
  case Syntax::confuse:
  case Syntax::ini: throw std::invalid_argument("no chain in this syntax");
  }
  std::string text = syntax == Syntax::toml ? "[g" : "";
  for (std::size_t i = 0; i < depth; ++i)
    text += parts.begin;
  text += parts.innermost;
  for (std::size_t i = 0; i < depth; ++i)
    text += parts.end;
  return text;
}

/// The directory of the temporary files.
class Scratch {
public:
  Scratch() {
    std::string name = (std::filesystem::temp_directory_path() / "cf-bench-XXXXXX").string();
    if (!mkdtemp(name.data()))
      throw std::runtime_error("no temporary directory");
    path = name;
  }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;
  ~Scratch() { std::filesystem::remove_all(path); }

  std::filesystem::path path;
};

std::string store(const std::string &text) {
  static const Scratch scratch;
  static int number = 0;
  const auto path = scratch.path / std::to_string(number++);
  std::ofstream(path, std::ios::binary) << text;
  return path.string();
}

} // namespace

std::string render(const Element &top, Syntax syntax) {
  std::string out;
  switch (syntax) {
  case Syntax::cf: put(out, top, cf_lines, ""); break;
  case Syntax::libconfig: put(out, fold(top), libconfig_lines, ""); break;
  case Syntax::confuse: put(out, top, confuse_lines, ""); break;
  case Syntax::ini: putsections(out, top, "", false); break;
  case Syntax::toml: putsections(out, top, "", true); break;
  case Syntax::yaml: put(out, fold(top), yaml_lines, ""); break;
  case Syntax::json: putjson(out, fold(top), ""); break;
  case Syntax::xml:
    out = "<config>\n";
    put(out, top, xml_lines, "  ");
    out += "</config>\n";
  }
  return out;
}

const Input &input(const Shape &shape, Syntax syntax) {
  static std::map<std::pair<std::string, Syntax>, Input> inputs;
  const auto [it, fresh] = inputs.try_emplace({shape.name, syntax});
  if (fresh) {
    it->second.text = shape.name.starts_with("chain:")
                          ? chain(std::stoul(shape.name.substr(6)), syntax)
                          : render(shape.top, syntax);
    it->second.file = store(it->second.text);
  }
  return it->second;
}

} // namespace bench
