// diagnostics: messages that show the faulty line, with a caret under the place.
// SPDX-License-Identifier: MIT
#include "symbols.h"
#include "tree.h"

#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

//! [place]
struct span {
  size_t begin, end;
};

bool isblank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
bool isletter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool isinword(char c) { return isletter(c) || (c >= '0' && c <= '9') || c == '_'; }

size_t skip(const std::string &line, size_t at, bool (*isskipped)(char)) {
  while (at < line.size() && isskipped(line[at]))
    ++at;
  return at;
}

/// Where a line stops being one of the format.
size_t breakingpoint(const std::string &line) {
  size_t at = skip(line, 0, isblank);
  size_t second = std::string::npos;
  for (int words = 0; at < line.size() && isletter(line[at]); ++words) {
    if (words == 1)
      second = at;
    if (words == 2)
      return at;
    at = skip(line, skip(line, at, isinword), isblank);
  }
  if (at == line.size())
    return at; // something is missing
  if (line[at] == '=' && second != std::string::npos)
    return second; // a key is one word
  return line[at] == '{' || line[at] == '}' ? skip(line, at + 1, isblank) : at;
}

/// What of a line a message means: as a rule all of it, but for its blanks.
span place(const std::string &line, const std::string &message) {
  span all{skip(line, 0, isblank), line.size()};
  while (all.end > all.begin && isblank(line[all.end - 1]))
    --all.end;
  const size_t equals = line.find('=');
  if (message == "syntax error")
    return {breakingpoint(line), 0};
  if (message == "value expression error" && equals != std::string::npos)
    return {skip(line, equals + 1, isblank), all.end};
  if (equals != std::string::npos)
    return {all.begin, skip(line, all.begin, isinword)};
  return all;
}
//! [place]

//! [show]
/// Shows a line of a file and marks what a message means in it. The stream that is being read is
/// not touched: the file is opened once more.
void showline(const char *fname, long row, const std::string &message) {
  if (message == "line overflow")
    return; // nobody wants to see all of that
  std::ifstream file(fname);
  std::string line;
  for (long n = 0; n < row; ++n)
    if (!std::getline(file, line))
      return;
  const span marked = place(line, message);
  std::string marks;
  for (size_t at = 0; at < marked.begin && at < line.size(); ++at)
    if ((line[at] & 0xC0) != 0x80) // bytes that go on with a letter of UTF-8 take no room
      marks += line[at] == '\t' ? '\t' : ' ';
  marks += '^';
  for (size_t at = marked.begin + 1; at < marked.end; ++at)
    if ((line[at] & 0xC0) != 0x80)
      marks += '~';
  std::fprintf(stderr, "    %s\n    %s\n", line.c_str(), marks.c_str());
}

/// Writes a message, and its line if it tells one.
__attribute__((format(printf, 2, 0))) void tell(const char *kind, const char *fmt, va_list args) {
  va_list copy;
  va_copy(copy, args);
  std::fprintf(stderr, "%s: ", kind);
  std::vfprintf(stderr, fmt, copy);
  std::fputc('\n', stderr);
  va_end(copy);
  constexpr std::string_view place = "%s:%ld: ";
  if (std::string_view(fmt).starts_with(place)) {
    const char *fname = va_arg(args, const char *);
    const long row = va_arg(args, long);
    showline(fname, row, fmt + place.size());
  }
}
//! [show]

cfscope symbols[] = {
    {"::keep", cfevint, 0},
    {"::*.host::", nullptr, 0},
    {"host::addr", cfevstr, 0},
    {"host::limits.", nullptr, 0},
};

} // namespace

//! [sinks]
// The library calls these instead of its own.
void emsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  tell("error", fmt, args);
  va_end(args);
}

void wmsg(const char *fmt, ...) {
  va_list args;
  va_start(args, fmt);
  tell("warning", fmt, args);
  va_end(args);
}
//! [sinks]

int main(int argc, char **argv) {
  const char *fname = argc > 1 ? argv[1] : "diagnostics.conf";
  const stream file(std::fopen(fname, "r"));
  if (!file)
    return 2;
  cflexer lex{};
  const bool clean = cflex(&lex, file.get(), fname);
  const tree top(lex.top);
  cfparser parser{};
  parser.scopedef = [](const char *scope) { return find(symbols, scope); };
  const bool valid =
      cfparse(&parser, top.get(), fname); // what could be read is checked all the same
  return clean && valid ? 0 : 1;
}
