// demo: the main job of the library, step by step, on demo.conf.
// SPDX-License-Identifier: MIT
#include "full_disk.h"
#include "listing.h"
#include "memory.h"
#include "save.h"
#include "scratch.h"
#include "symbols.h"
#include "values.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

// Messages go where the demo's own words go.

void emsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::printf("  error: ");
  std::vprintf(fmt, args);
  std::printf("\n");
  va_end(args);
}

namespace {

constexpr const char *fname = "demo.conf";

void step(const char *headline) {
  static int number = 0;
  std::printf("\n=== %d. %s\n\n", ++number, headline);
}

/// A demo that went another way than it tells must not go on.
void must(bool held, const char *what) {
  if (held)
    return;
  std::printf("  failed: %s\n", what);
  std::exit(1);
}

std::string contents(const char *name) {
  std::ifstream file(name);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Faulty copies

struct change {
  std::string_view line, instead;
};

/// The text with some of its lines changed; each change is shown.
std::string changed(std::string text, std::initializer_list<change> changes) {
  for (const change &one : changes) {
    const size_t at = text.find(std::string("\n").append(one.line).append("\n"));
    must(at != std::string::npos, "the line to be changed is not there");
    text.replace(at + 1, one.line.size(), one.instead);
    const auto number =
        std::count(text.begin(), text.begin() + static_cast<long>(at) + 1, '\n') + 1;
    std::printf("  line %3ld  %.*s\n", number, static_cast<int>(one.instead.size()),
                one.instead.data());
  }
  return text;
}

// The check

constexpr unsigned once = 0, often = 1;
cfscope symbols[] = {
    {"::mail", cfevstr, once},
    {"::keep", cfevint, once},
    {"::verbose", cfevbool, once},
    {"::exclude", cfevstr, often},
    {"::*.store::", nullptr, once},
    {"store::path", cfevstr, once},
    {"store::size", cfevint, once},
    {"store::scrub", cfevbool, once},
    {"::schedule.", nullptr, once},
    {"::schedule.tick", cfevint, once},
    {"::schedule.window.", nullptr, once},
    {"::schedule.window.from", cfevint, once},
    {"::schedule.window.to", cfevint, once},
    {"::schedule.window.sunday.", nullptr, once},
    {"::schedule.window.sunday.from", cfevint, once},
    {"::schedule.window.sunday.to", cfevint, once},
    {"::*.host::", nullptr, once},
    {"host::addr", cfevstr, once},
    {"host::port", cfevint, once},
    {"host::limits.", nullptr, once},
    {"host::limits.rate", cfevflt, once},
    {"host::limits.load", cfevflt, once},
    {"host::*.disk::", nullptr, once},
    {"disk::path", cfevstr, once},
    {"disk::keep", cfevint, once},
};

/// Checks a tree, or a catalog: then the references get their values too.
bool check(cfgroup *top) {
  cfparser parser{};
  parser.scopedef = [](const char *scope) { return find(symbols, scope); };
  parser.werr = 1;
  return cfparse(&parser, top, fname);
}

// Values

void showvalues(cfgroup *catalog) {
  cfgroup *schedule = cfcatgetgrp(catalog, nullptr, "schedule");
  std::printf("  letters to %s, a look at the clock every %ld s\n", text(catalog, "mail", "nobody"),
              number(schedule, "tick", 300));
  each(catalog, "store", [](cfgroup *store) {
    std::printf("  store %s: %s, %ld GB\n", store->name, text(store, "path", "?"),
                number(store, "size", 0));
  });
  const long keep = number(catalog, "keep", 7);
  each(catalog, "host", [keep](cfgroup *host) {
    std::printf("  host %s: %s, port %ld\n", host->name, text(host, "addr", host->name),
                number(host, "port", 22));
    each(host, "disk", [keep](cfgroup *disk) {
      std::printf("    disk %s: %s, %ld copies kept\n", disk->name, text(disk, "path", "?"),
                  number(disk, "keep", keep));
    });
  });
}

//! [edit]
// Edits: each through the catalog, and the tree follows.
void edit(cfgroup *catalog) {
  cfgroup *alpha = cfcatgetgrp(catalog, "host", "alpha");
  must(alpha, "host alpha is there");

  std::puts("  set     host alpha: port = 2022");
  cfcatsetpar(alpha, cfnewpar("port", "2022", -1));

  std::puts("  add     host delta: addr = 192.0.2.13");
  cfgroup *delta = cfnewgrp("host", "delta", cf_grpinst, -1);
  cfaddpar(delta, cfnewpar("addr", "192.0.2.13", -1));
  cfcataddgrp(catalog, delta);

  std::puts("  delete  host beta, and the remark bound to it");
  cfcatdelgrp(cfcatgetgrp(catalog, "host", "beta"));

  std::puts("  clear   host alpha: limits");
  cfcatclrgrp(cfcatgetgrp(alpha, nullptr, "limits"));
}
//! [edit]

// Comparison

bool differ(cfgroup *a, cfgroup *b, unsigned opt, int (*chkscope)(const char *) = nullptr) {
  cfdiff diff{};
  diff.chkscope = chkscope;
  diff.opt = opt;
  return cfdiffnd(cfdiffdfl(&diff), &a->link, &b->link);
}

int nohosts(const char *scope) { return !std::string_view(scope).ends_with(".host::"); }

/// The lines that only one of two texts has, but for their blanks.
void showlines(const std::string &a, const std::string &b, char mark) {
  const auto lines = [](const std::string &text) {
    std::vector<std::string> found;
    std::istringstream in(text);
    for (std::string line; std::getline(in >> std::ws, line);)
      found.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
    return found;
  };
  std::vector<std::string> theirs = lines(b);
  for (const std::string &line : lines(a)) {
    const auto same = std::find(theirs.begin(), theirs.end(), line);
    if (same == theirs.end())
      std::printf("  %c %s\n", mark, line.c_str());
    else
      theirs.erase(same);
  }
}

// The steps

tree readstep() {
  step("A file is read");
  tree top = readfile(fname);
  must(top != nullptr, "the file reads without a fault");
  const std::string text = contents(fname);
  std::printf("  %s: %ld lines, no fault\n", fname,
              static_cast<long>(std::count(text.begin(), text.end(), '\n')));
  return top;
}

void treestep(cfgroup *top) {
  step("The tree: each element with its line; remarks in blocks, bound to what follows or free");
  list(top);
}

void printstep(cfgroup *top) {
  step("The tree is printed back");
  const auto printed = totext(top);
  must(printed.has_value(), "the tree prints");
  std::fwrite(printed->data(), 1, printed->size(), stdout);
  const tree again = fromtext(*printed, "printed");
  must(again && !differ(top, again.get(), cf_diffrem), "the text reads back as the same tree");
  must(totext(again.get()) == printed, "and that prints to the same bytes");
  std::puts("\n  Read again it is the same tree, and prints to the same bytes.");
}

void syntaxstep() {
  step("A broken copy: one run tells all of its faults");
  const std::string broken =
      changed(contents(fname), {{"verbose = false", "verbose: false"},
                                {"store second {", "store second { # new"},
                                {"  disk root {", "  disk root/boot {"},
                                {"# Below this, machines that come and go.", "ring {"}});
  must(!fromtext(broken, "broken copy"), "the broken copy is refused");
}

void checkstep(cfgroup *top) {
  step("A copy that is well formed and still wrong: the check against the symbols tells");
  const std::string faulty = changed(contents(fname), {{"keep = 14", "kep = 14"},
                                                       {"  port = 2222", "  port = ssh"},
                                                       {"    keep = 30", "    path = /export"}});
  const tree copy = fromtext(faulty, fname);
  must(copy && !check(copy.get()), "the faulty copy does not pass");
  must(check(top), "the sound file passes");
  std::puts("\n  The sound file passes.");
}

void valuestep(cfgroup *catalog) {
  step("Values with their types, from the catalog; what the file leaves out takes its default");
  showvalues(catalog);
}

void editstep(cfgroup *catalog) {
  step("Edits through the catalog change the tree as well");
  edit(catalog);
  std::puts("  set     host delta: port = ssh, and the check is asked");
  cfgroup *delta = cfcatgetgrp(catalog, "host", "delta");
  cfcatsetpar(delta, cfnewpar("port", "ssh", -1));
  must(!check(catalog), "the bad value is found");
  std::puts("  set     host delta: port = 23");
  cfcatsetpar(delta, cfnewpar("port", "23", -1));
  must(check(catalog), "the edited tree passes");
  std::puts("\n  Now the check passes, and the values are:");
  showvalues(catalog);
}

void comparestep(cfgroup *top) {
  step("Compared with the file as it was");
  const tree before = readfile(fname);
  must(differ(before.get(), top, 0), "the trees differ");
  must(!differ(before.get(), top, 0, nohosts), "without the hosts they are the same");
  std::puts("  the whole, but for remarks: different\n  without the hosts: the same");
}

/// A save that must fail, and leave the file as it was.
void refusedsave(cfgroup *top, const char *headline) {
  std::printf("  %s\n", headline);
  const std::string old = contents(fname);
  must(!save(top, fname), "the save is refused");
  must(contents(fname) == old, "the old file stands as it was");
}

void savestep(cfgroup *top, cfgroup *catalog) {
  step("A safe save");
  const std::string old = contents(fname);
  const scratch_folder here; // what follows goes to a copy
  std::ofstream(fname) << old;
  cfgroup *alpha = cfcatgetgrp(catalog, "host", "alpha");

  cfcatsetpar(alpha, cfnewpar("addr", std::string(4095, '9').c_str(), -1));
  refusedsave(top, "with a line that grew past what the reader takes");
  cfcatsetpar(alpha, cfnewpar("addr", "192.0.2.10", -1));
  {
    const full_disk disk;
    refusedsave(top, "on a full disk");
  }
  must(save(top, fname), "the tree is saved");
  std::puts("  Both times the old file stands. Mended, and with room on the disk, the tree is\n"
            "  printed beside it, synced, read back, compared, and put in its place. Changed:\n");
  showlines(old, contents(fname), '-');
  showlines(contents(fname), old, '+');
}

} // namespace

int main() {
  const tree top = readstep();
  treestep(top.get());
  printstep(top.get());
  syntaxstep();
  checkstep(top.get());
  const tree catalog(cfcatalog(top.get())); // behind the check: it takes the values along
  valuestep(catalog.get());
  editstep(catalog.get());
  comparestep(top.get());
  savestep(top.get(), catalog.get());
  std::puts("\nDone.");
}
