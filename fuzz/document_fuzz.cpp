// document: loads a text with a schema, edits it, saves it and loads it again: the result must be
// the same document. An input is a text and, after a byte of value 1, edits of three bytes each.
// SPDX-License-Identifier: MIT
#include "oracles.h"

#include <cf.hpp>

#include <cstdlib>
#include <set>

using namespace std::chrono_literals;

namespace fuzz {
namespace {

enum class shade { light, dark };

const cf::schema schema{
    cf::key("i").integer(-5, 1000).otherwise(7),
    cf::key("t").text().many(),
    cf::key("l").integer().list(),
    cf::key("w").words<shade>({{"light", shade::light}, {"dark", shade::dark}}),
    cf::key("d").duration().otherwise(5s),
    cf::key("r").real(),
    cf::key("s").bytes(),
    cf::key("b").boolean(),
    cf::one("o", cf::key("m").text().required(), cf::one("o", cf::key("i").integer())),
    cf::each("c", cf::key("i").integer(), cf::each("c", cf::key("t").text().nonempty())),
    cf::each("h", cf::key("i").integer()).names(cf::names::hosts).many(),
    cf::any(cf::key("i").integer().deprecated("old")).many()};

void need(bool kept) {
  if (!kept)
    std::abort();
}

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

/// A catalog as text, without what depends on earlier edits: the order and case of its levels, and
/// the empty ones.
std::string dump(cfgroup *grp) {
  std::set<std::string> levels;
  std::string text;
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
    if (const cfparam *par = cfpar(it))
      ((text += par->key) += '=') += par->val;
    else if (cfgrp(it)->type == cf_grpinst)
      text += '{' + dump(cfgrp(it)) + '}';
    else if (const std::string held = dump(cfgrp(it)); !held.empty())
      levels.insert(lower(std::string(cfgrp(it)->cat) + '/' + cfgrp(it)->name) + held);
  for (const std::string &it : levels)
    text += it + ' ';
  return lower(text);
}

/// Gets all values. If the load found no error, none may throw.
void read(const cf::group &group, bool valid) {
  for (const std::string_view key : group.keys())
    try {
      need(!group.values<std::string>(key).empty());
      if (key == "i" || key == "I")
        group.get_or(key, 5);
    } catch (const cf::error &) {
      need(!valid);
    } catch (const std::logic_error &) {
      need(!valid); // a key that the schema does not have
    }
  for (const cf::group it : group.groups())
    read(it, valid); // as deep as the file, which is short
}

void edit(cf::document &doc, unsigned char what, unsigned char where, unsigned char value) {
  static constexpr const char *keys[] = {"i", "t", "l", "w", "d", "r", "s", "b", "m", "none"};
  static constexpr const char *names[] = {"o", "c", "h", "a", "x-1", "no name", ""};
  static constexpr const char *texts[] = {"1",   "a b", "1,2",  "dark", "1h",
                                          "-.5", "9k",  "true", " x",   ""};
  std::vector<cf::group> groups{doc.top()};
  for (std::size_t i = 0; i < groups.size() && i < 64; ++i)
    for (const cf::group it : std::vector(groups)[i].groups())
      groups.push_back(it);
  const cf::group group = groups[where % groups.size()];
  const char *key = keys[what / 8 % 10];
  switch (what % 8) {
  case 0: return group.set(key, value);
  case 1: return group.set(key, texts[value % 10]);
  case 2: return group.add(key, texts[value % 10]);
  case 3: static_cast<void>(group.erase(key)); return;
  case 4: static_cast<void>(group.add_group(names[what / 8 % 4], names[value % 7])); return;
  case 5: static_cast<void>(group.add_group(names[value % 7])); return;
  case 6: return group.set(key, value % 2 == 0);
  default: return group.erase();
  }
}

/// Makes edits. One that throws must change nothing; any other must change tree and catalog alike.
void edits(cf::document &doc, std::string_view bytes) {
  if (!bytes.empty() && bytes[0] % 2)
    doc.catalog();
  for (; bytes.size() >= 3; bytes.remove_prefix(3)) {
    const std::string before = doc.str();
    try {
      edit(doc, static_cast<unsigned char>(bytes[0]), static_cast<unsigned char>(bytes[1]),
           static_cast<unsigned char>(bytes[2]));
    } catch (const std::exception &) {
      need(doc.str() == before);
    }
    cfgroup *fresh = cfcatalog(doc.tree());
    need(dump(fresh) == dump(doc.catalog()));
    cfdelgrp(fresh);
  }
}

/// Saves a document and loads it again.
void save(cf::document &doc, const std::string &printed) {
  static std::string path = "/tmp/cf.document.XXXXXX";
  static const int file = mkstemp(path.data());
  need(file >= 0);
  doc.save(path);
  need(cf::load(path, schema).str() == printed);
}

} // namespace

void document(std::string_view bytes) {
  const std::size_t end = bytes.find('\1');
  const std::string_view text = bytes.substr(0, end);
  cf::result read_once = cf::try_parse(text, schema, {.limit = 20});
  long line = 0;
  for (const cf::diagnostic &d : read_once.diagnostics) {
    need(d.line >= line || &d == &read_once.diagnostics.back());
    need(!to_string(d).empty() && !d.message.empty() && d.column >= 0);
    line = d.line;
  }
  read(read_once.document.top(), read_once.valid);
  if (end != bytes.npos)
    edits(read_once.document, bytes.substr(end + 1));
  const std::string printed = read_once.document.str();
  const cf::result again = cf::try_parse(printed, schema, {.limit = 20});
  need(again.document.str() == printed);
  need(again.diagnostics.size() == read_once.document.check().size());
  need(cf::changes(read_once.document, again.document).empty());
  if (again.valid && read_once.valid && bytes.size() % 4 == 0)
    save(read_once.document, printed);
}

} // namespace fuzz
