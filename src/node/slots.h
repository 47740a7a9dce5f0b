// Slots: the function pointers in the record of an operation, their defaults, and its result.
// SPDX-License-Identifier: MIT
//
// An operation whose slots are all defaults takes its direct path: it does the defaults' work
// itself, without calls through pointers. If an application replaced a slot, the operation takes
// its slot path, which calls every slot as the header describes. Both give the same results.
#pragma once

#include <tuple>

namespace cfcore {

/// A slot of a record, and its default.
template <class Record, class Function> struct slot {
  Function Record::*field;
  Function dfl;

  /// Stores the default if the application left the slot NULL.
  void fill(Record *record) const {
    if (!(record->*field))
      record->*field = dfl;
  }
  bool isdefault(const Record *record) const { return record->*field == dfl; }
};
template <class Record, class Function>
slot(Function Record::*, Function) -> slot<Record, Function>;

/// Several slots of a record, in the order of its fields.
template <class... Slot> class slots {
public:
  explicit constexpr slots(Slot... slot) : all(slot...) {}

  /// Stores the defaults of the slots that the application left NULL.
  template <class Record> void fill(Record *record) const {
    std::apply([=](const auto &...slot) { (slot.fill(record), ...); }, all);
  }
  /// True if no slot was replaced.
  template <class Record> bool isdefault(const Record *record) const {
    return std::apply([=](const auto &...slot) { return (slot.isdefault(record) && ...); }, all);
  }

private:
  std::tuple<Slot...> all;
};

/// The `int` that an operation returns for the `valid` of its record. A slot may have stored a
/// negative value in it: the conversion gives the same `int` where `char` is unsigned.
inline int result(char valid) { return static_cast<signed char>(valid); }

} // namespace cfcore
