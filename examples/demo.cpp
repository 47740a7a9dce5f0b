// demo: the main job of the library, step by step, on demo.conf.
// SPDX-License-Identifier: MIT
#include "full_disk.h"
#include "scratch.h"

#include <cf.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr const char *fname = "demo.conf";

const cf::schema schema{
    cf::key("mail").text().required(),
    cf::key("keep").integer(1, 365).otherwise(7),
    cf::key("verbose").boolean().otherwise(false),
    cf::key("exclude").text().many(),
    cf::each("store", cf::key("path").text().required(), cf::key("size").integer(1, 1000000),
             cf::key("scrub").boolean().otherwise(false)),
    cf::one(
        "schedule", cf::key("tick").integer(1, 3600).otherwise(300),
        cf::one("window", cf::key("from").integer(0, 24), cf::key("to").integer(0, 24),
                cf::one("sunday", cf::key("from").integer(0, 24), cf::key("to").integer(0, 24)))),
    cf::each("host", cf::key("addr").text(), cf::key("port").integer(1, 65535).otherwise(22),
             cf::one("limits", cf::key("rate").real(0, 1000), cf::key("load").real(0, 1)),
             cf::each("disk", cf::key("path").text().required(), cf::key("keep").integer(1, 365))),
};

void step(const char *headline) {
  static int number = 0;
  std::cout << "\n=== " << ++number << ". " << headline << "\n\n";
}

/// A step that did not do what its text says ends the demo.
void must(bool held, const char *what) {
  if (held)
    return;
  std::cout << "  failed: " << what << '\n';
  std::exit(1);
}

std::string contents() {
  std::ifstream file(fname);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The text with some of its lines changed; each change is shown.
struct change {
  std::string_view line, instead;
};
std::string changed(std::string text, std::initializer_list<change> changes) {
  for (const auto &[line, instead] : changes) {
    const size_t at = text.find("\n" + std::string(line) + "\n");
    must(at != std::string::npos, "the line is there");
    text.replace(at + 1, line.size(), instead);
    std::cout << "  line " << std::count(text.begin(), text.begin() + long(at), '\n') + 2 << ": "
              << instead << '\n';
  }
  return text;
}

void show(const std::vector<cf::diagnostic> &diagnostics) {
  for (const cf::diagnostic &d : diagnostics)
    std::cout << "  " << d << '\n';
}

/// The lines that only one of two texts has. Blanks at the ends of a line do not count.
void show_lines(const std::string &of, const std::string &other, char mark) {
  const auto lines = [](const std::string &text) {
    std::vector<std::string> found;
    std::istringstream in(text);
    for (std::string line; std::getline(in >> std::ws, line);)
      found.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
    return found;
  };
  std::vector<std::string> rest = lines(other);
  for (const std::string &line : lines(of)) {
    const auto same = std::find(rest.begin(), rest.end(), line);
    if (same == rest.end())
      std::cout << "  " << mark << ' ' << line << '\n';
    else
      rest.erase(same);
  }
}

void show_values(cf::document &doc) {
  const int keep = doc.get<int>("keep");
  std::cout << "  mail to " << doc.get<std::string_view>("mail") << ", clock every "
            << doc["schedule"].get<int>("tick") << " s\n";
  for (cf::group store : doc.groups("store"))
    std::cout << "  store " << store.name() << ": " << store.get<std::string_view>("path") << ", "
              << store.get_or("size", 0) << " GB\n";
  for (cf::group host : doc.groups("host")) {
    std::cout << "  host " << host.name() << ": "
              << host.get_or<std::string>("addr", std::string(host.name())) << ", port "
              << host.get<int>("port") << '\n';
    for (cf::group disk : host.groups("disk"))
      std::cout << "    disk " << disk.name() << ": " << disk.get<std::string_view>("path") << ", "
                << disk.get_or("keep", keep) << " copies\n";
  }
}

//! [edit]
void edit(cf::document &doc) {
  cf::group alpha = doc.group("host", "alpha");
  alpha.set("port", 2022);
  alpha["limits"].erase();

  cf::group delta = doc.add_group("host", "delta");
  delta.set("addr", "192.0.2.13");

  doc.group("host", "beta").erase(); // with the remark that is bound to it
}
//! [edit]

void refused(const char *what, auto action) {
  try {
    action();
    must(false, "the call throws");
  } catch (const cf::error &e) {
    std::cout << "  " << what << ":\n";
    show(e.diagnostics());
  }
}

} // namespace

int main() try {
  step("A file is loaded: its values, with defaults for what it does not say");
  cf::document doc = cf::load(fname, schema);
  show_values(doc);

  step("A copy with mistakes: one run reports all of them");
  const std::string broken = changed(contents(), {{"verbose = false", "verbose: false"},
                                                  {"keep = 14", "kep = 14"},
                                                  {"  size = 1800", "  size = much"},
                                                  {"store second {", "store first {"},
                                                  {"  disk root {", "  disk root/boot {"},
                                                  {"  port = 2222", "  port = 222222"}});
  std::cout << '\n';
  show(cf::try_parse(broken, schema).diagnostics);

  step("Fixed, it loads without a diagnostic");
  must(cf::try_parse(contents(), schema).diagnostics.empty(), "there is none");
  std::cout << "  no error, no warning\n";

  step("Edits: the schema decides what is allowed");
  edit(doc);
  show_values(doc);
  std::cout << '\n';
  refused("a port out of range", [&] { doc.group("host", "alpha").set("port", 70000); });
  refused("a line that is too long", [&] { doc.set("mail", std::string(5000, 'x')); });

  step("A save: the whole file or nothing; the changed lines");
  const std::string before = contents();
  const scratch_copy here(fname); // the demo leaves its own file alone
  {
    const full_disk disk;
    refused("on a full disk", [&] { doc.save(fname); });
    must(contents() == before, "the file is as it was");
  }
  doc.save(fname);
  std::cout << '\n';
  show_lines(before, contents(), '-');
  show_lines(contents(), before, '+');

  step("The changes, for a service that reloads");
  for (const cf::change &c : cf::changes(cf::parse(before, schema), cf::load(fname, schema)))
    std::cout << "  " << c << '\n';
  std::cout << "\nDone.\n";
} catch (const cf::error &e) {
  show(e.diagnostics());
  return 1;
}
