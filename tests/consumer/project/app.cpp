// app: checks a file against a schema and reads a value, as a C++ program does. The library is
// built without run-time types; a program that uses it has them.
// SPDX-License-Identifier: MIT
#include <cf.hpp>
#include <typeinfo>

int main() {
  const cf::schema schema{cf::each("host", cf::key("port").integer(1, 65535))};
  const cf::document doc = cf::parse("host alpha {\n  port = 80\n}\n", schema);
  return doc.group("host", "alpha").get<int>("port") == 80 && *typeid(doc).name() ? 0 : 1;
}
