// Construction: an element and its texts in one allocation.
// SPDX-License-Identifier: MIT
#include "node/make.h"

#include "node/link.h"
#include "node/memory.h"
#include "node/value_buffer.h"

#include <cstdint>
#include <cstring>

namespace cfcore {
namespace {

/// Copies a text that is at least as long as a word, but shorter than two: its first and its last
/// word, which may overlap. False for any other length.
template <class Word> bool copyends(char *to, const char *from, size_t n) {
  if (n / sizeof(Word) != 1)
    return false;
  Word first;
  Word last;
  std::memcpy(&first, from, sizeof first);
  std::memcpy(&last, from + n - sizeof last, sizeof last);
  std::memcpy(to, &first, sizeof first);
  std::memcpy(to + n - sizeof last, &last, sizeof last);
  return true;
}

/// Copies `text` with a terminator to `to`. Gives the place after the terminator. Most texts are so
/// short that calling memcpy() costs more than copying their bytes.
inline char *store(char *to, std::string_view text) {
  const size_t n = text.size();
  const char *from = text.data();
  if (!copyends<uint64_t>(to, from, n) && !copyends<uint32_t>(to, from, n) && n > 0)
    std::memcpy(to, from, n);
  to[n] = '\0';
  return to + n + 1;
}

} // namespace

cfgroup *makegrp(std::string_view cat, std::string_view name, cfgroup_t type, long row) {
  auto *grp = static_cast<cfgroup *>(allocate(sizeof(cfgroup) + cat.size() + name.size() + 2));
  init(&grp->link, cf_group, nullptr, nullptr);
  init(&grp->elem, cf_anchor, grp, nullptr);
  grp->type = type;
  grp->row = row;
  char *texts = reinterpret_cast<char *>(grp + 1);
  grp->cat = texts;
  grp->name = texts = store(texts, cat);
  store(texts, name);
  return grp;
}

cfremark *makerem(std::string_view txt, long row) {
  auto *rem = static_cast<cfremark *>(allocate(sizeof(cfremark) + txt.size() + 1));
  init(&rem->link, cf_remark, nullptr, nullptr);
  rem->row = row;
  char *texts = reinterpret_cast<char *>(rem + 1);
  rem->txt = texts;
  store(texts, txt);
  return rem;
}

cfparam *makepar(std::string_view key, std::string_view val, long row) {
  auto *par = static_cast<cfparam *>(
      allocate(sizeof(cfparam) + value_buffer_size + key.size() + val.size() + 2));
  init(&par->link, cf_param, nullptr, nullptr);
  par->row = row;
  char *texts = reinterpret_cast<char *>(par + 1) + value_buffer_size;
  par->key = texts;
  par->val = texts = store(texts, key);
  store(texts, val);
  par->eval = nullptr;
  par->vval = nullptr;
  return par;
}

} // namespace cfcore

using namespace cfcore;

cfgroup *cfnewgrp(const char *cat, const char *name, cfgroup_t type, long row) {
  return makegrp(view(cat), view(name), type, row);
}

cfremark *cfnewrem(const char *txt, long row) { return makerem(view(txt), row); }

cfparam *cfnewpar(const char *key, const char *val, long row) {
  return makepar(view(key), view(val), row);
}

cfgroup *cfnewrefgrp(cfgroup *grp) {
  auto *ref = static_cast<cfgroup *>(allocate(sizeof(cfgroup)));
  init(&ref->link, grp->link.type, nullptr, &grp->link);
  init(&ref->elem, cf_anchor, ref, nullptr);
  refer(ref, grp);
  return ref;
}

cfparam *cfnewrefpar(cfparam *par) {
  auto *ref = static_cast<cfparam *>(allocate(sizeof(cfparam)));
  init(&ref->link, par->link.type, nullptr, &par->link);
  refer(ref, par);
  return ref;
}
