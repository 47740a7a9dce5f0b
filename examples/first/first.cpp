// first: loads a file and uses its values, or shows what is wrong with the file.
// SPDX-License-Identifier: MIT
//! [all]
#include <cf.hpp>
#include <iostream>

const cf::schema schema{
    cf::key("keep").integer(1, 365).otherwise(7),
    cf::each("host", cf::key("addr").text().required(),
             cf::key("port").integer(1, 65535).otherwise(22)),
};

int main(int argc, char **argv) try {
  cf::document doc = cf::load(argc > 1 ? argv[1] : "first.conf", schema);
  std::cout << "keep " << doc.get<int>("keep") << " copies\n";
  for (cf::group host : doc.groups("host"))
    std::cout << host.name() << ": " << host.get<std::string_view>("addr") << ", port "
              << host.get<int>("port") << '\n';
} catch (const cf::error &e) {
  for (const cf::diagnostic &d : e.diagnostics())
    std::cerr << d << '\n';
  return 1;
}
//! [all]
