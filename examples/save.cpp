// save: three saves of one file: a good one, one that would not read back, one on a full disk.
// SPDX-License-Identifier: MIT
#include "save.h"

#include "full_disk.h"
#include "scratch.h"

#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <string>

// Messages stand in order with what else is shown.
void emsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::vprintf(fmt, args);
  std::puts("");
  va_end(args);
}

namespace {

constexpr const char *fname = "relay.conf";

void show() {
  struct stat state {};
  stat(fname, &state);
  std::printf("%s, mode %o:\n", fname, state.st_mode & 07777U);
  std::ifstream file(fname);
  for (std::string line; std::getline(file, line);)
    std::printf("  %s\n", line.c_str());
  for (const auto &entry : std::filesystem::directory_iterator("."))
    if (entry.path().filename() != fname)
      std::printf("  left behind: %s\n", entry.path().c_str());
}

void attempt(cfgroup *top, const char *headline) {
  std::printf("\n%s\n", headline);
  std::puts(save(top, fname) ? "saved" : "not saved");
}

void set(cfgroup *top, const char *key, const std::string &val) {
  cfcatsetpar(top, cfnewpar(key, val.c_str(), -1));
}

} // namespace

int main() {
  const scratch_folder here;
  std::ofstream(fname) << "# where letters go\nrelay = mx.example.org\nport = 25\n";
  chmod(fname, 0640);
  show();

  const tree top = readfile(fname);
  set(top.get(), "port", "587");
  attempt(top.get(), "a good save");
  show();

  set(top.get(), "relay", std::string(4100, 'x'));
  attempt(top.get(), "a line longer than the reader takes");
  show();

  set(top.get(), "relay", "mx.example.org\nport = 26");
  attempt(top.get(), "a value that holds a second line");
  show();

  set(top.get(), "relay", "mx2.example.org");
  {
    const full_disk disk;
    attempt(top.get(), "a full disk");
  }
  show();
  attempt(top.get(), "with room again");
  show();
}
