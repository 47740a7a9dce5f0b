// tune: edits a configuration file and saves it.
// SPDX-License-Identifier: MIT
#include "edge.h"
#include "scratch.h"

#include <fstream>
#include <iostream>

namespace {

//! [edit]
void tune(cf::document &doc) {
  doc.set("workers", 16);
  doc.add("listen", "192.0.2.1:8080"); // one more value
  doc.group("upstream", "app07").set("timeout", std::chrono::milliseconds(500));

  cf::group app08 = doc.add_group("upstream", "app08");
  app08.set("addr", "10.0.0.8");
  app08.set("port", 8080);

  doc.group("upstream", "app03").erase(); // with the remarks that are bound to it
}
//! [edit]

//! [refused]
/// Edits that the schema or the format does not allow. Each throws and changes nothing.
void refused(cf::document &doc) {
  const auto attempt = [](auto edit) {
    try {
      edit();
    } catch (const cf::error &e) {
      std::cerr << e.diagnostics().front() << '\n';
    }
  };
  attempt([&] { doc.set("workers", 1000); });
  attempt([&] { doc.set("workers", "many"); });
  attempt([&] { doc.group("tls").set("cert", "two\nlines"); });
  attempt([&] { doc.add_group("upstream", "app07"); });
  attempt([&] { doc.add_group("upstream", "app-09"); });
}
//! [refused]

} // namespace

int main(int argc, char **argv) try {
  const char *fname = argc > 1 ? argv[1] : "edge.conf";
  const scratch_copy here(fname); // the example leaves its own file alone
  cf::document doc = cf::load(fname, schema);
  tune(doc);
  doc.save(fname);
  std::cout << std::ifstream(fname).rdbuf();
  refused(doc);
} catch (const cf::error &e) {
  for (const cf::diagnostic &d : e.diagnostics())
    std::cerr << d << '\n';
  return 1;
}
