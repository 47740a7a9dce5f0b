// format: prints standard input in the uniform layout; a file that has it already does not change.
// SPDX-License-Identifier: MIT
#include <cf.hpp>
#include <iostream>
#include <iterator>
#include <string>

int main() try {
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  cf::options options;
  options.name = "standard input";
  std::cout << cf::parse(text, options) << std::flush;
  return std::cout ? 0 : 1;
} catch (const cf::error &e) { // nothing is printed of a file with a fault
  for (const cf::diagnostic &d : e.diagnostics())
    std::cerr << d << '\n';
  return 1;
}
