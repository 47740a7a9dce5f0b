// edge: a service that loads its configuration, uses it, and changes it.
// SPDX-License-Identifier: MIT
#include "edge.h"

#include <iostream>

//! [main]
int main() try {
  cf::document doc = cf::load("edge.conf", schema);

  //! [use]
  std::cout << doc.get<int>("workers") << " workers\n"; // 4 if the file does not say
  for (std::string_view address : doc.values<std::string_view>("listen"))
    std::cout << "listening at " << address << '\n';
  if (cf::group tls = doc.group("tls"))
    std::cout << "with the certificate " << tls.get<std::string>("cert") << '\n';
  for (cf::group up : doc.groups("upstream")) // in the order of the file
    std::cout << up.name() << ": port " << up.get<std::uint16_t>("port") << ", "
              << up.get<std::chrono::milliseconds>("timeout").count() << " ms\n";
  //! [use]

  doc.group("upstream", "app07").set("weight", 42); // throws if schema or format refuse the value
  doc.save("edge.conf"); // the old file or the new one, whole; remarks are kept
} catch (const cf::error &e) {
  for (const cf::diagnostic &d : e.diagnostics())
    std::cerr << d << '\n';
  return 1;
}
//! [main]
