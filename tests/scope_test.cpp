// scope_test: scope strings, and the check of a tree against an application's symbols.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

using std::string;

/// The scope string of a node with what genscope gives for it, the same with a buffer and without.
string scopeof(cfnode *nd) {
  cfparser parser{};
  char text[64];
  std::memset(text, '~', sizeof text);
  const unsigned int size = cfparsedfl(&parser)->genscope(nullptr, nd);
  EXPECT_EQ(parser.genscope(text, nd), size);
  EXPECT_EQ(text[size], '~') << "nothing is written behind the text";
  return (text[0] == '~' ? "none" : text) + (' ' + std::to_string(size)) + "; ";
}

/// The same for a tree. References have the scope of their target, levels that of their instance.
string scopesof(cfgroup *grp) {
  string all = scopeof(&grp->link);
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it)) {
    cfgroup *sub = cfgrp(it);
    const bool level = sub && (sub->type == cf_grpcat || sub->type == cf_grpval);
    EXPECT_EQ(scopeof(it), scopeof(it->ref ? it->ref : level ? &grp->link : it));
    all += sub ? scopesof(sub) : scopeof(it);
  }
  return all;
}

TEST(Scope, NamesEveryElement) {
  const kit::tree top(
      kit::read("verbose = true\nnet {\nport = 80\ntls {\ncert = a\n}\nhost alpha {\naddr = b\n"
                "opts {\nx = 1\ntag t1 {\ny = 2\n}\n}\n}\n}\n"
                "host beta {\n# note\naddr = c\n}\n# bound\nwrapped {\nz = 3\n}\n")
          .top);
  EXPECT_EQ(scopesof(top.get()),
            ":: 3; ::verbose 10; ::net. 7; ::net.port 11; ::net.tls. 11; ::net.tls.cert 15; "
            "::net.alpha.host:: 19; host::addr 11; host::opts. 12; host::opts.x 13; "
            "host::opts.t1.tag:: 20; tag::y 7; ::beta.host:: 14; ::beta.host:: 14; "
            "::beta.host:: 14; ::beta.host:: 14; host::addr 11; "
            ":: 3; :: 3; :: 3; ::wrapped. 11; ::wrapped.z 12; ");
  const kit::tree lower(cfcatalog(top.get())), upper(cfcatalog(lower.get()));
  EXPECT_EQ(scopesof(lower.get()), scopesof(upper.get()));
  const std::pair<cfnode *, const char *> alone[] = {
      {&cfnewpar("k", "", 1)->link, "::k 4; "},
      {&cfnewrem("text", 1)->link, ":: 3; "},
      {&cfnewgrp("c", "n", cf_grpinst, 1)->link, "::n.c:: 8; "},
      {&cfnewgrp("c", "", cf_grpinst, 1)->link, "::.c:: 7; "},
      {&cfnewgrp("", "", cf_grpinst, 1)->link, "::. 4; "},
      {&cfnewgrp("HOST", "alpha", cf_grpinst, 1)->link, "::alpha.HOST:: 15; "},
      {&cfnewgrp("c", "n", cf_grpgrp, 1)->link, ":: 3; "}};
  for (const auto &[nd, scope] : alone) {
    EXPECT_EQ(scopeof(nd), scope);
    cfdelnd(nd);
  }
  EXPECT_EQ(scopeof(&top->elem), "none 0; ");
}

// A table of symbols: a scope, "=", and b or i for an evaluator, m for multi.
const char *const symbols = " ::verbose=b ::tag=m ::net.= ::net.port=i ::alpha.host::= host::addr= "
                            "host::alias=m n=m ";
string asked;

/// Looks a scope up, and fills one record anew on each call.
cfscope *fromtable(const char *scope) {
  static cfscope record;
  asked += scope + string(" ");
  const char *hit = std::strstr(symbols, (' ' + string(scope) + '=').c_str());
  const char told = hit ? std::strchr(hit, '=')[1] : '\0';
  record = {"", told == 'b' ? cfevbool : told == 'i' ? cfevint : nullptr, told == 'm'};
  return hit ? &record : nullptr;
}

/// Defines everything: "int" in the scope is evaluated, "multi" may be repeated.
cfscope *byname(const char *scope) {
  static cfscope record;
  record = {"", std::strstr(scope, "int") ? cfevint : nullptr,
            std::strstr(scope, "multi") != nullptr};
  return &record;
}

string checks(cfgroup *top, cfscope *(*scopedef)(const char *), char werr) {
  cfparser parser{nullptr, scopedef, werr, 7, nullptr, nullptr};
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
    asked.clear();
    const string sink = werr ? "E" : "W";
    EXPECT_EQ(checks(top.get(), fromtable, werr),
              "E f:1: value expression error\nE f:6: duplicate symbol\n" + sink +
                  " f:7: undefined symbol\nE f:9: duplicate symbol\n" + sink +
                  " f:16: undefined symbol\n");
    EXPECT_EQ(asked, "::verbose ::tag ::tag ::net.port ::net.port ::net.speed ::net. ::net. "
                     "host::addr host::alias host::alias ::alpha.host:: host::addr ::beta.host:: ");
    string all;
    for (const int row : {1, 2, 3, 5, 6, 7, 4, 9, 12, 13, 14, 11, 17, 16})
      all += sink + " f:" + std::to_string(row) + ": undefined symbol\n";
    EXPECT_EQ(checks(top.get(), nullptr, werr), all);
  }
  cfgroup *net = cfcatgetgrp(top.get(), "", "net");
  EXPECT_EQ(cfint(cfcatgetpar(net, "port", "80")) + cfint(cfcatgetpar(net, "port", "81")), 161);
  EXPECT_EQ(cfcatgetpar(top.get(), "verbose", nullptr)->vval, nullptr);
  EXPECT_EQ(checks(net, fromtable, 0), "E f:6: duplicate symbol\nW f:7: undefined symbol\n");
}

/// What a check against byname() says, each report as its line or scope and its first letter.
string brief(cfgroup *top) {
  string said = checks(top, byname, 1);
  for (size_t at = 0, end; at < said.size(); at += 2) {
    said.erase(at, said.find_first_of(":/", at) + 1 - at); // "E f:"
    at = said.find(": ", at);
    end = said.find('\n', at);
    said.replace(at, end + 1 - at, {said[at + 2], ' '});
  }
  return said;
}

TEST(Check, FindsWhatIsRepeated) {
  const struct {
    const char *file, *tree, *catalog;
  } rows[] = {{"", "", ""},
              {"# a\n\n# b\n", "", ""},
              {"Key = 1\n# r\nKEY = 2\nkey = 3\n", "3d 4d ", "3d 4d "},
              {"# r\ng {\n}\n# s\ng {\n}\n", "5d ", "5d "},
              {"h a {\n}\nH A {\n}\ng a {\n}\nh b {\n}\n", "3d ", "3d "},
              {"h a {\n}\na {\n}\n", "3d ", ""}, // in a tree, no category is any
              {"a {\n}\nh a {\n}\n", "", ""},
              {"a {\nk = 1\n}\nb {\nk = 1\n}\nk {\n}\nk = 1\n", "", ""},
              {"multi_int = x\nmulti_int = 1\nmulti_int = y\n", "1v 3v ", "1v 3v "},
              {"int = 1\nint = x\nh int {\n}\n", "2v 2d ", "2v 2d "}};
  for (const auto &[file, tree, catalog] : rows) {
    const kit::tree top(kit::read(file).top), root(cfcatalog(top.get()));
    EXPECT_EQ(brief(top.get()), tree) << file;
    EXPECT_EQ(brief(root.get()), catalog) << file;
  }
}

TEST(Check, TellsScopesWhereThereAreNoLines) {
  const kit::tree top(cfnewgrp("", "", cf_grptop, -1));
  cfgroup *named = cfnewgrp("c", "n", cf_grpinst, -1);
  cfaddpar(cfaddgrp(named, cfnewgrp("c", "", cf_grpinst, -1)), cfnewpar("", "", -1));
  cfaddpar(cfaddrem(cfaddgrp(top.get(), named), cfnewrem("", -1)), cfnewpar("", "", -1));
  for (const char *cat : {"", "c", "c", "C", ""}) // texts that are empty are like one another alone
    cfaddgrp(top.get(), cfnewgrp(cat, "", cf_grpinst, -1));
  for (int n = 0; n < 2; ++n) // line 0 is a line
    cfchainpar(cfiterator(top.get()), cfnewpar("int", "x", 0));
  EXPECT_EQ(brief(top.get()), "0v 0v 0d ::.c::d ::.C::d ::.d ");
  EXPECT_TRUE(checks(top.get(), fromtable, 0).starts_with("W f:0: undefined symbol\n"));
  cfgroup *inst = cfgrp(cfunlknd(top->elem.prev->prev));
  cfaddgrp(inst, cfnewgrp("", "", cf_grprem, -1)); // empty
  for (const char *key : {"int", "", "int", "k", ""})
    cfaddpar(inst, cfnewpar(key, "x", -1));
  EXPECT_EQ(brief(inst), "C::intv C::intv C::intd C::d ") << "in no group, it repeats nothing";
  cfaddgrp(top.get(), inst);
  EXPECT_EQ(checks(inst, byname, 0),
            "E f/C::int: value expression error\nE f/C::int: value expression "
            "error\nE f/C::int: duplicate symbol\nE f/C::: duplicate symbol\n"
            "E f/::.C::: duplicate symbol\n");
  EXPECT_EQ(checks(inst, fromtable, 0).substr(0, 29), "W f/C::int: undefined symbol\n");
}

TEST(Check, BeginsAnewInATopGroup) {
  const kit::tree top(cfnewgrp("", "", cf_grptop, -1));
  cfgroup *g = cfaddpar(cfnewgrp("", "g", cf_grpinst, -1), cfnewpar("int", "x", -1));
  cfgroup *inner = cfaddpar(cfnewgrp("", "", cf_grptop, -1), cfnewpar("int", "x", -1));
  cfaddgrp(top.get(), cfaddpar(cfaddgrp(g, inner), cfnewpar("int", "x", -1)));
  EXPECT_EQ(brief(top.get()), "::g.intv ::intv ::g.intv ::g.intd ");
  EXPECT_EQ(scopeof(inner->elem.next), "::int 6; ");
}

TEST(Check, BearsASloppyGenscope) {
  const kit::meter memory;
  const kit::tree top(kit::read("a=\nb=\nc=\nd=\n").top);
  static size_t calls;
  cfparser parser{};
  // Much and little by turns is announced, and all of it written or next to nothing, never an end.
  parser.genscope = [](char *text, cfnode *) {
    const size_t size = calls / 2 % 2 ? 2 : 5000, used = calls / 4 ? size : 1;
    ++calls;
    EXPECT_TRUE(!text || string(text, size) == string(size, '\0'));
    return text ? std::memset(text, 'n', used), 0U : static_cast<unsigned int>(size);
  };
  parser.scopedef = fromtable;
  asked.clear();
  cfparse(&parser, top.get(), "f");
  kit::said();
  EXPECT_EQ(asked, "n n " + string(5000, 'n') + " nn ");
}

TEST(Check, ReportsScopesOfMegabytes) {
  const kit::tree top(cfnewgrp("", "", cf_grptop, -1));
  cfgroup *at = top.get();
  string scope = "::";
  for (const size_t size : {2'000'000U, 1U, 3'000'000U}) {
    at = cfgrp(cfaddgrp(at, cfnewgrp("", string(size, 'n').c_str(), cf_grpinst, -1))->elem.prev);
    scope += string(size, 'n') + '.';
  }
  cfaddpar(at, cfnewpar("int", "x", -1));
  for (const bool slot : {false, true})
    kit::on_small_stack([&] {
      cfparser plain{};
      static const auto genscope = cfparsedfl(&plain)->genscope;
      cfparser parser{nullptr, byname, 0, 0, nullptr, nullptr};
      if (slot)
        parser.genscope = [](char *text, cfnode *nd) { return genscope(text, nd); };
      EXPECT_EQ(cfparse(&parser, top.get(), "f"), 0);
      EXPECT_TRUE(kit::said() == "E f/" + scope + "int: value expression error\n");
    });
}

} // namespace
