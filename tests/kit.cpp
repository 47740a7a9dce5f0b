// Kit of the tests and the fuzz targets: trees as text, streams in memory, a strict memory manager,
// records of slots.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <clocale>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <future>
#include <pthread.h>
#include <stdexcept>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h> // without the sanitizer its macros do nothing
#else
#define ASAN_POISON_MEMORY_REGION(block, size)
#define ASAN_UNPOISON_MEMORY_REGION(block, size)
#endif

using std::string;

namespace {

// The whole program runs in the locale that the environment names.
[[maybe_unused]] const char *const locale =
    std::setlocale(LC_ALL, std::getenv("CF_LOCALE") ? std::getenv("CF_LOCALE") : "C");

thread_local string messages;

__attribute__((format(printf, 2, 0))) void say(const char *kind, const char *fmt, va_list args) {
  char *text = nullptr;
  kit::need(vasprintf(&text, fmt, args) >= 0, "a message is formatted");
  messages.append(kind).append(text).append("\n");
  std::free(text);
  kit::meter::called();
}

} // namespace

void emsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  say("E ", fmt, args);
  va_end(args);
}

void wmsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  say("W ", fmt, args);
  va_end(args);
}

namespace kit {

void need(bool kept, const char *promise) {
  if (!kept)
    throw std::logic_error(promise);
}

std::vector<cfnode *> nodes(const cfnode *top) {
  std::vector<cfnode *> found;
  auto *nd = const_cast<cfnode *>(top);
  for (;;) {
    if (nd->type != cf_anchor)
      found.push_back(nd);
    if (cfgroup *grp = cfgrp(nd)) {
      nd = &grp->elem;
      need(nd->type == cf_anchor && nd->group == grp && !nd->ref, "an anchor names its group");
    } else if (nd->type == cf_anchor) {
      nd = &nd->group->link;
    }
    if (nd == top)
      return found;
    need(nd->next->prev == nd && nd->next->group == nd->group, "a list is linked both ways");
    nd = nd->next;
  }
}

string word(cfnode *nd) {
  const string mark = nd->ref ? "*" : "";
  if (const cfremark *rem = cfrem(nd))
    return string("#") + rem->txt;
  if (const cfparam *par = cfpar(nd))
    return mark + par->key + '=' + par->val;
  const cfgroup *grp = cfgrp(nd);
  const string cat = grp->cat, name = grp->name;
  switch (grp->type) {
  case cf_grptop: return mark + cat + "::" + name;
  case cf_grpcat: return cat.empty() && !name.empty() ? name + '/' : cat + ':';
  case cf_grpgrp: return '[' + cat + '.' + name + ']';
  case cf_grpval: return name + '=';
  case cf_grppar: return '[' + name + "=]";
  case cf_grprem: return '[' + name + "#]";
  default: return mark + cat + '.' + name;
  }
}

string dump(const cfnode *top, bool rows) {
  auto *nd = const_cast<cfnode *>(top);
  string text = word(nd), held;
  if (rows)
    text += '@' + std::to_string(cfgrp(nd)   ? cfgrp(nd)->row
                                 : cfpar(nd) ? cfpar(nd)->row
                                             : cfrem(nd)->row);
  if (const cfparam *par = cfpar(nd); par && par->eval && !nd->ref)
    text += '!';
  for (cfnode *it = cfgrp(nd) ? cfiterator(cfgrp(nd)) : nd; it != nd && !cfend(it); cfnext(&it))
    held += (held.empty() ? "" : ", ") + dump(it, rows);
  return held.empty() ? text : text + '(' + held + ')';
}

string said() { return std::exchange(messages, string()); }

namespace {

/// A stream that calls a function to read or to write bytes.
template <class Function> stream open(const char *mode, Function function) {
  const cookie_io_functions_t calls = {
      [](void *it, char *buf, size_t size) { return (*static_cast<Function *>(it))(buf, size); },
      [](void *it, const char *buf, size_t size) {
        return (*static_cast<Function *>(it))(const_cast<char *>(buf), size);
      },
      nullptr, [](void *it) { return delete static_cast<Function *>(it), 0; }};
  return {fopencookie(new Function(function), mode, calls), std::fclose};
}

} // namespace

stream source(std::string_view bytes, size_t broken) {
  return open("r", [=, at = size_t{0}](char *buf, size_t size) mutable {
    const size_t count = bytes.substr(0, broken).copy(buf, size, at);
    at += count;
    const bool fails = count == 0 && at == broken;
    broken = fails ? never : broken;
    return fails ? ssize_t{-1} : static_cast<ssize_t>(count);
  });
}

stream sink(string &out, size_t room) {
  return open("w", [&out, room](char *buf, size_t size) mutable {
    const size_t count = std::min(size, room - out.size());
    out.append(buf, count);
    room = count < size ? never : room;
    return static_cast<ssize_t>(count);
  });
}

reading read(std::string_view bytes, cflexer *lex) {
  cflexer own{};
  lex = lex ? lex : &own;
  const int result = cflex(lex, source(bytes).get(), "cfg");
  return {lex->top, result, lex->nrow, said()};
}

string print(cfgroup *top, cfprinter *prn) {
  cfprinter own{};
  string text;
  const int result = cfprint(sink(text).get(), prn ? prn : &own, top, "out");
  need(prn || result == 1, "a good stream is written");
  return text;
}

namespace {

// A block consists of this header, the bytes for the library, and the guard.
struct alignas(std::max_align_t) header {
  size_t size;
  size_t live;
};
constexpr char guard[] = "the end of a block";
constexpr char gone = 'Z';

header *header_of(const void *block) {
  return static_cast<header *>(const_cast<void *>(block)) - 1;
}

} // namespace

meter *meter::current;

meter::meter() {
  const struct cfmmgr metered = {allocate, release};
  former = cfmmgr(&metered);
  current = this;
}

meter::~meter() noexcept(false) {
  cfmmgr(&former);
  current = nullptr;
  bool kept = true;
  for (const void *block : given) {
    header *head = header_of(block);
    ASAN_UNPOISON_MEMORY_REGION(block, head->size);
    const string bytes(static_cast<const char *>(block), head->size);
    kept = kept && (head->live || bytes == string(head->size, gone));
    std::free(head);
  }
  if (!std::uncaught_exceptions()) {
    need(kept, "a released block is not written to");
    need(live == 0, "every block is released");
  }
}

bool meter::alive(const void *block) { return header_of(block)->live; }

void meter::called() {
  if (!current || current->countdown == 0 || --current->countdown > 0)
    return;
  current->countdown = current->always;
  if (current->jump)
    std::longjmp(*current->jump, 1);
  throw thrown();
}

void *meter::allocate(size_t size) {
  called();
  auto *head = static_cast<header *>(std::malloc(sizeof(header) + size + sizeof guard));
  *head = {size, 1};
  char *block = reinterpret_cast<char *>(head + 1);
  std::memset(block, 'A', size);
  std::memcpy(block + size, guard, sizeof guard);
  ++current->live;
  current->sizes.push_back(size);
  current->given.push_back(block);
  return block;
}

void meter::release(void *block) {
  header *head = header_of(block);
  if (!head->live || std::memcmp(static_cast<char *>(block) + head->size, guard, sizeof guard)) {
    std::fputs("a block was released twice, or written past its end\n", stderr);
    std::abort(); // the library may be unable to pass an exception on
  }
  head->live = 0;
  std::memset(block, gone, head->size);
  ASAN_POISON_MEMORY_REGION(block, head->size);
  --current->live;
  current->released.push_back(block);
  called();
}

void on_small_stack(const std::function<void()> &f) {
  pthread_attr_t former, small;
  pthread_getattr_default_np(&former);
  pthread_attr_init(&small);
  need(pthread_attr_setstacksize(&small, 256 * 1024) == 0, "a thread can have a small stack");
  pthread_setattr_default_np(&small);
  auto done = std::async(std::launch::async, f);
  pthread_setattr_default_np(&former);
  done.get();
}

} // namespace kit
