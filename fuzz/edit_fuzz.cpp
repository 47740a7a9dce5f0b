// edit: the input is a program of calls over trees and catalogs, any of which may be made to leave.
// SPDX-License-Identifier: MIT
#include "machine.h"

#include <array>

namespace fuzz {

void machine::run() {
  here.settle();
  while (in.more()) {
    step();
    here.settle();
    said();
  }
  here.end();
}

void machine::step() {
  using act = void (machine::*)();
  static constexpr std::array<act, 30> acts = {
      &machine::make,   &machine::make,    &machine::make,     &machine::make,     &machine::read,
      &machine::link,   &machine::link,    &machine::chain,    &machine::xcg,      &machine::unlink,
      &machine::del,    &machine::clear,   &machine::copy,     &machine::stack,    &machine::stack,
      &machine::stack,  &machine::unstack, &machine::add,      &machine::add,      &machine::add,
      &machine::set,    &machine::set,     &machine::set,      &machine::catxcg,   &machine::catxcg,
      &machine::catdel, &machine::catdel,  &machine::catclear, &machine::evaluate, &machine::look};
  const size_t choice = in.choose(256);
  leaving = choice >= 0xc0 ? static_cast<int>(1 + in.choose(24)) : 0;
  for_good = choice >= 0xe0;
  (this->*acts[choice % 32 % acts.size()])();
}

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::install_memory();
  fuzz::program choices(data, size);
  fuzz::machine(choices).run();
  return 0;
}
