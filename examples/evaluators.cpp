// evaluators: types of one's own: a duration with units, an address, a number with a point in every
// locale.
// SPDX-License-Identifier: MIT
#include <cf.h>

#include <arpa/inet.h>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace {

//! [evaluator]
/// An evaluator out of a function that makes a T of a text, or nothing if the text is not valid.
/// For any T that may be copied byte by byte and needs no destructor.
template <class T, std::optional<T> (*convert)(const char *)>
int evaluator(const char *val, void *vval) {
  if (val) {
    const std::optional<T> value = convert(val);
    if (!value)
      return -1;
    if (vval)
      new (vval) T(*value);
  }
  return sizeof(T);
}

/// The getter that goes with it.
template <class T> const T &value(const cfparam *par) { return *static_cast<const T *>(par->vval); }
//! [evaluator]

//! [duration]
/// "1h30m": numbers with the units d, h, m and s, the larger first.
std::optional<std::chrono::seconds> toduration(const char *text) {
  constexpr std::string_view units = "dhms";
  constexpr long seconds[] = {86400, 3600, 60, 1};
  const char *const end = text + std::strlen(text);
  std::chrono::seconds sum{};
  size_t next = 0; // the first unit that may still come
  do {
    unsigned number = 0;
    const auto [rest, error] = std::from_chars(text, end, number);
    const size_t unit = rest == end ? std::string_view::npos : units.find(*rest, next);
    if (error != std::errc() || unit == std::string_view::npos)
      return std::nullopt;
    sum += number * std::chrono::seconds(seconds[unit]);
    next = unit + 1;
    text = rest + 1;
  } while (text != end);
  return sum;
}
constexpr cfeval_t evduration = evaluator<std::chrono::seconds, toduration>;
//! [duration]

//! [address]
std::optional<in_addr> toaddress(const char *text) {
  in_addr address{};
  return inet_pton(AF_INET, text, &address) == 1 ? std::optional(address) : std::nullopt;
}
constexpr cfeval_t evaddress = evaluator<in_addr, toaddress>;
//! [address]

//! [number]
/// As cfevflt() reads numbers, but with a point whatever the locale, and none out of range.
std::optional<double> tonumber(const char *text) {
  double number = 0;
  const char *const end = text + std::strlen(text);
  const auto [rest, error] = std::from_chars(text, end, number);
  return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}
constexpr cfeval_t evnumber = evaluator<double, tonumber>;
//! [number]

struct deleting {
  void operator()(cfparam *par) const { cfdelpar(par); }
};

/// Evaluates each text and shows what came of it.
template <class Show>
void show(cfeval_t eval, std::initializer_list<const char *> texts, Show shown) {
  for (const char *text : texts) {
    const std::unique_ptr<cfparam, deleting> par(cfnewpar("key", text, -1));
    const bool valid = cfevalpar(par.get(), eval);
    std::printf("  %-20s %s\n", text, valid ? shown(par.get()).c_str() : "refused");
  }
}

} // namespace

int main() {
  std::puts("durations");
  show(evduration,
       {"90s", "1h30m", "14d", "4294967295d23h", "30", "5m1h", "m", "-5s", "4294967296s"},
       [](const cfparam *par) {
         return std::to_string(value<std::chrono::seconds>(par).count()) + " s";
       });
  std::puts("addresses");
  show(evaddress, {"192.0.2.10", "255.255.255.255", "192.0.2", "192.0.2.256", "host"},
       [](const cfparam *par) { return std::to_string(ntohl(value<in_addr>(par).s_addr)); });
  std::puts("numbers");
  show(evnumber, {"1.5", "-1e3", "1,5", "1.5x", "1e999", ""},
       [](const cfparam *par) { return std::to_string(value<double>(par)); });
}
