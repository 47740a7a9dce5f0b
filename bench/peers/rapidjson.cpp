// RapidJSON: JSON in C++, from a pool.
// SPDX-License-Identifier: MIT
#include "peers/peer.h"

#include <rapidjson/document.h>
#include <rapidjson/filereadstream.h>
#include <rapidjson/filewritestream.h>
#include <rapidjson/prettywriter.h>

#include <optional>

namespace bench {
namespace {

class Rapidjson {
public:
  static constexpr const char *name = "RapidJSON";
  static constexpr Syntax syntax = Syntax::json;

  explicit Rapidjson(const Shape &) {}

  bool readfile(const std::string &file) {
    std::FILE *fd = std::fopen(file.c_str(), "rb");
    char buffer[buffer_size];
    rapidjson::FileReadStream stream(fd, buffer, sizeof buffer);
    document.emplace().ParseStream(stream);
    std::fclose(fd);
    return !document->HasParseError();
  }
  bool readmemory(const std::string &text) {
    document.emplace().Parse(text.data(), text.size());
    return !document->HasParseError();
  }
  long get(const Route &route) { return find(route).GetInt(); }
  void set(const Route &route, long value) { find(route).SetInt(static_cast<int>(value)); }
  void print(std::FILE *fd) {
    char buffer[buffer_size];
    rapidjson::FileWriteStream stream(fd, buffer, sizeof buffer);
    rapidjson::PrettyWriter<rapidjson::FileWriteStream> writer(stream);
    document->Accept(writer);
    stream.Flush();
  }
  void clear() { document.reset(); }

private:
  rapidjson::Value &find(const Route &route) {
    rapidjson::Value *at = &*document;
    for (const std::string &step : route.path)
      at = &(*at)[step.c_str()];
    return *at;
  }

  static constexpr std::size_t buffer_size = 65536;
  std::optional<rapidjson::Document> document;
};

[[maybe_unused]] const bool added = addpeer<Rapidjson>();

} // namespace
} // namespace bench
