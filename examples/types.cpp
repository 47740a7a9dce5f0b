// types: keys of all types, a type of the program's own, a check of its own. Use: types FILE
// SPDX-License-Identifier: MIT
#include <cf.hpp>

#include <arpa/inet.h>
#include <iostream>

namespace {

//! [custom]
/// An IPv4 address: the value, or the reason why the text is none.
cf::outcome<in_addr> to_address(const char *text) {
  in_addr address{};
  if (inet_pton(AF_INET, text, &address) == 1)
    return address;
  return cf::refused("not an IPv4 address");
}
//! [custom]

//! [schema]
enum class colour { red, green, blue };

const cf::schema schema{
    cf::key("title").text().nonempty(),
    cf::key("ports").integer(1, 65535).list(','),
    cf::key("ratio").real(0, 1).otherwise(0.5),
    cf::key("colour").words<colour>(
        {{"red", colour::red}, {"green", colour::green}, {"blue", colour::blue}}),
    cf::key("cache").bytes(0, 1 << 30).otherwise(4096),
    cf::key("idle").duration(),
    cf::key("address").as<in_addr>(to_address),
    cf::key("low").integer(0, 100).otherwise(0),
    cf::key("high").integer(0, 100).otherwise(100),
    cf::each("upstream", cf::key("weight").integer(0, 100).otherwise(1))
        .names(cf::names::hosts)
        .at_least(1),
};
//! [schema]

//! [error]
/// A rule that no schema can say: the program checks it after the load.
void check(cf::document &doc) {
  if (doc.get<int>("low") > doc.get<int>("high"))
    throw doc.error("low", "must not be greater than high");
}
//! [error]

//! [values]
void show(cf::document &doc) {
  std::cout << "title: " << doc.get<std::string>("title") << '\n';
  for (int port : doc.values<int>("ports"))
    std::cout << "port: " << port << '\n';
  std::cout << "ratio: " << doc.get<double>("ratio") << '\n';
  if (doc.get<colour>("colour") == colour::blue)
    std::cout << "colour: blue\n";
  std::cout << "cache: " << doc.get<std::size_t>("cache") << " bytes\n";
  if (auto idle = doc.find<std::chrono::minutes>("idle")) // nothing if the file does not have it
    std::cout << "idle: " << idle->count() << " minutes\n";
  std::cout << "address: " << ntohl(doc.get<in_addr>("address").s_addr) << '\n';
  for (cf::group up : doc.groups("upstream"))
    std::cout << "upstream: " << up.name() << ", weight " << up.get<int>("weight") << '\n';
}
//! [values]

} // namespace

int main(int argc, char **argv) try {
  cf::document doc = cf::load(argc > 1 ? argv[1] : "types.conf", schema);
  check(doc);
  show(doc);
  doc.set("high", 5);
  check(doc);
} catch (const cf::error &e) {
  for (const cf::diagnostic &d : e.diagnostics())
    std::cerr << d << '\n';
  return 1;
}
