// Scopes: scope strings, the check against an application's symbols, the comparison of trees.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

using std::string;

/// The scope strings and sizes of elements. Checks genscope with a buffer and without.
string scopes(const std::vector<cfnode *> &nodes) {
  cfparser parser{};
  string all;
  for (cfnode *nd : nodes) {
    string text(64, '~');
    const unsigned int size = cfparsedfl(&parser)->genscope(nullptr, nd);
    EXPECT_EQ(parser.genscope(text.data(), nd), size);
    EXPECT_EQ(text[size], '~') << "nothing is written after the text";
    all += text.substr(0, text.find_first_of("~\0", 0, 2)) + ' ' + std::to_string(size) + "; ";
  }
  return all;
}

TEST(Scope, NamesEveryElement) {
  const kit::tree top(
      kit::read("verbose = true\nnet {\nport = 80\ntls {\ncert = a\n}\nHOST alpha {\naddr = b\n"
                "opts {\nx = 1\ntag t1 {\ny = 2\n}\n}\n}\n}\n"
                "host beta {\n# note\naddr = c\n}\n# bound\nwrapped {\nz = 3\n}\n")
          .top);
  EXPECT_EQ(scopes(kit::nodes(&top->link)),
            ":: 3; ::verbose 10; ::net. 7; ::net.port 11; ::net.tls. 11; ::net.tls.cert 15; "
            "::net.alpha.HOST:: 19; HOST::addr 11; HOST::opts. 12; HOST::opts.x 13; "
            "HOST::opts.t1.tag:: 20; tag::y 7; ::beta.host:: 14; ::beta.host:: 14; "
            "::beta.host:: 14; ::beta.host:: 14; host::addr 11; "
            ":: 3; :: 3; :: 3; ::wrapped. 11; ::wrapped.z 12; ");
  const kit::tree small(kit::read("h a {\nx =\n}").top), catalog(cfcatalog(small.get()));
  EXPECT_EQ(scopes(kit::nodes(&catalog->link)), ":: 3; :: 3; :: 3; ::a.h:: 8; ::a.h:: 8; h::x 5; ");
  const std::vector<cfnode *> alone{&cfnewpar("k", "", 1)->link, &cfnewrem("text", 1)->link,
                                    &cfnewgrp("c", "", cf_grpinst, 1)->link,
                                    &cfnewgrp("c", "n", cf_grpgrp, 1)->link};
  EXPECT_EQ(scopes(alone) + scopes({&top->elem}), "::k 4; :: 3; ::.c:: 7; :: 3;  0; ");
  for (cfnode *nd : alone)
    cfdelnd(nd);
}

// A table of symbols: a scope, "=", and b or i for an evaluator or m for multi.
const char *const symbols = " ::verbose=b ::tag=m ::net.= ::net.port=i ::alpha.host::= host::addr= "
                            "host::alias=m n=m ::k= ::= ::.= ";
string asked;

/// Finds a symbol. All calls return the same record.
cfscope *scopedef(const char *scope) {
  static cfscope record;
  asked += scope + string(" ");
  const char *hit = std::strstr(symbols, (' ' + string(scope) + '=').c_str());
  const char kind = hit ? std::strchr(hit, '=')[1] : '\0';
  record = {"", kind == 'b' ? cfevbool : kind == 'i' ? cfevint : nullptr, kind == 'm'};
  return hit ? &record : nullptr;
}

/// The messages of a check.
string checks(cfgroup *top, char werr = 0) {
  cfparser parser{nullptr, scopedef, werr, 7, nullptr, nullptr};
  asked.clear();
  const int result = cfparse(&parser, top, "f");
  const string said = kit::said();
  EXPECT_EQ(result, said.find("E ") == string::npos);
  EXPECT_TRUE(parser.valid == result && parser.top == top && parser.fname == string("f"));
  return said;
}

TEST(Check, SaysWhatIsWrong) {
  const kit::tree top(
      kit::read("verbose = maybe\ntag = a\ntag = b\nnet {\nport = 80\nport = 81\nspeed = 9\n}\n"
                "net {\n}\nhost alpha {\naddr = x\nalias = y\nalias = z\n}\nhost beta {\n"
                "addr = u\n}\n")
          .top);
  for (const char werr : {'\0', '\1'}) {
    const string undefined = ": undefined symbol\n", sink = werr ? "E" : "W";
    EXPECT_EQ(checks(top.get(), werr), "E f:1: value expression error\nE f:6: duplicate symbol\n" +
                                           sink + " f:7" + undefined + "E f:9: duplicate symbol\n" +
                                           sink + " f:16" + undefined);
    EXPECT_EQ(asked, "::verbose ::tag ::tag ::net.port ::net.port ::net.speed ::net. ::net. "
                     "host::addr host::alias host::alias ::alpha.host:: host::addr ::beta.host:: ");
  }
  cfgroup *net = cfcatgetgrp(top.get(), "", "net");
  EXPECT_EQ(cfint(cfcatgetpar(net, "port", "80")) + cfint(cfcatgetpar(net, "port", "81")), 161);
  cfparser dfl{};
  EXPECT_EQ(cfparse(&dfl, net, "f"), 1);
  EXPECT_EQ(kit::said(), "W f:5: undefined symbol\nW f:6: undefined symbol\n"
                         "W f:7: undefined symbol\nW f:4: undefined symbol\n");
}

TEST(Check, OfElementsThatNoFileGives) {
  const kit::tree top(cfnewgrp("", "", cf_grptop, -1));
  cfaddgrp(top.get(), cfaddpar(cfnewgrp("", "i", cf_grpinst, 3), cfnewpar("", "1", 4)));
  cfaddgrp(top.get(), cfaddgrp(cfnewgrp("", "", cf_grpgrp, 5), cfnewgrp("", "", cf_grpinst, 5)));
  cfgroup *inner = cfaddpar(cfnewgrp("", "", cf_grptop, -1), cfnewpar("", "x", -1));
  cfaddgrp(cfaddgrp(top.get(), inner), cfnewgrp("", "", cf_grpinst, -1)); // begins anew, within
  cfgroup *block = cfaddpar(cfnewgrp("", "", cf_grppar, -1), cfnewpar("", "1", 7));
  cfaddgrp(top.get(), cfaddpar(block, cfnewpar("", "2", 8))); // begins with the first one
  for (const char *key : {"k", "", "", "k"})
    cfaddpar(top.get(), cfnewpar(key, "1", *key ? 0 : -1));
  for (const char *cat : {"", "c", "C", "c"})
    cfaddgrp(top.get(), cfnewgrp(cat, "", cf_grpinst, -1));
  EXPECT_EQ(checks(top.get()), "W f:4: undefined symbol\nW f:3: undefined symbol\n"
                               "E f/::.: duplicate symbol\nE f:8: duplicate symbol\n"
                               "E f/::: duplicate symbol\nE f/::: duplicate symbol\n"
                               "E f:0: duplicate symbol\n"
                               "E f/::.: duplicate symbol\nW f/::.c::: undefined symbol\n"
                               "W f/::.C::: undefined symbol\nW f/::.c::: undefined symbol\n");
  EXPECT_EQ(checks(inner), "");
}

TEST(Check, TakesWhatASloppyGenscopeWrites) {
  const kit::meter memory;
  const kit::tree top(kit::read("a=\nb=\nc=\nd=\n").top);
  const size_t before = memory.sizes.size();
  static size_t calls;
  cfparser parser{};
  // It alternates between a large and a small size, writes all of that or one byte, and never a
  // terminator.
  parser.genscope = [](char *text, cfnode *) {
    const size_t size = calls / 2 % 2 ? 2 : 5000, used = calls / 4 ? size : 1;
    ++calls;
    EXPECT_TRUE(!text || string(text, size) == string(size, '\0'));
    return text ? std::memset(text, 'n', used), 0U : static_cast<unsigned int>(size);
  };
  parser.scopedef = scopedef;
  asked.clear();
  EXPECT_EQ(cfparse(&parser, top.get(), "f"), 1);
  EXPECT_EQ(asked, "n n " + string(5000, 'n') + " nn ");
  EXPECT_EQ(memory.sizes.size(), before + 1) << "one buffer serves for all";
  kit::said();
}

size_t own_calls;

/// The default, by a function of the application.
unsigned int own_genscope(char *text, cfnode *nd) {
  cfdiff dfl{};
  ++own_calls;
  return cfdiffdfl(&dfl)->genscope(text, nd);
}

TEST(Comparison, SeesWhatDiffers) {
  // Two files, and which comparisons differ: trees, trees with remarks, catalogs, with remarks,
  // with targets, with both.
  const char *const rows[][3] = {
      {"h a {\nk = 1\n}\n", "H A {\nK = 1\n}\n", "000000"},
      {"k = 1\n", "k = 2\n", "111111"},
      {"k = 1\n", "l = 1\n", "111111"},
      {"k = 1\n", "k {\n}\n", "111111"},
      {"k = 1\nl = 1\n", "k = 1\n", "111111"},
      {"h a {\n}\n", "h b {\n}\n", "111111"},
      {"g a {\n}\n", "h a {\n}\n", "111111"},
      {"# r\nh a {\n}\n", "# R\nh a {\n}\n", "010000"},
      {"h a {\n# r\n}\n", "h a {\n# s\n}\n", "010001"},
      {"h a {\ng {\nk = 1\n}\n}\nl =\nm =\n", "h a {\ng {\nk = 1\n}\n}\nl =\nm =\n", "000000"}};
  cfdiff unfiltered{}, direct{}, slot{};
  direct.chkscope = slot.chkscope = [](const char *scope) {
    asked += scope;
    return 1;
  };
  slot.genscope = own_genscope;
  for (const auto &[a, b, expected] : rows) {
    const kit::tree one(kit::read(a).top), two(kit::read(b).top);
    const kit::tree catalog1(cfcatalog(one.get())), catalog2(cfcatalog(two.get()));
    string asked_before;
    for (cfdiff *diff : {&unfiltered, &direct, &slot}) {
      asked_before = std::exchange(asked, "");
      own_calls = 0;
      string result;
      for (unsigned int opt = 0; opt < 6; ++opt) {
        cfdiffdfl(diff)->opt = opt < 2 ? opt : opt - 2; // bits: remarks, targets
        result += std::to_string(opt < 2 ? cfdiffnd(diff, &one->link, &two->link)
                                         : cfdiffnd(diff, &catalog1->link, &catalog2->link));
      }
      EXPECT_EQ(result, expected) << a << b;
      EXPECT_EQ(own_calls > 0, diff == &slot);
    }
    EXPECT_EQ(asked, asked_before) << "the default path makes the same scope strings";
  }
}

TEST(Comparison, AsksWhatTakesPart) {
  cfdiff diff{nullptr, nullptr, 0, 7};
  EXPECT_EQ(cfdiffdfl(&diff)->chkscope("::any"), 1);
  diff.chkscope = [](const char *scope) {
    asked += scope + string(" ");
    return int{string(scope) != "host::port" && string(scope) != "::x."};
  };
  const std::pair<const char *, const char *> rows[] = {
      {"host alpha {\nport = 80\naddr = x\n}\n", "host alpha {\nport = 81\naddr = X\n}\n"},
      {"keep = 1\nx {\ny = 1\n}\n", "# r\nKEEP = 1\n"}};
  asked.clear();
  for (const auto &[a, b] : rows) {
    const kit::tree one(kit::read(a).top), two(kit::read(b).top);
    EXPECT_TRUE(cfdiffnd(&diff, &one->link, &two->link) == 0 && diff.diff == 0);
    EXPECT_TRUE(cfdiffnd(&diff, &one->link, nullptr) == 1 && diff.diff == 1);
    EXPECT_TRUE(cfdiffnd(&diff, nullptr, &one->link) == 1 &&
                cfdiffnd(&diff, nullptr, nullptr) == 0);
  }
  EXPECT_EQ(asked, "::alpha.host:: ::alpha.host:: host::port host::addr host::port host::addr "
                   "::keep ::KEEP ::x. ");
  const kit::tree inst(cfnewgrp("", "g", cf_grpinst, 1)); // a root within begins anew
  cfaddgrp(inst.get(), cfaddpar(cfnewgrp("", "", cf_grptop, 1), cfnewpar("k", "", 1)));
  cfaddpar(inst.get(), cfnewpar("l", "", 1));
  asked.clear();
  EXPECT_EQ(cfdiffnd(&diff, &inst->link, &inst->link), 0);
  EXPECT_EQ(asked, "::g. ::g. ::k ::k ::g.l ::g.l ");
}

} // namespace
