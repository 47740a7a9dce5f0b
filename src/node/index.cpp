// Index: the searches of an operation that looks up many texts in the same lists.
// SPDX-License-Identifier: MIT
#include "node/index.h"

#include "node/memory.h"

#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

namespace cfcore {

ptrdiff_t index_threshold = 50; // NOLINT(readability-magic-numbers): by measurement

namespace {

/// What an entry of an index says about a list. All kinds but the last give a first element: of
/// the hits of key_hit, of the hits of group_hit, or of the nameless elements.
enum entry_kind : uint32_t {
  unused,      // so that no tag is 0
  first_key,   // the first with a key
  first_par,   // the first with any key
  first_name,  // the first group with a name
  first_texts, // the first group with category and name, if first_name has another category
  first_cat,   // the first group with a category
  first_group, // the first group with any texts
  first_level, // the first category level or name level
  like_par,    // the first parameter without a key, also in blocks and levels
  like_inst,   // the first instance without a name, by category, also in blocks and levels
  last_added   // plus a search_kind: the last element whose entries for such searches are made
};
constexpr int kind_bits = 4;

} // namespace

/// What identifies an entry. Texts that do not matter for its kind are NULL.
struct searches::label {
  uint32_t what; // an entry_kind
  const cfgroup *list;
  const char *cat = nullptr;
  const char *text = nullptr; // key or name

  /// The key of a parameter, or the name of a group.
  static const char *textof(const cfnode *nd) {
    return nd->type == cf_param ? aspar(nd)->key : asgrp(nd)->name;
  }
  /// True if the element of the entry may be in a block or level of the list. An index has entries
  /// of such a kind for one list only, that of its owner.
  bool isdeep() const {
    return what == like_par || what == like_inst ||
           what == uint32_t{last_added} + uint32_t{by_likeness};
  }
  /// True if this is the label of an entry that has the same kind and the element `nd`.
  bool matches(const cfnode *nd) const {
    return (nd->group == list || isdeep()) && (!cat || equal(asgrp(nd)->cat, cat)) &&
           (!text || equal(textof(nd), text));
  }
};

/// Hashes of labels, equal for equal texts. Nobody must be able to choose texts that collide. So a
/// text is a polynomial, with its bytes as coefficients, modulo a prime, and its hash is the value
/// of the polynomial at a random point: two texts of n bytes collide at no more than n / 3 of 2^29
/// points.
class searches::hasher {
public:
  hasher() {
    // The author of a file knows neither the time of the search nor the layout of the process.
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    const uint64_t seed = static_cast<uint64_t>(now) % prime * multiplier + address(this);
    point = points + seed % prime % points;
    for (size_t byte = 0; byte < std::size(folded); ++byte)
      folded[byte] = static_cast<unsigned char>(std::tolower(static_cast<int>(byte)));
  }

  /// The tag of an entry: the upper bits of a hash, and below them the kind. No tag is 0.
  uint32_t tag(const label &of) const {
    uint64_t sum = put(address(of.list) % prime, 1);
    if (of.cat)
      sum = text(sum, of.cat);
    if (of.text)
      sum = text(sum, of.text);
    constexpr int excess = prime_bits + kind_bits - 32;
    return static_cast<uint32_t>(sum % prime >> excess << kind_bits | of.what);
  }

private:
  static constexpr int prime_bits = 31;
  static constexpr uint64_t prime = (uint64_t{1} << prime_bits) - 1;
  static constexpr uint64_t multiplier = 48271; // makes the seed depend on all bits of the time
  static constexpr uint64_t points = 1U << 29;
  static constexpr int coefficient_bits = 24;

  uint64_t point; // below 2^30, so a sum stays below 2^33 and no step overflows
  unsigned char folded[256];

  static uint64_t address(const void *object) { return reinterpret_cast<uintptr_t>(object); }

  uint64_t put(uint64_t sum, uint64_t coefficient) const {
    sum = sum * point + coefficient;
    return (sum & prime) + (sum >> prime_bits);
  }

  /// Three bytes are one coefficient, with a bit above them. The last one ends in a zero byte.
  uint64_t text(uint64_t sum, const char *bytes) const {
    uint64_t coefficient = 1;
    for (; *bytes; ++bytes) {
      coefficient = coefficient << 8 | folded[static_cast<unsigned char>(*bytes)];
      if (coefficient >> coefficient_bits) {
        sum = put(sum, coefficient);
        coefficient = 1;
      }
    }
    return put(sum, coefficient << 8);
  }
};

/// A hash table of entries with linear probing. The upper bits of a tag choose its slot, so slots
/// lie in the order of their tags, and the table grows in one pass over them.
class searches::table {
public:
  explicit table(const hasher &function) : hash(function) {}
  table(const table &) = delete;
  table &operator=(const table &) = delete;
  ~table() {
    if (nodes)
      release_quietly(nodes);
  }

  /// The element of an entry; NULL if there is none.
  cfnode *find(const label &of) const {
    if (!used)
      return nullptr;
    const size_t at = slot(of, hash.tag(of));
    return tags[at] ? nodes[at] : nullptr;
  }

  /// Makes an entry, unless there is one. Gives its element.
  cfnode *add(const label &of, cfnode *nd) { return entry(of, nd); }

  /// Makes an entry, or changes the element of the one that is there.
  void set(const label &of, cfnode *nd) { entry(of, nd) = nd; }

private:
  const hasher &hash;
  cfnode **nodes = nullptr;
  uint32_t *tags = nullptr; // in the same block; 0: the slot is free
  size_t room = 0;
  size_t used = 0;

  size_t first_slot(uint32_t tag) const { return static_cast<size_t>(uint64_t{tag} * room >> 32); }
  size_t next_slot(size_t at) const { return at + 1 < room ? at + 1 : 0; }

  size_t slot(const label &of, uint32_t tag) const {
    size_t at = first_slot(tag);
    while (tags[at] && !(tags[at] == tag && of.matches(nodes[at])))
      at = next_slot(at);
    return at;
  }

  /// The place of an entry's element. If there is no such entry, it is made with `nd`.
  cfnode *&entry(const label &of, cfnode *nd) {
    if (used >= room - room / 4)
      grow();
    const uint32_t tag = hash.tag(of);
    const size_t at = slot(of, tag);
    if (!tags[at]) {
      tags[at] = tag;
      nodes[at] = nd;
      ++used;
    }
    return nodes[at];
  }

  /// Makes the table larger by half, so that the old and the new one together take at most 40 bytes
  /// for each entry.
  void grow() {
    const size_t larger = room ? room + room / 2 : 64;
    void *block = allocate(larger * (sizeof(void *) + sizeof(uint32_t)));
    cfnode **const former_nodes = std::exchange(nodes, static_cast<cfnode **>(block));
    const uint32_t *former_tags = std::exchange(tags, reinterpret_cast<uint32_t *>(nodes + larger));
    const size_t former_room = std::exchange(room, larger);
    std::memset(tags, 0, larger * sizeof(uint32_t));
    for (size_t i = 0; i < former_room; ++i)
      if (former_tags[i])
        move(former_tags[i], former_nodes[i]);
    if (former_nodes)
      release(former_nodes);
  }
  void move(uint32_t tag, cfnode *nd) {
    size_t at = first_slot(tag);
    while (tags[at])
      at = next_slot(at);
    tags[at] = tag;
    nodes[at] = nd;
  }
};

namespace {

bool isnameless(const cfnode *nd) {
  if (nd->type == cf_param)
    return !*aspar(nd)->key;
  return nd->type == cf_group && asgrp(nd)->type == cf_grpinst && !*asgrp(nd)->name;
}

/// Hit of a search for an element like `wanted`, which is nameless.
struct likeness_hit {
  const cfnode *wanted;

  bool operator()(const cfnode *nd) const {
    return isnameless(nd) && nd->type == wanted->type &&
           (nd->type == cf_param || equal(asgrp(nd)->cat, asgrp(wanted)->cat));
  }
};

/// The element that follows `nd` among those that an owner has in its list, blocks and levels.
/// Instances and top groups are not entered, as they are owners themselves.
cfnode *following(const cfgroup *owner, cfnode *nd) {
  cfgroup *grp = ifgrp(nd);
  nd = grp && grp->type != cf_grpinst && grp->type != cf_grptop ? grp->elem.next : nd->next;
  while (isanchor(nd) && nd->group != owner)
    nd = nd->group->link.next;
  return nd;
}

} // namespace

/// The index of an owner's lists. Its searches give NULL if a list has no entries of their kind.
class searches::index {
public:
  const cfgroup *const owner;
  index *const outer; // the one that was made before

  index(const cfgroup *grp, index *former, const hasher &hash)
      : owner(grp), outer(former), entries(hash) {}

  /// Begins the entries for a kind of search in a list, unless that is done.
  void begin(cfgroup *list, search_kind by) { entries.add(last(list, by), &list->elem); }

  cfnode *key(cfgroup *list, const char *text) {
    cfnode *hit = entries.find({text ? first_key : first_par, list, nullptr, text});
    return hit ? hit : search(list, by_key, key_hit{text});
  }

  cfnode *group(cfgroup *list, const char *cat, const char *name) {
    cfnode *hit = entries.find(name ? label{first_name, list, nullptr, name}
                                    : label{cat ? first_cat : first_group, list, cat});
    if (hit && cat && name && !equal(asgrp(hit)->cat, cat))
      hit = entries.find({first_texts, list, cat, name});
    return hit ? hit : search(list, name ? by_name : by_cat, group_hit{cat, name});
  }

  cfnode *nameless(cfgroup *list, const cfnode *nd) {
    cfnode *hit = entries.find(likeness(list, nd));
    return hit ? hit : search(list, by_likeness, likeness_hit{nd});
  }

  bool has_level(const cfgroup *list) const { return entries.find({first_level, list}); }

private:
  table entries;

  static label last(const cfgroup *list, search_kind by) {
    return {uint32_t{last_added} + uint32_t{by}, list};
  }
  static label likeness(const cfgroup *list, const cfnode *nd) {
    return nd->type == cf_param ? label{like_par, list} : label{like_inst, list, asgrp(nd)->cat};
  }

  /// Adds elements, from the one after the last that was added, up to the first hit. Gives the hit
  /// or the anchor.
  template <class Hit> cfnode *search(cfgroup *list, search_kind by, Hit hit) {
    cfnode *added = entries.find(last(list, by));
    if (!added)
      return nullptr;
    const auto next = [=](cfnode *nd) {
      return by == by_likeness ? following(list, nd) : nd->next;
    };
    cfnode *nd = next(added);
    while (!isanchor(nd)) {
      add(list, by, nd);
      added = nd;
      if (hit(nd))
        break;
      nd = next(nd);
    }
    entries.set(last(list, by), added);
    return nd;
  }

  /// Makes the entries of an element, unless another element is the first one and has them.
  void add(const cfgroup *list, search_kind by, cfnode *nd) {
    switch (by) {
    case by_key:
      if (key_hit{nullptr}(nd)) {
        entries.add({first_par, list}, nd);
        entries.add({first_key, list, nullptr, label::textof(nd)}, nd);
      }
      break;
    case by_name:
      if (group_hit{nullptr, nullptr}(nd)) {
        const cfgroup *group = asgrp(nd);
        if (group->type == cf_grpcat)
          entries.add({first_level, list}, nd);
        const cfnode *first = entries.add({first_name, list, nullptr, group->name}, nd);
        if (!equal(asgrp(first)->cat, group->cat))
          entries.add({first_texts, list, group->cat, group->name}, nd);
      }
      break;
    case by_cat:
      if (group_hit{nullptr, nullptr}(nd)) {
        entries.add({first_group, list}, nd);
        entries.add({first_cat, list, asgrp(nd)->cat}, nd);
      }
      break;
    case by_likeness:
      if (isnameless(nd))
        entries.add(likeness(list, nd), nd);
      break;
    }
  }
};

searches::~searches() {
  while (innermost)
    release_innermost();
  if (hash)
    release_quietly(hash);
}

void searches::release_innermost() noexcept {
  index *done = std::exchange(innermost, innermost->outer);
  done->~index();
  release_quietly(done);
}

void searches::leave_index() noexcept {
  if (current)
    release_innermost();
  current = innermost && innermost->owner == grp ? innermost : nullptr;
}

/// Counts a plain search if it was long: it passed over `n` elements of a list. Begins an index of
/// the list when the long searches have taken as much time as the index will: to add one element
/// takes as long as to pass over a dozen.
void searches::passed_over(ptrdiff_t n, cfgroup *list, search_kind by) {
  if (n <= index_threshold)
    return;
  const ptrdiff_t cost = n * (index_threshold / 4);
  passed += n;
  if (passed < cost)
    return;
  passed -= cost;
  if (!hash)
    hash = new (allocate(sizeof(hasher))) hasher;
  if (!current)
    current = innermost = new (allocate(sizeof(index))) index(grp, innermost, *hash);
  current->begin(list, by);
}

namespace {

/// Plain search, which counts the nodes that it looks at.
template <class Hit> cfnode *counted(cfnode *it, Hit ishit, ptrdiff_t &n) {
  return seek(it, [&](const cfnode *nd) {
    ++n;
    return ishit(nd);
  });
}

} // namespace

cfnode *searches::long_key(cfgroup *list, const char *text) {
  cfnode *hit = current ? current->key(list, text) : nullptr;
  if (hit)
    return hit;
  ptrdiff_t n = 0;
  hit = counted(list->elem.next, key_hit{text}, n);
  passed_over(n, list, by_key);
  return hit;
}

cfnode *searches::long_group(cfgroup *list, const char *cat, const char *name) {
  cfnode *hit = current ? current->group(list, cat, name) : nullptr;
  if (hit)
    return hit;
  ptrdiff_t n = 0;
  hit = counted(list->elem.next, group_hit{cat, name}, n);
  // After a search by category that finds an instance or block, getcatname() searches the list by
  // name. So the index is for that.
  const bool bycat = !name && (isanchor(hit) || asgrp(hit)->type == cf_grpcat);
  passed_over(n, list, bycat ? by_cat : by_name);
  return hit;
}

cfnode *searches::long_group_from(cfgroup *list, cfnode *it, const char *cat, const char *name) {
  ptrdiff_t n = 0;
  cfnode *hit = counted(it, group_hit{cat, name}, n);
  passed_over(n, list, by_name);
  return hit;
}

cfnode *searches::indexed_group_without_levels(cfgroup *list, const char *cat, const char *name) {
  cfnode *hit = current->group(list, cat, name);
  return hit && !current->has_level(list) ? hit : nullptr;
}

cfnode *searches::nameless(const cfnode *nd) {
  if (cfnode *hit = current ? current->nameless(grp, nd) : nullptr)
    return hit;
  const likeness_hit ishit{nd};
  ptrdiff_t n = 1;
  cfnode *hit = following(grp, &grp->elem);
  for (; !ishit(hit) && !isanchor(hit); ++n)
    hit = following(grp, hit);
  passed_over(n, grp, by_likeness);
  return hit;
}

} // namespace cfcore
