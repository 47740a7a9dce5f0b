// Kit of the tests: trees as text, streams in memory, a suspicious memory manager, invariants.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <future>
#include <map>
#include <mutex>
#include <pthread.h>
#include <set>
#include <sstream>

using std::string;

namespace {

// The whole program runs in the locale that the environment asks for.
[[maybe_unused]] const char *const locale =
    std::setlocale(LC_ALL, std::getenv("CF_LOCALE") ? std::getenv("CF_LOCALE") : "C");

std::mutex messages_lock;
string messages;

__attribute__((format(printf, 2, 0))) void say(char kind, const char *fmt, va_list args) {
  char *text = nullptr;
  ASSERT_GE(vasprintf(&text, fmt, args), 0);
  const std::lock_guard<std::mutex> hold(messages_lock);
  messages += string{kind, ' '} + text + '\n';
  std::free(text);
}

/// Calls `see` for all below `top`, a group before its children, until it gives false.
template <class See> void each(const cfgroup *top, See see) {
  for (cfnode *nd = top->elem.next; nd != &top->elem;) {
    if (nd->type != cf_anchor && !see(nd))
      return;
    nd = nd->type == cf_group    ? cfgrp(nd)->elem.next
         : nd->type == cf_anchor ? nd->group->link.next
                                 : nd->next;
  }
}

std::pair<const char *, const char *> texts(cfnode *nd) {
  if (const cfgroup *grp = cfgrp(nd))
    return {grp->cat, grp->name};
  if (const cfparam *par = cfpar(nd))
    return {par->key, par->val};
  return {cfrem(nd)->txt, ""};
}

string head(cfnode *nd, bool rows) {
  static const char *const kinds[] = {"top", "cat", "blockgrp", "inst", "val", "blockpar", "run"};
  const cfgroup *grp = cfgrp(nd);
  const long row = grp ? grp->row : cfpar(nd) ? cfpar(nd)->row : cfrem(nd)->row;
  string text = grp ? kinds[grp->type] : cfpar(nd) ? "param" : "remark";
  return rows ? (text += ' ') += std::to_string(row) : text;
}

string line(cfnode *nd, bool rows = true) {
  const auto [first, second] = texts(nd);
  string text = head(nd, rows);
  if (nd->type != cf_group || *first || *second) {
    (text += " '") += first;
    if (nd->type != cf_remark)
      (text += "' '") += second;
    text += '\'';
  }
  text += cfpar(nd) && cfpar(nd)->eval ? " evaluated" : "";
  for (cfnode *ref = nd->ref; ref; ref = ref->ref)
    text += " -> " + head(ref, rows);
  return text += '\n';
}

} // namespace

void emsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  say('E', fmt, args);
  va_end(args);
}

void wmsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  say('W', fmt, args);
  va_end(args);
}

namespace kit {

string said() {
  const std::lock_guard<std::mutex> hold(messages_lock);
  return std::exchange(messages, string());
}

string dump(const cfgroup *top, bool rows) {
  string text = line(const_cast<cfnode *>(&top->link), rows);
  const cfgroup *at = top;
  size_t depth = 1;
  each(top, [&](cfnode *nd) {
    for (; at != nd->group; at = at->link.group)
      --depth; // groups that ended since
    text.append(2 * depth, ' ') += line(nd, rows);
    depth += cfgrp(nd) ? 1 : 0;
    at = cfgrp(nd) ? cfgrp(nd) : at;
    return true;
  });
  return text;
}

namespace {

/// What a stream reads from or writes to, and where it fails.
struct cookie {
  std::string_view bytes;
  string *out;
  size_t at, limit;

  ssize_t give(char *buf, size_t size) {
    const size_t count = bytes.substr(0, limit).copy(buf, size, at);
    at += count;
    const bool fails = count == 0 && at == limit;
    limit = fails ? never : limit;
    return fails ? -1 : static_cast<ssize_t>(count);
  }
  ssize_t take(const char *buf, size_t size) {
    const size_t count = std::min(size, limit - out->size());
    out->append(buf, count);
    limit = count < size ? never : limit;
    return static_cast<ssize_t>(count);
  }
  stream open(const char *mode) {
    const cookie_io_functions_t functions = {
        [](void *it, char *buf, size_t size) { return static_cast<cookie *>(it)->give(buf, size); },
        [](void *it, const char *buf, size_t size) {
          return static_cast<cookie *>(it)->take(buf, size);
        },
        nullptr, [](void *it) { return delete static_cast<cookie *>(it), 0; }};
    return {fopencookie(new cookie(*this), mode, functions), std::fclose};
  }
};

} // namespace

stream source(std::string_view bytes, size_t broken) {
  return cookie{bytes, nullptr, 0, broken}.open("r");
}
stream sink(string &out, size_t room) { return cookie{{}, &out, 0, room}.open("w"); }

reading read(std::string_view bytes, const char *fname, cflexer *lex) {
  cflexer own{};
  lex = lex ? lex : &own;
  const int result = cflex(lex, source(bytes).get(), fname);
  return {lex->top, result, lex->nrow, said()};
}

string print(cfgroup *top, cfprinter *prn) {
  cfprinter own{};
  string text;
  const int result = cfprint(sink(text).get(), prn ? prn : &own, top, "out");
  EXPECT_TRUE(prn || result == 1);
  return text;
}

// A metered block: its size, twice; then what is given out; then the guard.
constexpr size_t head_size = 2 * sizeof(size_t);
constexpr unsigned char guard[] = "the end of the block";
meter *meter::current;

meter::meter() : outer_(std::exchange(current, this)) {
  const struct cfmmgr metered = {allocate, release};
  former_ = cfmmgr(&metered);
}

meter::~meter() {
  EXPECT_EQ(live_, 0U) << "blocks were not released";
  cfmmgr(&former_);
  current = outer_;
}

void *meter::allocate(size_t size) {
  if (current->leave_ > 0 && --current->leave_ == 0)
    throw out();
  auto *block = static_cast<unsigned char *>(std::malloc(head_size + size + sizeof guard));
  const size_t sizes[] = {size, size};
  std::memcpy(block, sizes, head_size);
  std::memset(block + head_size, 0xa5, size);
  std::memcpy(block + head_size + size, guard, sizeof guard);
  ++current->live_;
  current->sizes_.push_back(size);
  return block + head_size;
}

void meter::release(void *given) {
  auto *block = static_cast<unsigned char *>(given) - head_size;
  size_t size[2];
  std::memcpy(size, block, sizeof size);
  if (size[0] != size[1] || std::memcmp(block + head_size + size[0], guard, sizeof guard) != 0) {
    std::fputs("a block was released twice, or written around\n", stderr);
    std::abort();
  }
  std::memset(block + 1, 0x5a, head_size + size[0] - 1); // and so its sizes differ
  std::free(block);
  --current->live_;
  current->freed_.push_back(given);
  if (current->leave_releasing_)
    throw out();
}

size_t meter::leave_at_each(const std::function<void()> &task, const std::function<void()> &after) {
  const size_t before = live_;
  for (size_t n = 1;; ++n) {
    leave_at(n);
    bool left = false;
    try {
      task();
    } catch (const out &) {
      left = true;
    }
    leave_at(0);
    if (after)
      after();
    EXPECT_EQ(live_, before) << "after leaving at allocation " << n;
    if (!left || live_ != before)
      return n - 1;
  }
}

void checktree(const cfgroup *top) {
  const auto whole = [](const cfgroup *grp) {
    const cfnode &a = grp->elem;
    return a.type == cf_anchor && a.group == grp && !a.ref && a.next->prev == &a &&
           a.prev->next == &a;
  };
  ASSERT_TRUE(whole(top));
  each(top, [&](cfnode *nd) {
    bool good = nd->next->prev == nd && nd->prev->next == nd && nd->group &&
                nd->prev->group == nd->group && nd->next->group == nd->group &&
                (nd->type == cf_group || nd->type == cf_remark || nd->type == cf_param);
    good = good && texts(nd).first && texts(nd).second && (!cfgrp(nd) || whole(cfgrp(nd)));
    EXPECT_TRUE(good) << "links or texts of " << line(nd);
    return good;
  });
}

namespace {

/// What a node is in a catalog: Root, Group, Parameter (references); category, name, value (levels).
char sort(cfnode *nd) {
  const cfgroup *grp = cfgrp(nd);
  if (nd->ref) // agrees with its target, whose very texts it has
    return head(nd, true) != head(nd->ref, true) || texts(nd) != texts(nd->ref) ? '?'
           : !nd->group                                                         ? 'R'
           : !grp                                                               ? 'P'
           : grp->type == cf_grpinst                                            ? 'G'
                                                                                : '?';
  if (!grp || grp->row != -1 || (*grp->cat && (*grp->name || grp->type != cf_grpcat)))
    return '?';
  return grp->type == cf_grpval ? 'v' : grp->type != cf_grpcat ? '?' : *grp->cat ? 'c' : 'n';
}

void checkone(cfgroup *root) {
  static const std::map<char, string> parents = {{'G', "n"},  {'P', "v"},   {'c', "RG"},
                                                 {'v', "RG"}, {'n', "RGc"}, {'?', ""}};
  checktree(root);
  ASSERT_EQ(sort(&root->link), 'R');
  cfgroup *source = cfgrp(root->link.ref);
  std::map<const cfnode *, size_t> places; // of what is to be filed
  each(source, [&](cfnode *nd) {
    if (nd->type == cf_param || (cfgrp(nd) && cfgrp(nd)->type == cf_grpinst))
      places.emplace(nd, places.size());
    return true;
  });
  std::set<const cfnode *> filed;
  std::set<std::pair<const cfgroup *, string>> levels;
  each(root, [&](cfnode *nd) {
    const char kind = sort(nd), up = sort(&nd->group->link);
    const bool nameless = kind == 'G' && !*cfgrp(nd)->name; // goes into the first level there is
    EXPECT_TRUE(parents.at(kind).find(up) != string::npos || (nameless && up == 'c')) << line(nd);
    const cfgroup *owner = nd->group;
    while (!owner->link.ref)
      owner = owner->link.group;
    if (!nd->ref) {
      string text = line(nd, false);
      std::transform(text.begin(), text.end(), text.begin(),
                     [](unsigned char c) { return std::tolower(c); });
      EXPECT_TRUE(levels.emplace(nd->group, text).second) << "a second level " << line(nd);
      return true;
    }
    EXPECT_TRUE(places.contains(nd->ref) && filed.insert(nd->ref).second)
        << "a second reference, or one to what is not in the source: " << line(nd);
    if (nd->prev->ref) {
      EXPECT_LT(places[nd->prev->ref], places[nd->ref]) << "not in the order of the source";
    }
    const cfgroup *holder = nd->ref->group;
    while (holder && holder != source && holder->type != cf_grpinst)
      holder = holder->link.group;
    EXPECT_TRUE(holder && owner->link.ref == &holder->link)
        << "filed under another owner: " << line(nd);
    return true;
  });
  EXPECT_EQ(filed.size(), places.size()) << "something is not filed";
}

} // namespace

void checkcatalog(cfgroup *root) {
  do
    checkone(root);
  while ((root = cfgrp(root->link.ref)) && root->link.ref);
}

void on_small_stack(const std::function<void()> &f) {
  pthread_attr_t former;
  pthread_attr_t small;
  pthread_getattr_default_np(&former);
  pthread_attr_init(&small);
  ASSERT_EQ(pthread_attr_setstacksize(&small, 256 * 1024), 0);
  pthread_setattr_default_np(&small);
  auto done = std::async(std::launch::async, f);
  pthread_setattr_default_np(&former);
  done.get();
}

string data(const char *name) {
  std::ostringstream all;
  all << std::ifstream(CF_TESTDATA "/" + string(name)).rdbuf();
  EXPECT_FALSE(all.str().empty()) << name;
  return all.str();
}

unsigned long rounds(unsigned long usual) {
  const char *asked = std::getenv("CF_ROUNDS");
  return asked ? std::strtoul(asked, nullptr, 10) : usual;
}

string random_file(std::mt19937 &rng) {
  const auto die = [&](size_t faces) { return rng() % faces; };
  const auto some = [&](string from, size_t most) {
    string text(die(most + 1), ' ');
    for (char &c : text)
      c = from[die(from.size())];
    return text;
  };
  const auto space = [&] { return some(" \t\v\f\r", die(3)); };
  const auto word = [&] { return "abAB"[die(4)] + some("aB1_", 2); };
  const auto text = [&] {
    const string any = some(" \t\r#={}ab\xc3\xa4\xff", 8);
    return die(4) ? any : any + static_cast<char>(11 + die(245));
  };
  const string end = die(3) ? "\n" : "\r\n";
  string file;
  size_t depth = 0;
  for (size_t lines = die(24); lines > 0; --lines) {
    const size_t kind = die(9);
    if (kind == 0) {
      file += space();
    } else if (kind < 4) {
      file += space() + '#' + text();
    } else if (kind < 6) {
      file += space() + word() + (die(2) ? ' ' + space() + word() : "") + space() + '{' + space();
      ++depth;
    } else if (kind == 6 && depth > 0) {
      file += space() + '}' + space();
      --depth;
    } else {
      file += space() + word() + space() + '=' + text();
    }
    file += (die(20) ? "" : '\0' + text()) + end; // a zero byte hides what follows
  }
  for (; depth > 0; --depth)
    file += '}' + end;
  return die(4) || file.empty() ? file : file.substr(0, file.size() - 1);
}

} // namespace kit
