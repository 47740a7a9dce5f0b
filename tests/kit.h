// Kit of the tests and the fuzz targets: trees as text, streams in memory, a strict memory manager,
// records of slots.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

#include <csetjmp>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace kit {

/// Throws std::logic_error if a promise is not kept.
void need(bool kept, const char *promise);

struct deleter {
  void operator()(cfgroup *grp) const { cfdelgrp(grp); }
};
using tree = std::unique_ptr<cfgroup, deleter>;

/// An element and all below it, each group before its contents. Throws if a link is broken.
std::vector<cfnode *> nodes(const cfnode *top);
/// A word for an element: "#text", "key=value", "cat.name"; "::" for a root; "[cat.name]", "[key=]"
/// and "[#]" for blocks; "cat:", "name/" and "key=" for levels; "*" and its word for a reference.
std::string word(cfnode *nd);
/// The word of an element, its row if `rows`, "!" if it has a value, and the same for its contents.
std::string dump(const cfnode *top, bool rows = true);
inline std::string dump(const cfgroup *top, bool rows = true) { return dump(&top->link, rows); }

/// The messages of this thread since the last call, a line each: "E text" or "W text".
std::string said();

/// What cflex() leaves: its result, two fields of the record, and the messages as by said().
struct reading {
  cfgroup *top; ///< owned by the caller
  int result;
  long nrow; ///< number of lines, plus 1
  std::string said;
};
/// Reads `bytes` with cflex(); NULL `lex` means a record without replaced slots.
reading read(std::string_view bytes, cflexer *lex = nullptr);
/// The text that cfprint() writes. Throws if it fails without a `prn`.
std::string print(cfgroup *top, cfprinter *prn = nullptr);

using stream = std::unique_ptr<FILE, int (*)(FILE *)>;
constexpr size_t never = static_cast<size_t>(-1);
/// A stream of `bytes`, which are borrowed. It fails once, before it gives byte number `broken`.
stream source(std::string_view bytes, size_t broken = never);
/// A stream that appends to `out`. It fails once, when there would be more than `room` bytes in it.
stream sink(std::string &out, size_t room = never);

/// The exception that meter::called() throws.
struct thrown {};

/// The memory manager while an object of this class exists. It fills new and released blocks and
/// guards their ends. It keeps all blocks until it is destroyed, so no address is used twice. Its
/// destructor throws if a block was not released.
class meter {
public:
  size_t live = 0;              ///< number of blocks that are not released
  std::vector<size_t> sizes;    ///< of all allocations, in their order
  std::vector<void *> released; ///< all released blocks, in their order

  /// The call number `countdown` of called() throws; 0: none does. The manager calls called() in
  /// each allocation and release, and emsg() and wmsg() do for each message.
  size_t countdown = 0;
  bool always = false;          ///< all calls after that one throw too
  std::jmp_buf *jump = nullptr; ///< if set, these calls jump there instead of throwing

  meter();
  ~meter() noexcept(false);
  meter(const meter &) = delete;
  meter &operator=(const meter &) = delete;

  /// True if a block that this manager allocated is not released.
  static bool alive(const void *block);
  /// Every function of the tests that the library calls must call this.
  static void called();

private:
  struct cfmmgr former;
  std::vector<void *> given;
  static meter *current;
  static void *allocate(size_t size);
  static void release(void *block);
};

/// A record in which all slots, or only the one at position `only`, are replaced by functions that
/// count the call, ask `answer`, and otherwise do what the default does.
template <class Record> struct asking : Record {
  Record dfl{};
  size_t calls = 0; ///< of replaced slots
  /// Changes the result of a slot. A scanner returns NULL if answer(1) is 0 or less.
  std::function<int(int)> answer = [](int it) { return it; };

  explicit asking(int only = -1) : Record{} {
    if constexpr (std::is_same_v<Record, cflexer>) {
      cflexdfl(&dfl);
      wrap<&Record::isempty, &Record::isremark, &Record::isgrpbeg, &Record::isgrpend,
           &Record::isparam, &Record::scanrem, &Record::scangrp, &Record::scanpar>(only);
    } else {
      cfprintdfl(&dfl);
      wrap<&Record::outempty, &Record::outremark, &Record::outgrpbeg, &Record::outgrpend,
           &Record::outparam>(only);
    }
  }

private:
  template <auto... Slots> void wrap(int only, int slot = 0) {
    ((only < 0 || only == slot++ ? void(this->*Slots = through<Slots>) : void()), ...);
  }
  template <auto Slot, class... Args> static auto through(Record *record, Args... args) {
    auto *it = static_cast<asking *>(record);
    ++it->calls;
    meter::called();
    auto result = (it->dfl.*Slot)(record, args...);
    if constexpr (std::is_same_v<decltype(result), int>)
      return it->answer(result);
    else if (it->answer(1) <= 0)
      cfdelnd(&std::exchange(result, nullptr)->link);
    return result;
  }
};

/// Runs `f` on a thread with a stack of 256 KiB. Passes an exception on.
void on_small_stack(const std::function<void()> &f);

} // namespace kit
