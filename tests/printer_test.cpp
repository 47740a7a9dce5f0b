// Printer: bytes, blank lines, what reads back, streams that fail, slots that misbehave.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

using std::string;

namespace {

/// A record whose slots call the defaults, but for one call that fails or leaves by an exception.
struct meddler : cfprinter {
  cfprinter dfl{};
  size_t calls = 0, fails = 0; ///< the call that fails; 0: none
  size_t told = 0;             ///< bytes, by what the defaults gave
  bool leaves = false;

  template <auto... Slots> void meddle(int only, int slot = 0) {
    ((only < 0 || only == slot++ ? void(this->*Slots = through<Slots>) : void()), ...);
  }
  explicit meddler(int only = -1) : cfprinter{} { ///< in all slots or in one
    cfprintdfl(&dfl);
    meddle<&cfprinter::outempty, &cfprinter::outremark, &cfprinter::outgrpbeg,
           &cfprinter::outgrpend, &cfprinter::outparam>(only);
  }
  template <auto Slot, class Element> static int through(cfprinter *prn, Element *elem) {
    auto *it = static_cast<meddler *>(prn);
    if (++it->calls != it->fails) {
      const int size = (it->dfl.*Slot)(prn, elem);
      it->told += static_cast<size_t>(size);
      return size < 0 ? -1 : 0;
    }
    return it->leaves ? throw kit::out() : -7;
  }
};

/// The text of a tree as it is told, by recursion.
struct oracle {
  string text;
  int brk = 0;

  void put(const cfnode *before, size_t indent, const string &line) {
    if (brk >> before->type & 1)
      text += string(indent, ' ') + '\n';
    text += string(indent, ' ') + line + '\n';
  }
  bool print(cfgroup *grp, size_t indent) {
    const bool inst = grp->type == cf_grpinst;
    if (inst)
      put(&grp->link, indent, (*grp->cat ? grp->cat + string(" ") : "") + grp->name + " {");
    if (inst || grp->type == cf_grptop)
      brk = 0;
    bool any = false;
    for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it)) {
      const size_t inner = indent + (inst ? 2 : 0);
      bool rem = cfrem(it) != nullptr;
      if (cfgroup *sub = cfgrp(it)) {
        any = print(sub, inner) || any;
        rem = sub->type == cf_grprem;
      } else {
        put(it, inner,
            rem ? string("# ") + cfrem(it)->txt : cfpar(it)->key + string(" = ") + cfpar(it)->val);
        any = true;
      }
      constexpr int behind[] = {6, 6, 4, 6, 6, 4, 0}; // by the kind of the holder
      if (any)
        brk = rem && (inst || grp->type == cf_grptop) ? 14 : behind[grp->type];
    }
    if (inst)
      text += string(indent, ' ') + "}\n";
    return any || inst;
  }
};

/// Prints `top`, by the defaults alone and by slots, as the oracle does.
string print(cfgroup *top) {
  size_t indent = 0;
  for (const cfgroup *up = top->link.group; up; up = up->link.group)
    indent += up->type == cf_grpinst ? 2 : 0;
  oracle expected;
  expected.print(top, indent);
  meddler slots;
  EXPECT_EQ(kit::print(top), expected.text);
  EXPECT_EQ(kit::print(top, &slots), expected.text);
  EXPECT_EQ(slots.told, expected.text.size());
  return expected.text;
}

/// Reads, prints and reads again: the same tree, the same text.
void expect_round_trip(const string &file) {
  const kit::meter meter;
  const kit::reading first = kit::read(file);
  const kit::tree top(first.top);
  ASSERT_EQ(first.said, "") << file;
  const string text = kit::print(first.top);
  const kit::tree again(kit::read(text).top);
  EXPECT_EQ(kit::dump(again.get(), false), kit::dump(top.get(), false)) << file;
  EXPECT_EQ(kit::print(again.get()), text) << file;
}

} // namespace

TEST(Printer, WorkedExample) {
  const kit::tree top(kit::read(kit::data("worked.conf")).top), catalog(cfcatalog(top.get()));
  EXPECT_EQ(print(top.get()), kit::data("worked.out"));
  for (int slot = 0; slot < 5; ++slot) {
    meddler prn(slot);
    EXPECT_EQ(kit::print(top.get(), &prn), kit::data("worked.out"));
    EXPECT_GT(prn.calls, 0U) << "slot " << slot << " was not called";
    EXPECT_TRUE(prn.valid == 1 && prn.top == top.get() && prn.fname == string("out") && prn.fd);
    EXPECT_EQ(prn.brk, 1 << cf_group | 1 << cf_remark | 1 << cf_param) << "behind free remarks";
    EXPECT_TRUE(kit::print(cfcatgetgrp(top.get(), "link", "main"), &prn).starts_with("link"))
        << "the record serves again";
  }
  EXPECT_EQ(print(catalog.get()),
            "link main {\n  speed = 100  # per second\n  tries = 3\n  \n  opts {\n"
            "    mode = fast = safe\n  }\n  depth = \n}\nname = a b  c\n\ntail {\n}\n");
}

TEST(Printer, Layout) {
  const struct {
    const char *file, *text;
  } table[] = {
      {"", ""},
      {"#\n#  x", "# \n#  x\n"},
      {"k=\n\n\nl=1\n\nm=2", "k = \nl = 1\nm = 2\n"},
      {"a{\n}\nb c{\n\n\n}\n\n\nd{\n\nk=1\n}", "a {\n}\n\nb c {\n}\n\nd {\n  k = 1\n}\n"},
      {"a{\n# r\n\nb{\n# s\n\n# t\nk=1\n}\n}",
       "a {\n  # r\n  \n  b {\n    # s\n    \n    # t\n    k = 1\n  }\n}\n"},
      {"# r\n# s\nk=1\n}", "# r\n\n# s\n\nk = 1\n"}, // after a failed read remarks are not bound
  };
  for (const auto &row : table) {
    const kit::tree top(kit::read(row.file).top);
    EXPECT_EQ(print(top.get()), row.text);
  }
  const kit::tree hand(cfnewgrp("", "", cf_grptop, -1));
  cfaddgrp(cfaddgrp(hand.get(), cfnewgrp("c", "", cf_grpinst, 1)), cfnewgrp("", "", cf_grpinst, 2));
  EXPECT_EQ(print(hand.get()), "c  {\n}\n\n {\n}\n") << "texts are written as they are";
  cfaddpar(hand.get(), cfnewpar("k", string(10000, 'v').c_str(), 1));
  EXPECT_TRUE(print(hand.get()).ends_with(string(10000, 'v') + '\n'));
}

TEST(Printer, AnyTreeFromAnyGroup) {
  std::mt19937 rng(1);
  for (int round = 0; round < 5000; ++round) {
    const kit::tree top(cfnewgrp("", "", cf_grptop, -1));
    cfgroup *at = top.get(), *from = at;
    for (size_t size = rng() % 24; size > 0; --size) {
      const size_t what = rng() % 6;
      if (what == 0)
        at = at->link.group ? at->link.group : at;
      else if (what < 4)
        cflinknd(at, what == 1 ? &cfnewpar("k", "v", 1)->link : &cfnewrem("r", 1)->link);
      else
        at = cfgrp(
            cfaddgrp(at, cfnewgrp(rng() % 2 ? "c" : "", "n", static_cast<cfgroup_t>(rng() % 7), 1))
                ->elem.prev);
      from = rng() % 4 ? from : at;
    }
    print(top.get());
    print(from);
  }
}

TEST(Printer, FilesReadBack) {
  string crlf, nested, close;
  for (const char c : kit::data("router.conf"))
    crlf += c == '\n' ? string("\r\n") : string(1, c);
  for (int depth = 0; depth < 200; ++depth) {
    nested +=
        "# level\nlevel n" + std::to_string(depth) + "{\ndepth=" + std::to_string(depth) + "\n";
    close += "}\n# up\n";
  }
  for (const string &file : {kit::data("server.conf"), kit::data("router.conf"), crlf,
                             kit::data("words.conf"), nested + close, string()})
    expect_round_trip(file);
  std::mt19937 rng(1);
  for (auto rounds = kit::rounds(100000); rounds > 0 && !HasFailure(); --rounds)
    expect_round_trip(kit::random_file(rng));
}

TEST(Printer, StreamsThatFail) {
  const kit::meter meter;
  const kit::tree top(kit::read(kit::data("worked.conf")).top);
  for (int n = 0; n < 2; ++n) // so that it takes several pieces
    cfaddpar(top.get(), cfnewpar("k", string(3000, 'v').c_str(), 1));
  const string text = print(top.get());
  for (size_t room = 0; room <= text.size(); ++room)
    for (const bool asks : {false, true}) {
      cfprinter plain{};
      meddler slots;
      string out;
      const kit::stream to = kit::sink(out, room);
      std::setvbuf(to.get(), nullptr, _IONBF, 0);
      EXPECT_EQ(cfprint(to.get(), asks ? &slots : &plain, top.get(), "a/b"), room == text.size());
      EXPECT_EQ(kit::said(), room == text.size() ? "" : "E a/b: write error\n");
      EXPECT_EQ(out, text.substr(0, room));
    }
  const kit::stream full(std::fopen("/dev/full", "w"), std::fclose);
  cfaddpar(top.get(), cfnewpar("k", string(BUFSIZ, 'v').c_str(), 1));
  const kit::tree empty(cfnewgrp("", "", cf_grptop, -1));
  for (cfgroup *grp : {top.get(), empty.get()}) { // the second finds that the stream has failed
    cfprinter prn{};
    EXPECT_EQ(cfprint(full.get(), &prn, grp, "full"), 0);
    EXPECT_EQ(kit::said(), "E full: write error\n");
  }
}

TEST(Printer, SlotsThatMisbehave) {
  const kit::meter meter;
  const kit::tree top(kit::read(kit::data("worked.conf")).top);
  const string before = kit::dump(top.get()), text = kit::data("worked.out");
  meddler all;
  kit::print(top.get(), &all);
  for (size_t n = 1; n <= all.calls; ++n)
    for (const bool leaves : {false, true}) {
      meddler prn;
      prn.fails = n;
      prn.leaves = leaves;
      string out, end = "left";
      try {
        end = cfprint(kit::sink(out).get(), &prn, top.get(), "cfg") == 0 ? kit::said() : "good";
      } catch (const kit::out &) {
      }
      EXPECT_EQ(end, leaves ? "left" : "E cfg: write error\n");
      EXPECT_EQ(prn.calls, n) << "something was tried behind the failure";
      EXPECT_TRUE(text.starts_with(out) && out.size() < text.size());
      EXPECT_EQ(kit::dump(top.get()), before);
    }
  cfprinter silent{};
  silent.outparam = [](cfprinter *prn, cfparam *) { return prn->valid = 0, 1; };
  kit::print(top.get(), &silent);
  EXPECT_TRUE(silent.valid == 0 && kit::said().empty());
}

TEST(Printer, DepthNeedsNoStack) {
  string file, text;
  for (size_t i = 0; i < 5000; ++i) {
    file += "a{\n";
    text += string(2 * i, ' ') + "a {\n";
  }
  for (size_t i = 5000; i > 0; --i) {
    file += "}\n";
    text += string(2 * i - 2, ' ') + "}\n";
  }
  kit::on_small_stack([&] {
    const kit::tree top(kit::read(file).top);
    meddler slots;
    EXPECT_TRUE(kit::print(top.get()) == text && kit::print(top.get(), &slots) == text);
  });
}
