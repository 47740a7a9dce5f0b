// Growth: what each operation costs for an element, on trees of each form and of growing size.
// Use: cf_growth [OPERATION [FORM [SIZE...]]]; nothing or "all" means all of them.
// SPDX-License-Identifier: MIT
#include "cf.h"
#include "definitions.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <malloc.h>

namespace {

using std::size_t;
using std::string;
using std::to_string;

// Forms.

using Line = std::function<string(size_t)>;

cfgroup *read(const string &text) {
  std::FILE *fd = fmemopen(const_cast<char *>(text.data()), text.size(), "r");
  cflexer lex{};
  cflex(&lex, fd, "growth");
  std::fclose(fd);
  return lex.top;
}

/// A tree read from `n` times what `line` gives.
cfgroup *lines(size_t n, const Line &line) {
  string text;
  for (size_t i = 0; i < n; ++i)
    text += line(i);
  return read(text);
}

/// A tree of `n` elements, or one more if that is odd: groups in one another, with a parameter
/// before each.
cfgroup *nested(size_t n, cfgroup_t kind, const char *cat) {
  cfgroup *top = cfnewgrp("", "", cf_grptop, -1);
  cfgroup *at = top;
  for (size_t i = 0; i < n; i += 2) {
    cfgroup *inner = cfnewgrp(cat, "name", kind, -1);
    cfaddpar(at, cfnewpar("key", "value", -1));
    cfaddgrp(at, inner);
    at = inner;
  }
  return top;
}

string key(size_t i) { return "key_" + to_string(i * 7919 % 10000019); }

/// A key of 20 letters, whose cases are the bits of `i`.
string cases(size_t i) {
  string text = "abcdefghijklmnopqrst";
  for (size_t bit = 0; bit < text.size(); ++bit)
    if (i >> bit & 1)
      text[bit] = static_cast<char>(text[bit] - 0x20);
  return text;
}

struct Form {
  const char *name;
  const char *content;
  cfgroup *(*make)(size_t elements);
};

const Form forms[] = {
    {"keys", "one group of different keys",
     [](size_t n) { return lines(n, [](size_t i) { return key(i) + " = 1\n"; }); }},
    {"category", "instances of one category",
     [](size_t n) { return lines(n, [](size_t i) { return "host " + key(i) + " {\n}\n"; }); }},
    {"categories", "instances of different categories, all of one name",
     [](size_t n) { return lines(n, [](size_t i) { return key(i) + " name {\n}\n"; }); }},
    {"names", "instances without category",
     [](size_t n) { return lines(n, [](size_t i) { return key(i) + " {\n}\n"; }); }},
    {"pairs", "instances of one category with two parameters each",
     [](size_t n) {
       return lines(n / 3, [](size_t i) { return "host " + key(i) + " {\na = 1\nb = 2\n}\n"; });
     }},
    {"groups", "groups of 1,000 keys",
     [](size_t n) {
       return lines(n, [](size_t i) {
         return (i % 1000 ? "" : (i ? "}\nhost " : "host ") + key(i) + " {\n") + key(i) + " = 1\n";
       });
     }},
    {"repeated", "one key again and again",
     [](size_t n) { return lines(n, [](size_t) { return string("key = 1\n"); }); }},
    {"cases", "keys that differ in case only",
     [](size_t n) { return lines(n, [](size_t i) { return cases(i) + " = 1\n"; }); }},
    {"prefix", "keys with the first 200 bytes in common",
     [](size_t n) {
       return lines(n, [](size_t i) { return string(200, 'x') + key(i) + " = 1\n"; });
     }},
    {"remarks", "keys with a remark each",
     [](size_t n) {
       return lines(n / 2, [](size_t i) { return "# remark\n" + key(i) + " = 1\n"; });
     }},
    {"mixed", "keys, remarks and instances in one list, with and without category",
     [](size_t n) {
       return lines(n / 8, [](size_t i) {
         const string k = key(i);
         return k + " = 1\n# remark\nhost " + k + " {\nport = 1\n}\n" + k +
                " {\nport = 1\n}\nport = 1\n";
       });
     }},
    {"deep", "groups in one another with a key each",
     [](size_t n) { return nested(n, cf_grpinst, ""); }},
    {"deepcat", "the same with categories", [](size_t n) { return nested(n, cf_grpinst, "host"); }},
    {"deeptop", "top groups in one another", [](size_t n) { return nested(n, cf_grptop, ""); }},
    {"deepblock", "blocks in one another", [](size_t n) { return nested(n, cf_grppar, ""); }},
    {"nameless", "instances with a category and no name",
     [](size_t n) {
       cfgroup *top = cfnewgrp("", "", cf_grptop, -1);
       for (size_t i = 0; i < n; ++i)
         cfaddgrp(top, cfnewgrp(key(i).c_str(), "", cf_grpinst, -1));
       return top;
     }},
};

// Operations.

/// What one measurement works on.
struct Work {
  cfgroup *tree;
  cfgroup *other = nullptr; // made by prepare or by work; deleted at the end, before the tree
};

void check(cfgroup *top) {
  cfparser parser{};
  parser.scopedef = bench::single;
  cfparse(&parser, top, "growth");
}

void compare(const cfgroup *one, const cfgroup *two, bool filtered, unsigned opt) {
  cfdiff diff{};
  if (filtered)
    diff.chkscope = [](const char *scope) { return *scope != '!' ? 1 : 0; };
  diff.opt = opt;
  cfdiffnd(cfdiffdfl(&diff), &one->link, &two->link);
}

void print(cfgroup *top) {
  static std::FILE *sink = std::fopen("/dev/null", "w");
  cfprinter prn{};
  cfprint(sink, &prn, top, "growth");
}

struct Operation {
  const char *name;
  const char *what;
  void (*prepare)(Work &);
  void (*run)(Work &);
  bool indents = false; // on deep trees most of the output is indentation
};

void nothing(Work &) {}
void catalogue(Work &it) { it.other = cfcatalog(it.tree); }
void copied(Work &it) { it.other = cfdupgrp(it.tree); }

const Operation all[] = {
    {"check", "`cfparse`, nothing `multi`", nothing, [](Work &it) { check(it.tree); }},
    {"catalog", "`cfcatalog`", nothing, catalogue},
    {"checkcatalog", "`cfparse` of a catalog", catalogue, [](Work &it) { check(it.other); }},
    {"stacked", "`cfcatalog` of a catalog", catalogue,
     [](Work &it) {
       cfgroup *lower = it.other;
       it.other = cfcatalog(lower);
       cfdelgrp(lower);
     }},
    {"insert", "`cfcataddgrp` of all elements",
     [](Work &it) { it.other = cfcatalog(cfnewgrp("", "", cf_grptop, -1)); },
     [](Work &it) {
       it.tree->type = cf_grpgrp;
       cfgroup *top = cfgrp(it.other->link.ref);
       cfcataddgrp(it.other, it.tree);
       it.tree = top;
     }},
    {"exchange", "`cfcatxcgnd` for all elements",
     [](Work &it) { it.other = cfcatalog(cfnewgrp("", "", cf_grptop, -1)); },
     [](Work &it) { cfcatxcgnd(&it.other->link, &it.tree->link); }},
    {"clear", "`cfcatclrgrp` of all elements", catalogue, [](Work &it) { cfcatclrgrp(it.other); }},
    {"remove", "`cfcatdelgrp` of all elements", catalogue,
     [](Work &it) {
       cfcatdelgrp(it.other);
       it = {};
     }},
    {"compare", "`cfdiffnd`", copied, [](Work &it) { compare(it.tree, it.other, false, 0); }},
    {"filter", "`cfdiffnd` under a filter", copied,
     [](Work &it) { compare(it.tree, it.other, true, cf_diffrem); }},
    {"copy", "`cfdupgrp`", nothing, copied},
    {"delete", "`cfdelgrp`", nothing,
     [](Work &it) {
       cfdelgrp(it.tree);
       it = {};
     }},
    {"print", "`cfprint`", nothing, [](Work &it) { print(it.tree); }, true},
};

size_t count(const cfgroup *top) {
  size_t n = 0;
  for (const cfnode *nd = top->elem.next; nd != &top->elem;) {
    n += nd->type != cf_anchor;
    nd = nd->type == cf_anchor  ? nd->group->link.next
         : nd->type == cf_group ? reinterpret_cast<const cfgroup *>(nd)->elem.next
                                : nd->next;
  }
  return n;
}

/// Nanoseconds in which this thread ran: other processes on the machine do not count.
double now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// The least time of some rounds, in nanoseconds for an element.
double measure(const Operation &op, const Form &form, size_t size) {
  double least = 1e99;
  const int rounds = size >= 1000000 ? 3 : size >= 100000 ? 6 : 20;
  for (int i = 0; i < rounds; ++i) {
    Work work{form.make(size)};
    const size_t elements = count(work.tree);
    op.prepare(work);
    const double begin = now();
    op.run(work);
    least = std::min(least, (now() - begin) / static_cast<double>(elements));
    cfdelgrp(work.other);
    cfdelgrp(work.tree);
  }
  return least;
}

bool wanted(int argc, char **argv, int i, const char *name) {
  return argc <= i || std::strcmp(argv[i], "all") == 0 || std::strcmp(argv[i], name) == 0;
}

} // namespace

// Reports of duplicates are part of a check; writing them is not.
void emsg(const char *, ...) {}

int main(int argc, char **argv) {
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_MAX, 0);
  std::vector<size_t> sizes = {1000, 10000, 100000, 1000000};
  if (argc > 3)
    for (sizes.clear(); argc > 3; --argc)
      sizes.insert(sizes.begin(), std::stoul(argv[argc - 1]));
  for (const Operation &op : all) {
    if (!wanted(argc, argv, 1, op.name))
      continue;
    std::printf("\n%s: %s\n\n| ns for an element |", op.name, op.what);
    for (const size_t size : sizes)
      std::printf(" %zu |", size);
    std::printf("\n|---|");
    for (size_t i = 0; i < sizes.size(); ++i)
      std::printf("--:|");
    std::puts("");
    for (const Form &form : forms) {
      if (!wanted(argc, argv, 2, form.name))
        continue;
      std::printf("| %s |", form.content);
      for (const size_t size : sizes)
        if (op.indents && std::string_view(form.name).starts_with("deep") && size > 10000)
          std::printf(" |");
        else
          std::printf(" %.0f |", measure(op, form, size)), std::fflush(stdout);
      std::puts("");
    }
  }
}
