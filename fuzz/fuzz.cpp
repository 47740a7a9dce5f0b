// fuzz: what the targets share: promises, memory, messages, reading and printing.
// SPDX-License-Identifier: MIT
#include "fuzz.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <unordered_map>
#include <utility>

namespace fuzz {
namespace {

struct block {
  unsigned long serial;
  size_t size;
};

std::unordered_map<const void *, block> blocks;
unsigned long serials = 0;
int countdown = 0;
bool leaves_on = false; // once it left
std::string messages;

void *give(size_t size) {
  called_out();
  void *given = std::malloc(size);
  need(given, "memory");
  std::memset(given, 0xA5, size);
  blocks[given] = {++serials, size};
  return given;
}

void take(void *given) {
  const auto found = blocks.find(given);
  need(found != blocks.end(), "a block is released once");
  std::memset(given, 0x5A, found->second.size);
  blocks.erase(found);
  std::free(given);
  called_out();
}

__attribute__((format(printf, 2, 0))) void note(char kind, const char *fmt, va_list args) {
  char *line = nullptr;
  need(vasprintf(&line, fmt, args) >= 0, "a message has room");
  messages += kind;
  messages.append(" ").append(line).append("\n");
  std::free(line);
}

void dump(std::string &text, size_t depth, const cfnode *nd, bool rows) {
  const auto line = [&](const char *kind, long row, const char *first, const char *second) {
    text.append(depth, ' ').append(kind);
    if (rows)
      text.append(std::to_string(row));
    text.append(" [").append(first).append("] [").append(second).append("]\n");
  };
  if (nd->type == cf_remark) {
    const auto *rem = reinterpret_cast<const cfremark *>(nd);
    return line("rem", rem->row, rem->txt, "");
  }
  if (nd->type == cf_param) {
    const auto *par = reinterpret_cast<const cfparam *>(nd);
    return line("par", par->row, par->key, par->val);
  }
  const auto *grp = reinterpret_cast<const cfgroup *>(nd);
  line(("grp" + std::to_string(grp->type) + " ").c_str(), grp->row, grp->cat, grp->name);
  for (const cfnode *it = grp->elem.next; it->type != cf_anchor; it = it->next)
    dump(text, depth + 1, it, rows);
}

} // namespace

void need(bool kept, const char *promise) {
  if (kept)
    return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

bool same(const char *one, const char *other) { return strcasecmp(one, other) == 0; }

void install_memory() {
  const struct cfmmgr manager = {give, take};
  cfmmgr(&manager);
}

void leave_at(int count, bool for_good) {
  countdown = count;
  leaves_on = for_good;
}

void called_out() {
  if (countdown == 0 || --countdown > 0)
    return;
  countdown = leaves_on ? 1 : 0;
  throw left();
}

size_t live() { return blocks.size(); }

unsigned long born(const void *given) {
  const auto found = blocks.find(given);
  return found == blocks.end() ? 0 : found->second.serial;
}

std::string said() { return std::exchange(messages, {}); }

reading read(std::string_view bytes, const cflexer &slots) {
  cflexer lex = slots;
  FILE *fd = fmemopen(const_cast<char *>(bytes.data()), bytes.size(), "r");
  need(fd, "a stream to read");
  const int result = cflex(&lex, fd, "cfg");
  std::fclose(fd);
  return {lex.top, result, lex.nrow, said()};
}

std::string print(cfgroup *top, const cfprinter &slots) {
  cfprinter prn = slots;
  char *text = nullptr;
  size_t size = 0;
  FILE *fd = open_memstream(&text, &size);
  need(fd, "a stream to write");
  const int result = cfprint(fd, &prn, top, "cfg");
  std::fclose(fd);
  std::string printed(text, size);
  std::free(text);
  need(result == 1, "a good stream is written");
  return printed;
}

std::string dump(const cfgroup *top, bool rows) {
  std::string text;
  dump(text, 0, &top->link, rows);
  return text;
}

} // namespace fuzz

void emsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  fuzz::note('E', fmt, args);
  va_end(args);
  fuzz::called_out();
}

void wmsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  fuzz::note('W', fmt, args);
  va_end(args);
  fuzz::called_out();
}
