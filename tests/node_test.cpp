// Elements: layout, blocks of memory, searches, evaluators and values.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <strings.h>

using std::string;

namespace {

using sizes = std::vector<size_t>;

// Counted in pointers, so that the numbers hold for 32 and 64 bits.
#define AT(record, field) offsetof(record, field) / sizeof(void *)
#define WORDS(record) sizeof(record) / sizeof(void *)
TEST(Node, LayoutIsTheAbi) {
  EXPECT_EQ((sizes{WORDS(cfnode), WORDS(cfgroup), WORDS(cfremark), WORDS(cfparam)}),
            (sizes{5, 14, 7, 10}));
  EXPECT_EQ((sizes{AT(cfnode, prev),  AT(cfnode, next),  AT(cfnode, group), AT(cfnode, ref),
                   AT(cfnode, type),  AT(cfgroup, link), AT(cfgroup, row),  AT(cfgroup, cat),
                   AT(cfgroup, name), AT(cfgroup, type), AT(cfgroup, elem), AT(cfremark, link),
                   AT(cfremark, row), AT(cfremark, txt), AT(cfparam, link), AT(cfparam, row),
                   AT(cfparam, key),  AT(cfparam, val),  AT(cfparam, eval), AT(cfparam, vval)}),
            (sizes{0, 1, 2, 3, 4, 0, 5, 6, 7, 8, 9, 0, 5, 6, 0, 5, 6, 7, 8, 9}));
  EXPECT_EQ((sizes{AT(cflexer, isempty), AT(cflexer, isparam), AT(cflexer, scanrem),
                   AT(cflexer, scanpar), AT(cflexer, top), AT(cflexer, valid), AT(cflexer, fd),
                   AT(cflexer, fname), AT(cflexer, row), AT(cflexer, nrow), AT(cfprinter, outempty),
                   AT(cfprinter, outparam), AT(cfprinter, valid), AT(cfprinter, top),
                   AT(cfprinter, fd), AT(cfprinter, fname), AT(cfprinter, brk)}),
            (sizes{0, 4, 5, 7, 8, 9, 10, 11, 12, 13, 0, 4, 5, 6, 7, 8, 9}));
}

TEST(Node, OneBlockForEachElement) {
  kit::meter memory;
  const kit::tree grp(cfnewgrp("cat", "name", cf_grpinst, -1)),
      none(cfnewgrp(nullptr, nullptr, cf_grptop, -1));
  cfremark *rem = cfnewrem("text", 7), *norem = cfnewrem(nullptr, 7);
  cfparam *par = cfnewpar("key", "val", 3), *nopar = cfnewpar("k", nullptr, 3);
  cfevalpar(par, [](const char *, void *) { return 17; });
  cfparam *refpar = cfnewrefpar(par);
  const kit::tree ref(cfnewrefgrp(cfaddpar(grp.get(), par)));
  constexpr size_t g = sizeof(cfgroup), r = sizeof(cfremark), p = sizeof(cfparam);
  EXPECT_EQ(memory.sizes, (sizes{g + 3 + 4 + 2, g + 2, r + 4 + 1, r + 1, p + 16 + 3 + 3 + 2,
                                 p + 16 + 1 + 2, 17, p, g}));
  const auto at = [](const auto *record, const char *text) {
    return text - reinterpret_cast<const char *>(record + 1);
  };
  EXPECT_TRUE(at(grp.get(), grp->cat) == 0 && at(grp.get(), grp->name) == 4);
  EXPECT_TRUE(at(par, par->key) == 16 && at(par, par->val) == 20 && at(rem, rem->txt) == 0);
  // A reference shares the texts and the value of its target, but not its contents.
  EXPECT_TRUE(refpar->key == par->key && refpar->val == par->val && refpar->vval == par->vval);
  void *const value = const_cast<void *>(par->vval);
  cfaddpar(cfaddpar(cfaddrem(cfaddrem(none.get(), rem), norem), nopar), refpar);
  EXPECT_EQ(kit::dump(ref.get()), "*cat.name@-1");
  EXPECT_EQ(kit::dump(none.get()), "::@-1(#text@7, #@7, k=@3, *key=val@3)");
  memory.countdown = 2; // what a release throws is passed on when all is released
  EXPECT_THROW(cfclrgrp(none.get()), kit::thrown);
  cfdelpar(par);
  EXPECT_EQ(memory.released, (std::vector<void *>{refpar, nopar, norem, rem, value, par}));
}

TEST(Node, NullAndAnchorsAreNoElements) {
  const kit::tree top(cfnewgrp("", "", cf_grptop, -1));
  cfdelnd(&top->elem), cfdelnd(nullptr), cfdelgrp(nullptr), cfdelrem(nullptr), cfdelpar(nullptr);
  cfcatdelnd(nullptr), cfcatdelgrp(nullptr), cfcatdelpar(nullptr), cfcatdelnd(&top->elem);
  EXPECT_TRUE(!cfdupnd(nullptr) && !cfdupnd(&top->elem) && !cfdupgrp(nullptr));
  EXPECT_TRUE(!cfduprem(nullptr) && !cfduppar(nullptr) && !cfclrgrp(nullptr));
  EXPECT_TRUE(!cfcatclrgrp(nullptr) && cfcatclrgrp(top.get()) == top.get());
  for (cfnode *nd : {static_cast<cfnode *>(nullptr), &top->elem})
    EXPECT_TRUE(!cfgrp(nd) && !cfrem(nd) && !cfpar(nd));
  EXPECT_TRUE(cfgrp(&top->link) && !cfrem(&top->link) && !cfpar(&top->link));
}

TEST(Node, ListsAreLinkedByHand) {
  const kit::tree top(cfnewgrp("", "", cf_grptop, -1));
  cfparam *par = cfnewpar("b", "", 1), record = *par;
  EXPECT_EQ(cfchainpar(&top->elem, par), &top->elem);
  EXPECT_EQ(cfchainrem(&par->link, cfnewrem("r", 1)), &par->link);
  EXPECT_EQ(cfchaingrp(&par->link, cfnewgrp("", "g", cf_grpinst, 1)), &par->link);
  EXPECT_EQ(cfinitnd(&record.link, cf_param, top.get())->group, top.get());
  record.key = record.val = "x";
  cfxcgnd(&par->link, &record.link);
  cfdelpar(par);
  EXPECT_EQ(kit::dump(top.get(), false), "::(#r, .g, x=x)");
  cfunlknd(&record.link);
}

TEST(Node, IterationAndSearch) {
  const kit::tree list(cfnewgrp("", "", cf_grptop, -1));
  EXPECT_TRUE(cfempty(list.get()) == 1 && cfend(cfiterator(list.get())) == 1);
  const auto add = [&](const char *cat, const char *name, cfgroup_t type) {
    cfgroup *grp = cfnewgrp(cat, name, type, 1);
    cfaddgrp(list.get(), cfaddrem(cfaddpar(grp, cfnewpar("inner", "x", 1)), cfnewrem("", 1)));
  };
  add("", "", cf_grprem);
  add("", "speed", cf_grppar);
  cfaddpar(list.get(), cfnewpar("speed", "10", 1));
  add("link", "main", cf_grpinst);
  add("link", "aux", cf_grpgrp);
  cfaddpar(cfaddpar(list.get(), cfnewpar("mode", "fast", 1)), cfnewpar("last", "", 1));
  add("", "solo", cf_grpcat);
  add("", "vals", cf_grpval);
  add("t", "t", cf_grptop);
  std::vector<cfnode *> nodes{&list->elem};
  cfnode *it = cfiterator(list.get());
  for (; !cfend(it); cfnext(&it))
    nodes.push_back(it);
  EXPECT_TRUE(cftype(nodes[1]) == cf_group && cftype(nodes[3]) == cf_param && !cftype(it));
  EXPECT_TRUE(cfnext(&it) == nodes[0] && it == nodes[0] && cfempty(list.get()) == 0);
  EXPECT_EQ(cfseekrem(cfgrp(nodes[1])->elem.next), cfgrp(nodes[1])->elem.prev);
  // A search for p, g or r (parameter, group, remark), two texts ("-": NULL, ".": empty), the place
  // to start from, and the place of the result (0: the anchor).
  for (const string row :
       {"p speed - 1 2", "p speed - 3 3",  "p speed - 4 0", "p SPEED 10 1 3", "p - - 1 2",
        "p - FAST 1 6",  "g - - 1 4",      "g link - 1 4",  "g link - 5 5",   "g link - 6 0",
        "g . aux 1 5",   "r - - 1 1",      "r - - 2 0",     "p . - 1 2",      "p - . 1 7",
        "p last x 1 0",  "p Vals - 1 9",   "p vals . 1 0",  "p - - 8 9",      "p main - 1 0",
        "p inner - 1 0", "p - - 10 0",     "p - - 0 0",     "p speed . 1 0",  "g . - 1 4",
        "g - . 1 4",     "g LinK Aux 1 5", "g - solo 1 8",  "g x solo 1 0",   "g t t 1 0",
        "g - speed 1 0", "g - - 9 0",      "g - - 0 0",     "r - - 0 0"}) {
    std::istringstream in(row);
    string what, texts[2];
    size_t from = 0, to = 0;
    in >> what >> texts[0] >> texts[1] >> from >> to;
    const auto text = [&](size_t i) {
      return texts[i] == "-" ? nullptr : texts[i] == "." ? "" : texts[i].c_str();
    };
    EXPECT_EQ(what == "p"   ? cfseekpar(nodes[from], text(0), text(1))
              : what == "g" ? cfseekgrp(nodes[from], text(0), text(1))
                            : cfseekrem(nodes[from]),
              nodes[to])
        << row;
  }
}

TEST(Node, TextsAreEqualAsTheLocaleSays) {
  for (int a = 1; a < 256; ++a) {
    const char name[] = {'x', static_cast<char>(a), '\0'};
    const kit::tree list(
        cfaddgrp(cfnewgrp("", "", cf_grptop, -1), cfnewgrp("", name, cf_grpinst, 1)));
    for (int b = 1; b < 256; ++b) {
      const char sought[] = {'X', static_cast<char>(b), '\0'};
      EXPECT_EQ(!cfend(cfseekgrp(list->elem.next, nullptr, sought)), !strcasecmp(name, sought));
    }
  }
}

/// The values that an evaluator makes of texts; "-" if it refuses. Calls it in each possible way.
template <class Value> string reads(cfeval_t eval, const string &texts) {
  std::ostringstream all;
  std::istringstream rows(texts);
  for (string text; std::getline(rows, text, '|');) {
    Value value{77};
    const int size = eval(text.c_str(), nullptr);
    EXPECT_EQ(eval(nullptr, &value), int{sizeof value});
    EXPECT_EQ(value, Value{77}) << "nothing is stored without a text";
    EXPECT_EQ(eval(text.c_str(), &value), size);
    EXPECT_EQ(size, value != Value{77} ? int{sizeof value} : -1) << text;
    size < 0 ? all << "- " : all << std::hexfloat << +value << ' ';
  }
  return all.str();
}

TEST(Value, Evaluators) {
  EXPECT_EQ(reads<char>(cfevbool, "true|TrUe|False|yes|1|| true|true |tr"), "1 1 0 - - - - - - ");
  EXPECT_EQ(reads<long long>(cfevintx, "0x10|010|-5| 12|\t+0X1f|9223372036854775806|"
                                       "9223372036854775807|9223372036854775808|"
                                       " \t-9223372036854775809|-0xffffffffffffffff|"
                                       "0777777777777777777777777|12 |12a|x|| |0x|08|1.5"),
            "16 8 -5 12 31 9223372036854775806 9223372036854775807 9223372036854775807 "
            "-9223372036854775808 -9223372036854775808 9223372036854775807 - - - - - - - - ");
  const string low = std::to_string(LONG_MIN), high = std::to_string(LONG_MAX);
  EXPECT_EQ(reads<long>(cfevint, low + "0|" + high + '|' + high + "0|-0x1F|09|1 |"),
            low + ' ' + high + ' ' + high + " -31 - - ");
  char storage = 's';
  EXPECT_EQ(cfevstr(nullptr, nullptr) + cfevstr("x", nullptr) + cfevstr("x", &storage), 0);
  EXPECT_EQ(storage, 's');
}

TEST(Value, FloatsFollowTheLocalesDecimalPoint) {
  string texts = "1.5| -.5e+1|+0x1.8p-1074|9007199254740993.0000000000000000000000001|0x1.p+-1";
  const char point = *localeconv()->decimal_point;
  std::ranges::replace(texts, '.', point);
  EXPECT_EQ(reads<double>(cfevflt, texts + "|-0|-InFiNiTy|nan(0x12_)|1e309|1e-999|5e-324|1e3"),
            "0x1.8p+0 -0x1.4p+2 0x0.0000000000002p-1022 0x1.0000000000001p+53 - -0x0p+0 -inf nan "
            "inf 0x0p+0 0x0.0000000000001p-1022 0x1.f4p+9 ");
  EXPECT_EQ(reads<double>(cfevflt, point == '.' ? "1,5||1 |1e3x|e3" : "1.5||1 |1e3x|e3"),
            "- - - - - ");
}

string asked;
int size, size_of_text;

/// An evaluator that notes what it is asked for: the size, the size for a text, or the value.
int evaluate(const char *val, void *vval) {
  asked += !val ? 's' : !vval ? 't' : 'c';
  EXPECT_EQ(reinterpret_cast<size_t>(vval) % (sizeof(void *) < 8 ? 8 : 16), 0U);
  return !val ? size : !vval ? size_of_text : *val == 'F' ? std::memset(vval, 'n', 16), -1 : 0;
}

template <int Size> int sized(const char *val, void *vval) {
  return val && vval ? std::memset(vval, 'f', Size), 0 : Size;
}

TEST(Value, KeepsWhatItCannotReplace) {
  const struct {
    int size, size_of_text;
    const char *asked;
  } rows[] = {{-1, -1, "st"}, {-7, 0, "st"}, {-1, 17, "stc"}, {0, -1, "s"}, {16, 0, "sc"}};
  for (const auto &row : rows)
    for (const cfeval_t former : {sized<16>, sized<17>})
      for (const char *text : {"good", "Fault"}) {
        const kit::meter memory;
        const kit::tree top(cfaddpar(cfnewgrp("", "", cf_grptop, 1), cfnewpar("key", text, 1)));
        cfparam *par = cfpar(top->elem.next);
        cfevalpar(par, former);
        size = row.size, size_of_text = row.size_of_text;
        const int n = size < 0 ? size_of_text : size;
        const bool good = n == 0 || (n > 0 && *text == 'g');
        asked.clear();
        EXPECT_EQ(cfevalpar(par, evaluate), good);
        EXPECT_TRUE(!good || cfevalpar(par, evaluate)) << "it is there already: nothing is asked";
        EXPECT_TRUE(par->eval == (good ? evaluate : former) && asked == row.asked);
        EXPECT_TRUE(good || string(cfvstr(par), 16) == string(16, 'f'));
        EXPECT_TRUE(n > 0 || !good || cfvstr(par) == cfstr(par));
      }
}

TEST(Value, ReachesReferences) {
  const kit::meter memory;
  cfparam *par = cfnewpar("key", "1", 1), *ref = cfnewrefpar(par), *upper = cfnewrefpar(ref);
  EXPECT_EQ(cfevalpar(upper, cfevint) ? cfint(ref) : 0, 1);
  EXPECT_EQ(cfevalpar(upper, cfevflt) ? cfflt(upper) : 0, 1);
  EXPECT_EQ(cfevalpar(upper, cfevintx) ? cfintx(par) : 0, 1);
  EXPECT_EQ(cfevalpar(par, sized<17>), 1);
  EXPECT_TRUE(upper->eval == cfevintx && ref->vval == upper->vval)
      << "a reference sees a new value only when it is evaluated";
  EXPECT_EQ(cfevalpar(upper, sized<17>), 1);
  EXPECT_TRUE(upper->vval == par->vval && ref->vval == par->vval);
  cfparam *late = cfnewrefpar(par), *other = cfnewpar("other", "1", 1);
  EXPECT_TRUE(late->eval == par->eval && late->vval == par->vval);
  cfevalpar(par, cfevint), cfevalpar(other, sized<17>), cfevalpar(par, sized<17>);
  EXPECT_TRUE(cfevalpar(late, sized<17>) && late->vval == par->vval) << "in another block";
  EXPECT_TRUE(cfunevalpar(ref) == ref && upper->vval && !ref->vval && !par->vval && !par->eval);
  cfdelpar(upper), cfdelpar(ref), cfdelpar(late), cfdelpar(par), cfdelpar(other);
  par = cfnewpar("key", "True", 1);
  EXPECT_EQ(cfevalpar(cfunevalpar(par), cfevbool) ? cfbool(par) : 0, 1);
  cfdelpar(par);
}

} // namespace
