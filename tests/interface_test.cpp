// The C++ interface: diagnostics, values, edits, saving, changes, samples.
// SPDX-License-Identifier: MIT
#include <cf.hpp>

#include "kit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <ranges>
#include <set>
#include <sstream>
#include <thread>

using namespace std::chrono_literals;

namespace {

/// How many allocations of this thread succeed before one fails. If it is negative, none fails.
thread_local long until_failure = -1;
thread_local long live = 0; // blocks that are not released yet

void *allocate(std::size_t size) {
  if (until_failure >= 0 && until_failure-- == 0)
    throw std::bad_alloc();
  ++live;
  return std::malloc(size ? size : 1);
}
void release(void *block) {
  live -= block != nullptr;
  std::free(block);
}

} // namespace

#ifdef __clang__
#define CF_THREAD_SANITIZER __has_feature(thread_sanitizer)
#endif
// The thread sanitizer has its own operator new: with it, only allocations of the core fail.
#if !CF_THREAD_SANITIZER
void *operator new(std::size_t size) { return allocate(size); }
void operator delete(void *block) noexcept { release(block); }
void operator delete(void *block, std::size_t) noexcept { release(block); }
#endif

namespace {

enum class level { debug, info, warning };
enum plain { red = 1, green = 7 };
struct point {
  int x, y;
  bool operator==(const point &) const = default;
};

cf::outcome<point> topoint(const std::string &text) {
  point it{};
  if (std::sscanf(text.c_str(), "%d/%d", &it.x, &it.y) != 2)
    return cf::refused("not two numbers as 1/2");
  return it;
}

const cf::schema rules{
    cf::key("workers").integer(1, 256).otherwise(4).help("Number of worker threads."),
    cf::key("level")
        .words<level>({{"debug", level::debug}, {"info", level::info}})
        .otherwise(level::info),
    cf::key("listen").text().many(),
    cf::key("ports").integer(1, 65535).list(','),
    cf::key("ratio").real(0, 1),
    cf::key("verbose").boolean().otherwise(false),
    cf::key("grace").duration(1s, 1h),
    cf::key("space").bytes(1024, 1 << 30),
    cf::key("motto").text().nonempty(),
    cf::key("mode").words({"fast", "safe"}),
    cf::key("colour").words<plain>({{"red", red}, {"green", green}}),
    cf::key("origin").as<point>(topoint).otherwise(point{0, 0}),
    cf::key("threads").integer().deprecated("use workers"),
    cf::one("tls", cf::key("cert").text().required(), cf::key("days").integer().otherwise(90)),
    cf::each("host", cf::key("addr").text().required(),
             cf::key("port").integer(1, 65535).otherwise(22),
             cf::each("disk", cf::key("path").text().required()),
             cf::one("limits", cf::key("rate").integer().otherwise(10))),
    cf::each("zone", cf::key("ttl").duration()).names(cf::names::hosts).many(),
};

std::string lines(const std::vector<cf::diagnostic> &list) {
  std::string text;
  for (const cf::diagnostic &d : list)
    text += to_string(d) + "\n";
  return text;
}

std::string faults(std::string_view text, const cf::schema &schema = rules, cf::options how = {}) {
  return lines(cf::try_parse(text, schema, std::move(how)).diagnostics);
}

/// The message of the exception that a call throws; "" if it throws none.
template <class Call> std::string thrown(Call call) {
  try {
    call();
  } catch (const cf::error &e) {
    return e.what();
  } catch (const std::logic_error &e) {
    return std::string("logic: ") + e.what();
  }
  return "";
}

struct row {
  const char *text, *expected;
};

TEST(Interface, FaultsOfValuesAndNames) {
  const row rows[] = {
      {"workers = 1000", "1:11: error: workers: 1000 is not in 1..256\n"},
      {"workers=0x101", "1:9: error: workers: 0x101 is not in 1..256\n"},
      {"  workers = 8a", "1:13: error: workers: \"8a\" is not an integer\n"},
      {"workers = 010", "1:11: error: workers: \"010\" has a leading zero\n"},
      {"workers = +1", "1:11: error: workers: \"+1\" is not an integer\n"},
      {"workers = 1e2", "1:11: error: workers: \"1e2\" is not an integer\n"},
      {"workers = 99999999999999999999",
       "1:11: error: workers: 99999999999999999999 is out of range\n"},
      {"workers =", "1:10: error: workers: \"\" is not an integer\n"},
      {"workers = 8 # of them", "1:11: error: workers: \"8 # of them\" is not an integer (the # "
                                "and what follows are part of the "
                                "value)\n"},
      {"workers = \x01\x7f\"", "1:11: error: workers: \"\\x01\\x7f\"\" is not an integer\n"},
      {"WORKERS = 1\nworkers = 2", "2:1: error: workers: appears twice (first in line 1)\n"},
      {"level = Debug", ""},
      {"level = dbug",
       "1:9: error: level: \"dbug\" is not one of debug, info (did you mean debug?)\n"},
      {"ratio = 1.5", "1:9: error: ratio: 1.5 is not in 0..1\n"},
      {"ratio = 0x1p-1", ""},
      {"ratio = nan", "1:9: error: ratio: \"nan\" is not a number\n"},
      {"ratio = 1e999", "1:9: error: ratio: 1e999 is out of range\n"},
      {"ratio = 00.5", "1:9: error: ratio: \"00.5\" has a leading zero\n"},
      {"ratio = 0,5", "1:9: error: ratio: \"0,5\" is not a number\n"},
      {"verbose = yes", "1:11: error: verbose: \"yes\" is not a boolean: true or false\n"},
      {"grace = 1m30s", ""},
      {"grace = 90m", "1:9: error: grace: 90m is not in 1s..1h\n"},
      {"grace = 30", "1:9: error: grace: \"30\" has no unit: d, h, m, s or ms\n"},
      {"grace = 5s1m",
       "1:9: error: grace: \"5s1m\" is not a duration such as 250ms, 5s or 1h30m\n"},
      {"grace = 999999999999d", "1:9: error: grace: 999999999999d is out of range\n"},
      {"grace = 0", "1:9: error: grace: 0 is not in 1s..1h\n"},
      {"space = 1K", ""},
      {"space = 2G", "1:9: error: space: 2G is not in 1k..1G\n"},
      {"space = 1kb", "1:9: error: space: \"1kb\" is not a size such as 4096, 64k or 10M\n"},
      {"space = 99999999999999T", "1:9: error: space: 99999999999999T is out of range\n"},
      {"motto =", "1:8: error: motto: must not be empty\n"},
      {"mode = slow", "1:8: error: mode: \"slow\" is not one of fast, safe\n"},
      {"ports = 1, 2 ,3", ""},
      {"ports = 80, 70000", "1:13: error: ports: 70000 is not in 1..65535\n"},
      {"ports = 1,,2", "1:11: error: ports: an item of the list is empty\n"},
      {"ports = 1,", "1:11: error: ports: an item of the list is empty\n"},
      {"origin = 3", "1:10: error: origin: \"3\": not two numbers as 1/2\n"},
      {"threads = 3", "1:1: warning: threads: use workers\n"},
      {"motto = \"x\"", "1:9: warning: motto: the quotes are part of the value\n"},
      {"motto = 'x\"\nlisten = a#b", ""},
      {"motto = x # y", "1:9: warning: motto: the # and what follows are part of the value\n"},
      {"wrokers = 3", "1:1: error: wrokers: unknown key (did you mean workers?)\n"},
      {"completely = 3", "1:1: error: completely: unknown key\n"},
      {"tsl {\n cert = 1\n bad = 2\n}", "1:1: error: tsl: unknown group (did you mean tls?)\n"},
      {"hots a {\n x = 1\n}", "1:1: error: hots a: unknown group (did you mean host?)\n"},
      {"tls {\n}", "1:1: error: tls.cert: required, but missing\n"},
      {"tls {\n cert = a\n}\ntls {\n}", "4:1: error: tls: appears twice (first in line 1)\n"},
      {"host a {\n addr = x\n # about it\n  disk b {\n  }\n}",
       "4:3: error: host a.disk b.path: required, but missing\n"},
      {"host a {\n addr = x\n}\nhost b {\n addr = x\n}\nHOST A {\n addr = y\n}",
       "7:1: error: HOST A: appears twice (first in line 1)\n"},
      {"zone 10.0 {\n}\nzone 10.0 {\n ttl = 3\n}",
       "4:8: error: zone 10.0.ttl: \"3\" has no unit: d, h, m, s or ms\n"},
      {"host a-1 {\n x = 1\n}",
       "1:6: error: \"a-1\" is not a name: letters, digits and underscores, a letter first\n"},
  };
  for (const row &it : rows)
    EXPECT_EQ(faults(it.text), it.expected) << it.text;
  const cf::schema needs{cf::one("a").required(), cf::each("b").at_least(2), cf::any().at_least(1)};
  EXPECT_EQ(faults("b x {\n}\n", needs),
            "error: a: required, but missing\nerror: b: at least 2 required, found 1\n"
            "error: any group: at least 1 required, found 0\n");
}

TEST(Interface, FaultsOfSyntaxSpoilOnlyTheirPart) {
  const cf::schema schema{cf::key("a").integer(), cf::key("must").text().required(),
                          cf::one("g", cf::key("b").integer().required(), cf::key("c").integer(),
                                  cf::one("h", cf::key("d").integer())),
                          cf::any(cf::key("e").integer())};
  const row rows[] = {
      {"must = 1\na 5\n",
       "2:1: error: \"a 5\" is neither a parameter (key = value) nor a group (name {)\n"},
      {"a 5", "1:1: error: \"a 5\" is neither a parameter (key = value) nor a group (name {)\n"},
      {"must = 1\na-b = 5\na = x",
       "2:1: error: \"a-b\" is not a key: letters, digits and underscores, a letter first\n"
       "3:5: error: a: \"x\" is not an integer\n"},
      {"must = 1\n = 5", "2:2: error: there is no key before =\n"},
      {"must = 1\ng {\n b 5\n c = x\n}",
       "3:2: error: \"b 5\" is neither a parameter (key = value) nor a group (name {)\n"
       "4:6: error: g.c: \"x\" is not an integer\n"},
      {"must = 1\ng x y {\n b = z\n h {\n }\n}\na = y",
       "2:3: error: \"x y\" is not a name: letters, digits and underscores, a letter first\n"
       "7:5: error: a: \"y\" is not an integer\n"},
      {"must = 1\ng { # main\n bad = 1\n}", "2:5: error: a remark needs a line of its own\n"},
      {"must = 1\ng { b = 1 }", "2:5: error: after { the line must end\n"},
      {"must = 1\ng {\n b = 1\n} # end\na = y",
       "4:3: error: after } the line must end\n5:5: error: a: \"y\" is not an integer\n"},
      {"must = 1\ng\n{\n bad = 1\n}\na = y",
       "2:1: error: the { of a group belongs in the line of its name\n"
       "6:5: error: a: \"y\" is not an integer\n"},
      {"must = 1\ng\n  bad = 1\n}\na = y",
       "2:1: error: \"g\" is neither a parameter (key = value) nor a group (name {)\n"
       "5:5: error: a: \"y\" is not an integer\n"},
      {"must = 1\n{\n}", "2:1: error: there is no name before {\n"},
      {"}\na = x", "error: must: required, but missing\n1:1: error: } without a group\n"
                   "2:5: error: a: \"x\" is not an integer\n"},
      {"g {\n b = 1\n h {\n }\n }\n c = 1\n}\na = x",
       "7:1: error: } without a group\n8:5: error: a: \"x\" is not an integer\n"},
      {"a = x\ng {\n b = 1\nfoo {\n bad = 1\n}\n",
       "1:5: error: a: \"x\" is not an integer\n2:1: error: g: this group is not closed by a }\n"},
      {"\xef\xbb\xbfmust = 1",
       "1:1: error: the text begins with a byte order mark, which does not belong to the format\n"},
      {"e {\n e = x\n}\nmust = 1", "2:6: error: e.e: \"x\" is not an integer\n"},
  };
  for (const row &it : rows)
    EXPECT_EQ(faults(it.text, schema), it.expected) << it.text;
  EXPECT_EQ(faults("must = " + std::string(5000, 'x'), schema),
            "1:1: error: the line has more than 4094 bytes\n");
}

TEST(Interface, Options) {
  const std::string many = "bad = 1\nworkers = x\nmotto = 'a'\nworse = 2\nthreads = 1\n";
  EXPECT_EQ(faults(many, rules, {.name = "f", .limit = 2, .unknown = cf::unknown::warning}),
            "f:1:1: warning: bad: unknown key\nf:2:11: error: workers: \"x\" is not an integer\n"
            "f: warning: and 3 more\n");
  EXPECT_EQ(faults("a = 1\nb = 1\nc = 1", rules, {.limit = 1}),
            "1:1: error: a: unknown key\nerror: and 2 more\n");
  EXPECT_EQ(faults("x {\n y = 1\n}\nz = 1", rules, {.unknown = cf::unknown::ignored}), "");
  EXPECT_EQ(faults("motto = 'a'", rules, {.warnings = false}), "");
  EXPECT_EQ(faults("a = 1", rules, {.max_size = 4}), "error: more than 4 bytes\n");
  EXPECT_EQ(faults("host a-1 {\n addr = x\n}", rules, {.names = cf::names::hosts}), "");
  EXPECT_EQ(
      faults("host a_1! {\n}", rules, {.names = cf::names::hosts}),
      "1:6: error: \"a_1!\" is not a name: letters, digits, - . : and underscores, a letter or "
      "digit first\n");
  const cf::result none = cf::try_load("/nonexistent/x.conf", rules);
  EXPECT_FALSE(none);
  const std::string absent = std::strerror(ENOENT); // in the language of the locale
  EXPECT_EQ(lines(none.diagnostics), "/nonexistent/x.conf: error: " + absent + '\n');
  EXPECT_EQ(cf::try_load("/", rules).diagnostics[0].message, std::strerror(EISDIR));
  EXPECT_EQ(lines(cf::try_load("/none/a\nb", rules).diagnostics),
            "/none/a\\x0ab: error: " + absent + '\n');
  EXPECT_EQ(cf::try_load(std::string("/dev\0/x", 7)).diagnostics[0].message, std::strerror(EINVAL));
  EXPECT_EQ(thrown([&] { cf::document().save(std::string("/none/a\0b", 9)); }),
            "/none/a\\x00b: error: the path has a zero byte");
  EXPECT_FALSE(cf::try_parse("bad = 1", rules, {.limit = 0}));
  EXPECT_EQ(lines(cf::parse("a = 'x'\ng {\n b = 1 # 2\n}").warnings()),
            "1:5: warning: a: the quotes are part of the value\n"
            "3:6: warning: g.b: the # and what follows are part of the value\n");
}

constexpr const char *full = R"(workers = 0x10
level = DEBUG
listen = one
listen = two
ports = 1, 65535
ratio = 0.5
grace = 1m1s
space = 2k
colour = green
origin = 3/4

# About tls.
tls {
  cert = a.pem
}

host b {
  addr = bb
  port = 300
  disk root {
    path = /
  }
}

host a {
  addr = aa
}
)";

TEST(Interface, ValuesOfAllTypes) {
  const cf::document doc = cf::parse(full, rules, {.name = "f"});
  EXPECT_EQ(doc.get<int>("workers"), 16);
  EXPECT_EQ(doc.get<signed char>("WORKERS"), 16);
  EXPECT_EQ(doc.get<unsigned long long>("workers"), 16U);
  EXPECT_EQ(doc.get<double>("workers"), 16);
  EXPECT_EQ(doc.get<std::string>("workers"), "0x10");
  EXPECT_EQ(doc.get<float>("ratio"), 0.5F);
  EXPECT_EQ(doc.get<long double>("ratio"), 0.5L);
  EXPECT_EQ(doc.get<level>("level"), level::debug);
  EXPECT_EQ(doc.get<plain>("colour"), green);
  EXPECT_EQ(doc.get<point>("origin"), (point{3, 4}));
  EXPECT_EQ(doc.get<std::string>("origin"), "3/4");
  EXPECT_EQ(doc.get<std::chrono::seconds>("grace"), 61s);
  EXPECT_EQ(doc.get<std::chrono::nanoseconds>("grace"), 61s);
  EXPECT_EQ((doc.get<std::chrono::duration<double, std::ratio<60>>>("grace").count()), 61.0 / 60);
  EXPECT_EQ(doc.get<std::size_t>("space"), 2048U);
  EXPECT_EQ(doc.get<bool>("verbose"), false);
  EXPECT_EQ(doc.get<std::string_view>("listen"), "one");
  EXPECT_EQ(doc.values<std::string>("listen"), (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(doc.values<std::uint16_t>("ports"), (std::vector<std::uint16_t>{1, 65535}));
  EXPECT_EQ(doc.values<int>("workers"), std::vector{16});
  EXPECT_EQ(doc.values<bool>("verbose"), std::vector{false});
  EXPECT_EQ(cf::parse("", rules).get<point>("origin"), (point{0, 0}));
  EXPECT_EQ(cf::parse("", rules).values<point>("origin"), (std::vector{point{0, 0}}));
  EXPECT_TRUE(cf::parse("", rules).values<std::string>("listen").empty());
  EXPECT_EQ(doc.find<int>("threads"), std::nullopt);
  EXPECT_EQ(doc.find<bool>("verbose"), std::nullopt);
  EXPECT_EQ(doc.get_or("threads", 5L), 5);
  EXPECT_EQ(doc.get_or("workers", 5), 16);
  EXPECT_EQ(doc.get_or("motto", "none"), "none");
  EXPECT_EQ(doc.get_or<std::string>("mode", "none"), "none");
  EXPECT_TRUE(doc.has("level") && !doc.has("verbose"));

  // Values that do not fit the type that the program asks for.
  const auto fails = [&](auto call) { return thrown([&] { call(doc.group("host", "b")); }); };
  EXPECT_EQ(fails([](auto g) { g.template get<std::int8_t>("port"); }),
            "f:19:10: error: host b.port: 300 is not in -128..127");
  EXPECT_EQ(fails([](auto g) { g.template get<std::chrono::seconds>("port"); }),
            "logic: host b.port: the schema says integer, but the program asks for a duration");
  EXPECT_EQ(fails([](auto g) { g.template get<level>("addr"); }),
            "logic: host b.addr: the schema says text, but the program asks for an enumeration");
  EXPECT_EQ(fails([](auto g) { g.template get<int>("prot"); }),
            "logic: host b.prot: the schema does not have this key");
  EXPECT_EQ(thrown([&] { doc.get<std::chrono::minutes>("grace"); }),
            "f:7:9: error: grace: 1m1s is finer than the unit that the program asks for");
  EXPECT_EQ(thrown([&] { doc.get<int>("ports"); }), "logic: ports: a list is read by values()");
  EXPECT_EQ(thrown([&] { doc.get<plain>("level"); }),
            "logic: level: the schema says word, but the program asks for an enumeration");
  EXPECT_EQ(thrown([&] { doc.get<std::string>("motto"); }),
            "f: error: motto: missing, and it has no default");
  EXPECT_EQ(thrown([&] { doc.groups("hots"); }),
            "logic: hots: the schema does not have this category");
  EXPECT_EQ(thrown([&] { doc.group("host"); }), "logic: host: the schema does not have this group");

  // A default does not hide a value that was reported.
  const cf::document faulty = cf::try_parse("workers = x\nports = 1,y\nlevel = x", rules).document;
  const std::string workers = "1:11: error: workers: \"x\" is not an integer";
  EXPECT_EQ(thrown([&] { faulty.get<int>("workers"); }), workers);
  EXPECT_EQ(thrown([&] { faulty.get<std::string>("workers"); }), workers);
  EXPECT_EQ(thrown([&] { faulty.get_or("workers", 1); }), workers);
  EXPECT_EQ(thrown([&] { faulty.find<int>("workers"); }), workers);
  EXPECT_EQ(thrown([&] { faulty.values<int>("ports"); }),
            "2:11: error: ports: \"y\" is not an integer");
}

TEST(Interface, ValuesWithoutSchema) {
  const cf::document doc =
      cf::parse("a = 18446744073709551615\nb = 9007199254740993\nc = -0x8000000000000000\n"
                "d = 5m\ng {\n x y {\n }\n}\ntrue = TRUE\nr = .5\ne =");
  EXPECT_EQ(doc.get<std::uint64_t>("a"), UINT64_MAX);
  EXPECT_EQ(doc.get<std::int64_t>("c"), INT64_MIN);
  EXPECT_EQ(doc.get<double>("b"), 9007199254740992.0); // a real, which rounds
  EXPECT_EQ(doc.get<double>("r"), 0.5);
  EXPECT_EQ(doc.get<std::chrono::seconds>("d"), 5min);
  EXPECT_EQ(doc.get<bool>("true"), true);
  EXPECT_EQ(doc.get<std::string>("e"), "");
  EXPECT_EQ(doc["g"].group("x", "y").line(), 6);
  EXPECT_FALSE(doc.has("") || doc.has("nothing") || doc["x"]);
  EXPECT_EQ(thrown([&] { doc.get<int>("a"); }),
            "1:5: error: a: 18446744073709551615 is not in -2147483648..2147483647");
  EXPECT_EQ(thrown([&] { doc["g"]["h"].get<int>("a"); }),
            "5:1: error: g.h.a: the group is missing");
  EXPECT_EQ(thrown([&] { doc.get<level>("a"); }),
            "logic: a: the schema says text, but the program asks for an enumeration");
}

TEST(Interface, Groups) {
  cf::document doc = cf::parse(full, rules);
  std::string names;
  for (cf::group host : doc.groups("host"))
    names += std::string(host.name()) + ":" + std::to_string(host.get<int>("port")) + " ";
  EXPECT_EQ(names, "b:300 a:22 ");
  EXPECT_EQ(std::ranges::distance(doc.groups()), 3);
  EXPECT_EQ(std::ranges::count(doc.keys(), std::string_view("listen")), 2);
  std::string items;
  for (const auto &[key, text, line] : doc.group("host", "b").items())
    items += std::string(key).append("=").append(text) + ":" + std::to_string(line) + " ";
  EXPECT_EQ(items, "addr=bb:18 port=300:19 ");
  EXPECT_EQ((*std::ranges::find(doc.groups("host"), "a", &cf::group::name)).line(), 25);
  EXPECT_EQ(doc.groups("host").begin()->get<std::string>("addr"), "bb");
  const cf::group root = doc.group("host", "B").group("disk", "root");
  EXPECT_EQ(root.get<std::string>("path"), "/");
  EXPECT_EQ(doc["tls"].get<int>("days"), 90);
  EXPECT_EQ(doc["tls"].category(), "");

  const cf::group limits = doc.group("host", "a").group("limits"), none = doc.group("host", "zz");
  EXPECT_FALSE(limits);
  EXPECT_EQ(limits.get<int>("rate"), 10);
  EXPECT_EQ(limits.name(), "limits");
  EXPECT_EQ(none.handle(), nullptr);
  EXPECT_TRUE(none.groups().empty() && none.items().empty() && !none.has("addr"));
  EXPECT_EQ(thrown([&] { none.get<int>("port"); }), "error: host zz.port: the group is missing");
  EXPECT_EQ(thrown([&] { none.group("limits").get<int>("rate"); }),
            "error: host zz.limits.rate: the group is missing");
  EXPECT_EQ(thrown([] { cf::group().get<int>("x"); }), "logic: x: this handle refers to no group");

  const cf::index hosts = doc.index("host");
  EXPECT_EQ(hosts.size(), 2U);
  EXPECT_EQ(hosts.find("A")->get<std::string>("addr"), "aa");
  EXPECT_EQ(hosts.find("c"), std::nullopt);

  EXPECT_EQ(to_string(doc.group("host", "b").error("port", "is taken").diagnostics()[0]),
            "19:10: error: host b.port: is taken");
  EXPECT_EQ(doc.group("host", "a").error("port", "is taken").what(),
            std::string("25:1: error: host a.port: is taken"));
  cf::document moved = std::move(doc);
  EXPECT_EQ(root.get<std::string>("path"), "/");
  EXPECT_THROW(doc.get<int>("workers"), std::logic_error);
}

TEST(Interface, Edits) {
  struct edit {
    const char *text;
    void (*call)(cf::document &);
    const char *expected; // the text, or after "!" what is thrown
  };
  const edit rows[] = {
      {"", [](auto &d) { d.set("workers", 7); }, "workers = 7\n"},
      {"", [](auto &d) { d.set("level", level::debug); }, "level = debug\n"},
      {"", [](auto &d) { d.set("verbose", true); }, "verbose = true\n"},
      {"", [](auto &d) { d.set("ratio", 0.1); }, "ratio = 0.1\n"},
      {"", [](auto &d) { d.set("ratio", 1); }, "ratio = 1\n"},
      {"", [](auto &d) { d.set("grace", 3599500ms); }, "grace = 59m59s500ms\n"},
      {"", [](auto &d) { d.set("space", std::size_t{65536}); }, "space = 65536\n"},
      {"", [](auto &d) { d.set("ports", "1, 2"); }, "ports = 1, 2\n"},
      {"", [](auto &d) { d.set("motto", std::string_view("x # y")); }, "motto = x # y\n"},
      {"listen = a\nlisten = b", [](auto &d) { d.set("listen", "c"); }, "listen = c\n"},
      // No capital I: it has another small letter in Turkish.
      {"# of a\nlisTEN = a\n\nverbose = true", [](auto &d) { d.add("listen", "b"); },
       "# of a\nlisTEN = a\nlisTEN = b\nverbose = true\n"},
      {"verbose = true\n\n# of t\ntls {\n  cert = x\n}", [](auto &d) { d.set("workers", 1); },
       "verbose = true\nworkers = 1\n\n# of t\ntls {\n  cert = x\n}\n"},
      {"# head\n\n# of t\ntls {\n  cert = x\n}", [](auto &d) { d.set("workers", 1); },
       "# head\n\nworkers = 1\n\n# of t\ntls {\n  cert = x\n}\n"},
      {"# of w\nworkers = 1\nverbose = true", [](auto &d) { EXPECT_TRUE(d.erase("Workers")); },
       "verbose = true\n"},
      {"", [](auto &d) { EXPECT_FALSE(d.erase("workers")); }, ""},
      {"", [](auto &d) { d.add_group("host", "a").set("addr", "x"); }, "host a {\n  addr = x\n}\n"},
      {"", [](auto &d) { d.add_group("tls"); }, "tls {\n}\n"},
      {"", [](auto &d) { d.add_group("zone", "10.0"); }, "zone 10.0 {\n}\n"},
      {"# of t\ntls {\n  cert = x\n}\nhost a {\n  addr = x\n}", [](auto &d) { d["tls"].erase(); },
       "host a {\n  addr = x\n}\n"},
      {"workers = 1", [](auto &d) { d.set("workers", 0); }, "!error: workers: 0 is not in 1..256"},
      {"", [](auto &d) { d.set("workers", "many"); },
       "!error: workers: \"many\" is not an integer"},
      {"", [](auto &d) { d.set("workers", true); },
       "!logic: workers: the program gives a bool, but the schema says integer"},
      {"", [](auto &d) { d.set("workers", 2.0); },
       "!logic: workers: the program gives a floating-point number, but the schema says integer"},
      {"", [](auto &d) { d.set("colour", level::debug); },
       "!logic: colour: the program gives an enumeration, but the schema says word"},
      {"", [](auto &d) { d.set("colour", static_cast<plain>(3)); },
       "!logic: colour: the schema has no word for this value of the enumeration"},
      {"", [](auto &d) { d.set("ratio", std::uint64_t{1} << 62 | 1); },
       "!error: ratio: 4611686018427387905 is not in 0..1"},
      {"", [](auto &d) { d.set("grace", std::chrono::duration<long, std::pico>(1)); },
       "!error: grace: the duration is finer than a nanosecond"},
      {"", [](auto &d) { d.set("motto", "a\nb"); },
       "!error: motto: \"a\\x0ab\" has a line end or a zero byte"},
      {"", [](auto &d) { d.set("motto", " a"); },
       "!error: motto: \" a\" begins or ends with a blank"},
      {"", [](auto &d) { d.set("motto", std::string(4090, 'x')); },
       "!error: motto: the line would have more than 4094 bytes"},
      {"workers = 1", [](auto &d) { d.add("workers", 2); }, "!error: workers: may occur only once"},
      {"", [](auto &d) { d.set("wrokers", 2); },
       "!logic: wrokers: the schema does not have this key"},
      {"", [](auto &d) { d["tls"].set("cert", "x"); }, "!error: tls: the group is missing"},
      {"tls {\n  cert = x\n}", [](auto &d) { d.add_group("tls"); },
       "!error: tls: may occur only once"},
      {"host a {\n  addr = x\n}", [](auto &d) { d.add_group("host", "A"); },
       "!error: host A: may occur only once"},
      {"", [](auto &d) { d.add_group("host", "a b"); },
       "!error: \"a b\" is not a name: letters, digits and underscores, a letter first"},
      {"", [](auto &d) { d.add_group("hots", "a"); },
       "!logic: hots a: the schema does not have this group"},
  };
  for (const edit &it : rows)
    for (const bool catalog : {false, true}) {
      cf::document doc = cf::parse(it.text, rules);
      const std::string before = doc.str();
      if (catalog)
        doc.catalog();
      const std::string what = thrown([&] { it.call(doc); });
      EXPECT_EQ(what.empty() ? doc.str() : "!" + what, it.expected) << it.text;
      EXPECT_TRUE(what.empty() || doc.str() == before) << it.text;
      EXPECT_EQ(cf::try_parse(doc.str(), rules).document.str(), doc.str());
    }
  cf::document free = cf::parse("");
  free.add_group("a").set("b", 5min);
  EXPECT_EQ(free["a"].get<std::chrono::seconds>("b"), 5min);
  EXPECT_EQ(thrown([&] { free.set("a b", 1); }),
            "error: \"a b\" is not a key: letters, digits and underscores, a letter first");
}

/// A catalog as text, without what depends on earlier edits: the order of its levels, and the empty
/// ones.
std::string dump(cfgroup *grp) {
  std::set<std::string> levels;
  std::string text;
  for (cfnode *it = cfiterator(grp); !cfend(it); cfnext(&it))
    if (const cfparam *par = cfpar(it))
      ((text += par->key) += '=') += par->val;
    else if (cfgrp(it)->type == cf_grpinst)
      text += '{' + dump(cfgrp(it)) + '}';
    else if (const std::string held = dump(cfgrp(it)); !held.empty())
      levels.insert(std::string(cfgrp(it)->cat) + '/' + cfgrp(it)->name + held);
  for (const std::string &it : levels)
    text += it + ' ';
  return text;
}

TEST(Interface, EditsKeepTheCatalogInStep) {
  cf::document doc = cf::parse(full, rules);
  cfgroup *catalog = doc.catalog();
  const auto instep = [&] {
    cfgroup *fresh = cfcatalog(doc.tree());
    EXPECT_EQ(dump(catalog), dump(fresh));
    cfdelgrp(fresh);
  };
  doc.set("motto", "x");
  instep();
  doc.add("listen", "three");
  instep();
  doc.set("listen", "four");
  instep();
  doc.group("host", "a").set("port", 5);
  instep();
  doc.group("host", "b").add_group("disk", "home").set("path", "/home");
  doc.group("host", "b").set("port", 7);
  instep();
  doc.add_group("zone", "z").set("ttl", 5s);
  doc.add_group("zone", "z").set("ttl", 6s);
  doc.add_group("zone", "z");
  std::ranges::next(doc.groups("zone").begin(), 1)->set("ttl", 7s);
  instep();
  doc.group("host", "b").set("addr", "new");
  doc["tls"].set("days", 3);
  instep();
  EXPECT_EQ(std::string(cfcatgetpar(cfcatgetgrp(catalog, "host", "b"), "port", nullptr)->val), "7");
}

struct temporary {
  temporary() {
    std::string name = testing::TempDir() + "cf.XXXXXX";
    path = mkdtemp(name.data());
  }
  ~temporary() {
    for (const char *name : {"/a", "/b", "/link"})
      std::remove((path + name).c_str());
    std::remove(path.c_str());
  }
  std::string path;
};

std::string bytes(const std::string &path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Interface, Saving) {
  const temporary folder;
  const std::string a = folder.path + "/a", b = folder.path + "/b", link = folder.path + "/link";
  std::ofstream(a) << "# about\nworkers = 1\n\nhost x {\n  addr = y\n\n  # of p\n  port = 1\n}\n";
  ASSERT_EQ(chmod(a.c_str(), 0640), 0);
  ASSERT_EQ(symlink("a", link.c_str()), 0);
  cf::document doc = cf::load(a, rules);
  doc.set("workers", 2);
  doc.save(link);
  EXPECT_EQ(bytes(a), "# about\nworkers = 2\n\nhost x {\n  addr = y\n\n  # of p\n  port = 1\n}\n");
  struct stat about {};
  ASSERT_EQ(lstat(link.c_str(), &about), 0);
  EXPECT_TRUE(S_ISLNK(about.st_mode));
  ASSERT_EQ(stat(a.c_str(), &about), 0);
  EXPECT_EQ(about.st_mode & 0777, 0640U);
  doc.save(a); // what it wrote itself is no change

  const std::string saved = bytes(a);
  std::ofstream(a, std::ios::app) << "verbose = true\n";
  EXPECT_EQ(thrown([&] { doc.save(a); }),
            a + ": error: someone else changed the file since it was loaded");
  doc.save(a, {.overwrite = true});
  EXPECT_EQ(bytes(a), saved);
  EXPECT_EQ(thrown([&] { doc.save(b, 10); }), b + ": error: would have more than 10 bytes");
  EXPECT_EQ(thrown([&] { doc.save(folder.path + "/none/a"); }),
            folder.path +
                "/none/a: error: cannot create a file in its folder: " + std::strerror(ENOENT));
  EXPECT_EQ(thrown([&] { doc.save("/dev/null"); }), "/dev/null: error: is not a regular file");
  doc.group("host", "x").erase("addr");
  EXPECT_EQ(lines(doc.check()), a + ":4:1: error: host x.addr: required, but missing\n");
  EXPECT_EQ(thrown([&] { doc.save(b); }) + "\n", lines(doc.check()));
  cf::document damaged = cf::try_parse("workers", rules).document;
  EXPECT_EQ(thrown([&] { damaged.save(b); }),
            b + ": error: not saved: the document lacks what could not be read");
  EXPECT_NE(access(b.c_str(), F_OK), 0);
}

TEST(Interface, Changes) {
  const auto differences = [](const char *before, const char *after,
                              const cf::schema *schema = &rules) {
    std::string text;
    const auto read = [&](const char *it) {
      return schema ? cf::parse(it, *schema) : cf::parse(it);
    };
    const cf::document one = read(before), other = read(after);
    for (const cf::change &it : cf::changes(one, other))
      text += std::to_string(it.old_line) + " " + to_string(it) + '\n';
    return text;
  };
  EXPECT_EQ(differences("grace = 5m\nworkers = 4\nlevel = iNFO\nports = 1,2",
                        "ports = 0x1, 2\ngrace = 300s"),
            "");
  EXPECT_EQ(differences("grace = 5m", "grace = 300s", nullptr), "1 grace: 5m -> 300s (line 1)\n");
  EXPECT_EQ(
      differences("workers = 5\nmotto = a", "motto = A\n\nverbose = true"),
      "2 motto: a -> A (line 1)\n1 workers: removed 5 (line 1)\n0 verbose: added true (line 3)\n");
  EXPECT_EQ(differences("listen = a\nlisten = b", "listen = a\nlisten = c\nlisten = d"),
            "2 listen: b -> c (line 2)\n0 listen: added d (line 3)\n");
  EXPECT_EQ(
      differences(
          "host a {\n addr = x\n}\nhost b {\n addr = x\n}",
          "host c {\n addr = x\n}\nhost A {\n addr = x\n port = 22\n disk d {\n  path = p\n }\n}"),
      "0 host c: added (line 1)\n4 host b: removed (line 4)\n0 host A.disk d: added (line 7)\n");
  EXPECT_EQ(differences("zone z {\n ttl = 1s\n}\nzone z {\n ttl = 2s\n}",
                        "zone z {\n ttl = 1s\n}\nzone z {\n}"),
            "5 zone z.ttl: removed 2s (line 5)\n");
}

TEST(Interface, CarriageReturnsAreDropped) {
  const cf::document doc = cf::parse("# of k\r\nk = a\r\n\r\ng {\r\n}\r\n");
  EXPECT_EQ(doc.get<std::string>("k"), "a");
  EXPECT_EQ(doc.str(), "# of k\nk = a\n\ng {\n}\n");
}

TEST(Interface, SampleReadsBack) {
  const std::string sample = rules.sample();
  EXPECT_EQ(faults(sample), "");
  EXPECT_NE(sample.find("# Number of worker threads.\n# integer 1..256; default 4\nworkers = 4\n"),
            sample.npos);
  for (const char *part :
       {"# list of integer 1..65535, separated by ,; optional", "host example {",
        "  disk example {", "# duration 1s..1h; optional", "# size 1k..1G; optional"})
    EXPECT_NE(sample.find(part), sample.npos) << part;
  EXPECT_NE(rules.markdown().find("| `host NAME.disk NAME.path` | text | required |  |\n"),
            std::string::npos);
  const cf::schema needs{cf::key("p").as<point>(topoint).required()};
  EXPECT_EQ(thrown([&] { needs.sample(); }), "logic: schema: p: a sample needs an example()");
  const cf::schema has{cf::key("p").as<point>(topoint).required().example("1/2"),
                       cf::any(cf::key("x").integer(5).required()).at_least(2),
                       cf::one("example", cf::key("y").text().nonempty().required()).required()};
  EXPECT_EQ(faults(has.sample(), has), "") << has.sample();
  const cf::schema wordy{
      cf::key("q").text().otherwise("\"q\" # r"),
      cf::one("g", cf::key("k").text().help(std::string(5000, 'x') + std::string(99, ' ') + "y"))
          .required(),
      cf::each("h", cf::key("k").text().help("l\r\n\1")).at_least(2).many()};
  EXPECT_EQ(faults(wordy.sample(), wordy), "");
  EXPECT_NE(wordy.sample().find("# required\ng {\n"), std::string::npos);
  EXPECT_NE(wordy.markdown().find("| `h NAME` | group | at least 2, equal names allowed |  |\n"),
            std::string::npos);
}

TEST(Interface, SchemaRefusesContradictions) {
  const auto built = [](auto... entries) { return thrown([&] { cf::schema schema{entries...}; }); };
  using cf::key;
  EXPECT_EQ(built(key("a").integer(1, 5).otherwise(6)),
            "logic: schema: a: the default 6 is not in 1..5");
  EXPECT_EQ(built(key("a").text(), key("A").integer()), "logic: schema: A: occurs twice");
  EXPECT_EQ(built(cf::one("g"), cf::one("g")), "logic: schema: g: occurs twice");
  EXPECT_EQ(built(cf::any(), cf::any()), "logic: schema: any: occurs twice");
  EXPECT_EQ(built(key("g").text(), cf::one("g"), cf::each("g")), "");
  EXPECT_EQ(built(key("a").integer(5, 1)), "logic: schema: a: the range is empty");
  EXPECT_EQ(built(key("a").bytes(-5, -1)), "logic: schema: a: the range is below zero");
  EXPECT_EQ(built(key("a").text().required().otherwise("x")),
            "logic: schema: a: required, but with a default");
  EXPECT_EQ(built(key("a").text().required().deprecated("no")),
            "logic: schema: a: required, but deprecated");
  EXPECT_EQ(built(key("a").words({"x", "X"})), "logic: schema: a: a word occurs twice");
  EXPECT_EQ(built(key("a").words({"x"}).otherwise("y")),
            "logic: schema: a: the default \"y\" is not one of x");
  EXPECT_EQ(built(key("a-b").text()),
            "logic: schema: a-b: a key consists of letters, digits and underscores");
  EXPECT_EQ(built(key("a").duration().example("5")),
            "logic: schema: a: the example \"5\" has no unit: d, h, m, s or ms");
  EXPECT_EQ(built(key("a").text().nonempty().otherwise("")),
            "logic: schema: a: the default must not be empty");
  EXPECT_EQ(built(key("a").text().many().list()), "logic: schema: a: either many values or a list");
}

/// Uses all parts of the interface.
void everything(const std::string &folder) {
  const cf::schema schema{cf::key("a").integer().list(), cf::key("p").as<point>(topoint),
                          cf::each("g", cf::key("b").text().required())};
  cf::result bad = cf::try_parse("a = 1,x\nb\nc = 3\nq-q {\n}\ng y {\n}\n", schema, {.limit = 3});
  EXPECT_EQ(bad.diagnostics.size(), 4U);
  cf::document doc = cf::parse("# r\na = 1, 2\n# s\ng x {\n  b = c\n}\n", schema),
               other = cf::parse("a = 2");
  EXPECT_EQ(doc.values<int>("a").size(), 2U);
  doc.catalog();
  doc.set("a", "1,2,3");
  doc.add_group("g", "y").set("b", "d");
  doc.group("g", "x").erase("b");
  doc.group("g", "x").set("b", "e");
  EXPECT_EQ(doc.index("g").size(), 2U);
  EXPECT_FALSE(doc.group("g", "z"));
  EXPECT_EQ(cf::changes(doc, other).size(), 3U);
  EXPECT_FALSE(schema.sample().empty());
  doc.save(folder + "/a");
  EXPECT_EQ(cf::load(folder + "/a", schema).str(), doc.str());
}

TEST(Interface, ExhaustedMemoryLeaksNothing) {
  const temporary folder;
  everything(folder.path);
  struct cfmmgr mine = {allocate, release};
  const struct cfmmgr former = cfmmgr(&mine);
  const long before = live;
  bool done = false;
  long n = 0;
  for (; !done; ++n) {
    until_failure = n;
    try {
      everything(folder.path);
      done = true;
    } catch (const std::bad_alloc &) {
    } catch (const cf::error &) {
    }
    until_failure = -1;
    ASSERT_EQ(live, before) << "allocation " << n;
  }
  EXPECT_GT(n, 50);
  cfmmgr(&former);
}

TEST(Interface, FailedEditsLeaveTheDocumentWhole) {
  struct cfmmgr mine = {allocate, release};
  const struct cfmmgr former = cfmmgr(&mine);
  {
    const auto fresh = [] {
      return cf::parse("listen = a\nlisten = b\nhost x {\n  addr = y\n}\n", rules);
    };
    void (*const edits[])(cf::document &) = {[](cf::document &d) { d.set("listen", "c"); },
                                             [](cf::document &d) { d.add("listen", "c"); },
                                             [](cf::document &d) { d.set("motto", "c"); },
                                             [](cf::document &d) { d.erase("listen"); },
                                             [](cf::document &d) { d.add_group("host", "z"); },
                                             [](cf::document &d) { d.group("host", "x").erase(); }};
    for (const auto edit : edits)
      for (const bool catalog : {false, true})
        for (long n = 0;; ++n) {
          cf::document doc = fresh();
          if (catalog)
            doc.catalog();
          const std::string before = doc.str();
          until_failure = n;
          try {
            edit(doc);
            until_failure = -1;
            break;
          } catch (const std::bad_alloc &) {
          }
          until_failure = -1;
          ASSERT_EQ(doc.str(), before);
        }
  }
  cfmmgr(&former);
}

TEST(Interface, FunctionsOfTheProgramMayThrow) {
  const cf::schema schema{cf::key("a").as<int>([](std::string_view text) -> int {
    if (text == "boom")
      throw 5;
    return static_cast<int>(text.size());
  })};
  EXPECT_EQ(cf::parse("a = four", schema).get<int>("a"), 4);
  EXPECT_THROW(cf::try_parse("a = boom", schema), int);
}

TEST(Interface, DepthAndWidthCostNoStack) {
  constexpr std::size_t count = 100'000;
  std::string nested, wide, unclosed, stray, heads;
  for (std::size_t i = 0; i < count; ++i) {
    nested += "g {\n";
    wide += "h a {\n}\n";
  }
  for (std::size_t i = 0; i < count / 10; ++i) {
    unclosed += "g {\n";
    stray += "a = 1\n}\n";
    heads += "g-g {\n";
  }
  for (std::size_t i = 0; i < count; ++i)
    nested += "}\n";
  const cf::schema schema{cf::one("g", cf::one("g", cf::key("a").text())), cf::each("h").many()};
  kit::on_small_stack([&] {
    for (const std::string *text : {&nested, &wide, &unclosed, &stray, &heads})
      for (const cf::schema *by : {&schema, static_cast<const cf::schema *>(nullptr)}) {
        cf::result read = by ? cf::try_parse(*text, *by) : cf::try_parse(*text);
        EXPECT_TRUE(cf::changes(read.document, read.document).empty());
        read.document.catalog();
        EXPECT_EQ(read.document.groups("h").empty(), text != &wide);
      }
    cf::document deep = cf::parse(nested);
    cf::group at = deep["g"];
    for (int i = 0; i < 1000; ++i)
      at = at["g"];
    at.set("a", 1);
    EXPECT_EQ(thrown([&] { at.get<bool>("a"); }),
              "error: ...g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.a: \"1\" is not a boolean: true "
              "or false");
    EXPECT_EQ(thrown([&] { deep.save("/tmp/none"); }),
              "2047:1: error: ...g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g.g: the line would have more "
              "than 4094 bytes");
  });
}

TEST(Interface, CostIsNotSquare) {
  std::string hosts, keys;
  for (int i = 0; i < 100'000; ++i) {
    hosts += "host h" + std::to_string(i % 99'999) + " {\n  addr = x\n  adr = y\n}\n";
    (keys += 'k') += std::to_string(i) + " = x\n";
  }
  cf::result read = cf::try_parse(hosts, rules);
  EXPECT_EQ(read.diagnostics.size(), 101U);
  EXPECT_EQ(read.diagnostics.back().message, "and 99901 more");
  EXPECT_EQ(cf::try_parse(keys, rules).diagnostics.back().message, "and 99900 more");
  const cf::index index = read.document.index("host");
  for (int i = 0; i < 99'999; ++i)
    ASSERT_TRUE(index.find(std::string("H").append(std::to_string(i))));
  for (int i = 0; i < 20'000; ++i) { // in another group after each addition; the name is free again
    const cf::group host = read.document.add_group("host", "new");
    host.add_group("disk", "root");
    host.erase();
  }
}

TEST(Interface, ThreadsLoadAndReadAtOnce) {
  const cf::document doc = cf::parse("workers = 3\n", rules);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int round = 0; round < 200; ++round) {
        EXPECT_EQ(doc.get<int>("workers"), 3);
        EXPECT_EQ(doc.error("workers", "x").diagnostics()[0].column, 11);
        EXPECT_EQ(cf::try_parse("a\nworkers = 9", rules).document.get<int>("workers"), 9);
      }
    });
  for (std::thread &it : threads)
    it.join();
}

TEST(Interface, MessagesOfTheProgramAreNotTouched) {
  struct cfmsgs mine = {nullptr, nullptr, [](const char *) { std::abort(); }};
  const struct cfmsgs former = cfmsgs(&mine);
  testing::internal::CaptureStderr();
  static_cast<void>(cf::try_parse("x\n}\n", rules));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  const struct cfmsgs now = cfmsgs(&former);
  EXPECT_EQ(now.fail, mine.fail);
  EXPECT_EQ(now.emsg, nullptr);
}

} // namespace
