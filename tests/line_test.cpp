// Lines: what kind each is and how it is cut, against a table and against another way to tell it.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <sstream>

using std::string;
using namespace std::string_literals;

namespace {

/// A record with a slot replaced by one that does the same, so that the reader asks all slots.
cflexer asking() {
  static const cflexer dfl = [] {
    cflexer lex{};
    return *cflexdfl(&lex);
  }();
  cflexer lex{};
  lex.isempty = [](cflexer *it) { return dfl.isempty(it); };
  return lex;
}

/// Messages, the elements in file order with blocks looked through, and the number of lines read.
string outcome(const kit::reading &got) {
  const kit::tree top(got.top);
  std::istringstream dump(kit::dump(top.get()));
  std::vector<size_t> blocks; // depths of those around the line
  string text = got.said, line;
  for (std::getline(dump, line); std::getline(dump, line);) {
    const size_t depth = line.find_first_not_of(' ');
    while (!blocks.empty() && blocks.back() >= depth)
      blocks.pop_back();
    if (line.compare(depth, 3, "run") == 0 || line.compare(depth, 5, "block") == 0)
      blocks.push_back(depth);
    else
      text += line.substr(2 * blocks.size() + 2) + '\n';
  }
  return text + std::to_string(got.nrow);
}

/// Each byte as the letter of its class: letter a, digit 0, white space s, newline n; blanks and
/// marks as they are.
string classes(const string &text) {
  string all;
  for (const char ch : text) {
    const auto c = static_cast<unsigned char>(ch);
    all += string(" #{}=").find(ch) != string::npos ? ch
           : ch == '\n'                             ? 'n'
           : std::isspace(c)                        ? 's'
           : std::isalpha(c)                        ? 'a'
           : std::isdigit(c) || c == '_'            ? '0'
                                                    : '?';
  }
  return all;
}

/// A line as an element with its texts; "" if it is empty, "}" if it ends a group, "?" if wrong.
string element(const string &text, long row) {
  const string all = classes(text), white = " sn";
  const size_t begin = all.find_first_not_of(white), last = all.find_last_not_of(white);
  const auto at = [&](size_t place) { return all.c_str()[std::min(place, all.size())]; };
  const auto behind = [&](const string &classes, size_t from) {
    return std::min(all.find_first_not_of(classes, from), all.size());
  };
  const auto tell = [&](const string &kind, const string &texts) {
    return kind + ' ' + std::to_string(row) + " '" + texts + "'";
  };
  if (begin == string::npos)
    return "";
  if (at(begin) == '#') {
    const size_t from = begin + (at(begin + 1) == ' ' ? 2 : 1);
    return tell("remark", text.substr(from, std::min(all.find('n', from), all.size()) - from));
  }
  const size_t end = behind("a0", begin), next = behind(white, end), end2 = behind("a0", next);
  const string word = text.substr(begin, end - begin);
  if (at(begin) != 'a')
    return at(begin) == '}' && begin == last ? "}" : "?";
  if (at(next) == '=')
    return tell("param", word + "' '" +
                             text.substr(behind(white, next + 1),
                                         last + 1 - std::min(behind(white, next + 1), last + 1)));
  if (at(last) != '{' || behind(white, end2) != last || (end2 > next && at(next) != 'a'))
    return "?";
  return tell("inst", next == last ? "' '" + word : word + "' '" + text.substr(next, end2 - next));
}

/// The outcome, told in another way than the library's.
string oracle(const string &file) {
  string said, tree;
  std::vector<long> open;
  long row = 0;
  const auto error = [&](const char *text, long at) {
    said += "E cfg:" + std::to_string(at) + ": " + text + '\n';
  };
  std::istringstream in(file);
  for (string line; std::getline(in, line);) {
    ++row;
    if (line.size() > 4094) {
      error("line overflow", row);
      continue;
    }
    const string told = element((line + (in.eof() ? "" : "\n")).c_str(), row);
    if (told == "?")
      error("syntax error", row);
    else if (told == "}")
      open.empty() ? error("group end without begin", row) : open.pop_back();
    else if (!told.empty())
      tree += string(2 * open.size(), ' ') + told + '\n';
    if (told[0] == 'i')
      open.push_back(row);
  }
  if (!open.empty())
    error("group begin without end", open.back());
  return said + tree + std::to_string(row + 1);
}

/// Reads a file both ways, by the defaults alone and by asking the slots.
void expect_as_told(const string &file) {
  const string expected = oracle(file);
  cflexer asks = asking();
  ASSERT_EQ(outcome(kit::read(file)), expected) << file;
  ASSERT_EQ(outcome(kit::read(file, "cfg", &asks)), expected) << "by slots: " << file;
}

} // namespace

TEST(Line, Kinds) {
  const struct {
    string file, outcome;
  } table[] = {
      {"", "1"},
      {" \t\r\n\r\n\n\v\f", "5"},
      {"#\n# \n#x\n#  x\n## x\n#\tx\n# x  \r\n \t# # x",
       "remark 1 ''|remark 2 ''|remark 3 'x'|"
       "remark 4 ' x'|remark 5 '# x'|remark 6 '\tx'|remark 7 'x  \r'|remark 8 '# x'|9"},
      {"a{\n}\na b{\r\n}\r\na\v b \f{ \t\n}", "inst 1 '' 'a'|inst 3 'a' 'b'|inst 5 'a' 'b'|7"},
      {"k_1=1\r\nk = \t\nk =\nk==\nk = }\nk = {\n\tk\v=\f a # b  \r",
       "param 1 'k_1' '1'|param 2 'k' ''|"
       "param 3 'k' ''|param 4 'k' '='|param 5 'k' '}'|param 6 'k' '{'|param 7 'k' 'a # b'|8"},
      {"k = 1", "param 1 'k' '1'|2"},
      {"# x", "remark 1 'x'|2"},
      {"k=1\0x\n\0}\na {\0}\n}\0 # x"s, "param 1 'k' '1'|inst 3 '' 'a'|5"},
  };
  for (auto [file, expected] : table) {
    std::replace(expected.begin(), expected.end(), '|', '\n');
    EXPECT_EQ(outcome(kit::read(file)), expected);
    expect_as_told(file);
  }
}

TEST(Line, SyntaxErrors) {
  for (const char *line : {"{",       "a b c {",       "_a {",          "1a {",  "a _b {", "a 1b {",
                           "a-b {",   "a {}",          "a { # x",       "} # x", "_k = 1", "1k = 1",
                           "a.b = 1", "key",           "key value = 1", "= 1",   "a { b",  "}}",
                           "\x80",    "a\xc3\xa4 = 1", "\xa0k = 1"}) {
    EXPECT_EQ(outcome(kit::read(line)), "E cfg:1: syntax error\n2") << line;
    expect_as_told(line);
  }
}

TEST(Line, DefaultsAnswerOneOrZeroAndChangeNothing) {
  cflexer lex{};
  EXPECT_TRUE(cflexdfl(&lex) == &lex && lex.isgrpend(&lex) == 0) << "at the end of the input";
  const char *const lines[] = {" \n", "#", "a{", "}", "k=", "?"};
  for (size_t i = 0; i < std::size(lines); ++i) {
    lex.row = lines[i];
    const int answers[] = {lex.isempty(&lex), lex.isremark(&lex), lex.isgrpbeg(&lex),
                           lex.isgrpend(&lex), lex.isparam(&lex)};
    for (size_t j = 0; j < std::size(answers); ++j)
      EXPECT_EQ(answers[j], i == j) << lines[i];
    EXPECT_TRUE(lex.row == lines[i] && lex.nrow == 0 && !lex.valid && !lex.top && !lex.fd);
  }
}

TEST(Line, EveryByteAtEveryPlace) {
  for (const string line :
       {"  \n", " # x\n", " ab c {\n}", "a{\n", "a{\n }\n", " k_ = v w \r\n", "k=v"})
    for (size_t at = 0; at < line.size(); ++at)
      for (int byte = 0; byte < 256; ++byte) {
        string file = line;
        file[at] = static_cast<char>(byte);
        expect_as_told(file);
        if (HasFatalFailure())
          FAIL() << "byte " << byte << " at " << at;
      }
}

TEST(Line, AnyBytes) {
  std::mt19937 rng(1);
  for (int round = 0; round < 3000; ++round) {
    const bool large = round % 50 == 0; // of lines around the limit, and larger than any buffer
    string file(rng() % (large ? 50000 : 60), ' ');
    for (char &c : file)
      c = large && rng() % 400 ? 'a' : " \n\n#={}ab1_\t\r\0\x80."s[rng() % 17];
    expect_as_told(file);
    expect_as_told(kit::random_file(rng));
  }
}

TEST(Line, LengthsAroundTheLimit) {
  const auto line = [](size_t length, const string &end) {
    return "k=" + string(length - 2 - end.size(), 'v') + end;
  };
  for (const auto &[length, end, fits] : std::vector<std::tuple<size_t, string, bool>>{
           {4095, "\n", true}, {4096, "\n", false}, {4094, "", true}, {4095, "", false}})
    EXPECT_EQ(outcome(kit::read(line(length, end))).find("E cfg:1: line overflow\n") != 0, fits)
        << length;
  for (size_t length = 4090; length <= 4100; ++length)
    for (const string end : {"\n", "\r\n", ""})
      for (const size_t zero :
           {size_t{0}, size_t{1}, size_t{9}, size_t{4093}, size_t{4094}, length - 1})
        for (const string rest : {"", "k = 2\n"}) {
          string file = line(length, end);
          if (zero < length)
            file[zero] = zero == 0 ? 'k' : '\0';
          expect_as_told("a = 1\n" + file + rest);
        }
}
