// value: the evaluators against a reading of the same text that calls none of the C conversions.
// SPDX-License-Identifier: MIT
#include "fuzz.h"
#include "invariants.h"
#include "supply.h"

#include <array>
#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>

using fuzz::need;

namespace {

char lower(char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch; }

bool isdigit(char ch, int base) {
  const char low = lower(ch);
  return (low >= '0' && low <= '9') || (base == 16 && low >= 'a' && low <= 'f');
}

/// Drops what every number may begin with: white space and a sign. True if that is a minus.
bool cutsign(std::string_view &text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool minus = text.starts_with('-');
  if (minus || text.starts_with('+'))
    text.remove_prefix(1);
  return minus;
}

/// Drops 0x in front of what may follow it in a number of base 16.
bool cuthex(std::string_view &text, bool point) {
  const bool hex = text.size() > 2 && text[0] == '0' && lower(text[1]) == 'x' &&
                   (isdigit(text[2], 16) || (point && text[2] == '.'));
  if (hex)
    text.remove_prefix(2);
  return hex;
}

std::optional<long long> read_integer(std::string_view text) {
  const bool minus = cutsign(text);
  const bool hex = cuthex(text, false);
  const int base = hex ? 16 : text.starts_with('0') ? 8 : 10;
  unsigned long long digits = 0;
  const auto [end, fault] = std::from_chars(text.begin(), text.end(), digits, base);
  if (fault == std::errc::invalid_argument || end != text.end())
    return std::nullopt;
  const unsigned long long limit = minus ? 1ULL << 63 : LLONG_MAX;
  if (fault == std::errc::result_out_of_range || digits > limit)
    digits = limit;
  return static_cast<long long>(minus ? 0 - digits : digits);
}

std::optional<char> read_bool(std::string_view text) {
  std::string low(text);
  for (char &ch : low)
    ch = lower(ch);
  if (low != "true" && low != "false")
    return std::nullopt;
  return low == "true";
}

struct real {
  double value;
  bool exact; // else it is too large or too small
};

std::optional<real> read_real(std::string_view text) {
  const bool minus = cutsign(text);
  const bool hex = cuthex(text, true);
  if (text.starts_with('-')) // from_chars takes a sign of its own
    return std::nullopt;
  double value = 0;
  const auto [end, fault] = std::from_chars(
      text.begin(), text.end(), value, hex ? std::chars_format::hex : std::chars_format::general);
  if (fault == std::errc::invalid_argument || end != text.end())
    return std::nullopt;
  return real{minus ? -value : value, fault == std::errc()};
}

/// Asks an evaluator in its three ways; gives the value.
template <class Value> std::optional<Value> ask(cfeval_t eval, const char *text) {
  const int size = sizeof(Value);
  Value value = {};
  need(eval(nullptr, nullptr) == size, "an evaluator tells its size");
  const int valid = eval(text, nullptr);
  const int done = eval(text, &value);
  need(valid == done && (valid == size || valid == -1), "asked and done, the answer is the same");
  return valid == size ? std::optional<Value>(value) : std::nullopt;
}

bool agree(const std::optional<double> &got, const std::optional<real> &expected) {
  if (!got || !expected)
    return !got == !expected;
  if (!expected->exact)
    return std::isinf(*got) || std::fabs(*got) <= DBL_MIN;
  if (std::isnan(expected->value))
    return std::isnan(*got);
  return std::memcmp(&*got, &expected->value, sizeof(double)) == 0;
}

/// Sizes around that of the value buffer; a text with an F inside is refused only when it was
/// written.
template <int size> int evfixed(const char *val, void *vval) {
  if (val && vval)
    std::memset(vval, *val, size);
  return val && vval && std::strchr(val, 'F') ? -1 : size;
}
int evlength(const char *val, void *vval) {
  const size_t length = val ? std::strlen(val) : 0;
  if (val && vval)
    std::memcpy(vval, val, length);
  return val && *val != 'x' ? static_cast<int>(length) : -1;
}

constexpr std::array<cfeval_t, 9> evaluators = {
    cfevbool, cfevint, cfevintx, cfevflt, cfevstr, evfixed<16>, evfixed<17>, evlength, evfixed<1>};

/// Evaluation with one evaluator behind another, through a chain of references: the last that took
/// the text made the value.
void evaluate(const char *text, cfeval_t first, cfeval_t second) {
  cfparam *par = cfnewpar("key", text, 1);
  cfparam *ref = cfnewrefpar(par);
  cfparam *upper = cfnewrefpar(ref);
  cfeval_t made = nullptr;
  for (cfeval_t eval : {first, second}) {
    const bool taken = fuzz::takes(eval, text);
    need(cfevalpar(upper, eval) == taken, "a parameter is evaluated if the text is valid");
    made = taken ? eval : made;
    need(par->eval == made && upper->eval == made && ref->eval == made, "the last value is kept");
    need(par->vval == upper->vval && par->vval == ref->vval, "references show the value");
    fuzz::check_tree(&par->link);
  }
  cfparam *copy = cfduppar(par);
  need(copy->eval == made, "a copy is evaluated");
  need(cfunevalpar(upper) == upper && !par->vval && !ref->vval && !upper->eval,
       "a value is dropped");
  fuzz::check_tree(&copy->link);
  for (cfparam *it : {par, upper, ref, copy})
    cfdelpar(it);
  need(fuzz::live() == 0, "nothing is left");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::install_memory();
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  const char *text = bytes.c_str(); // ends with the first zero byte

  need(ask<char>(cfevbool, text) == read_bool(text), "a truth value");
  need(ask<long long>(cfevintx, text) == read_integer(text), "a long long");
  if (sizeof(long) == sizeof(long long))
    need(ask<long>(cfevint, text) == read_integer(text), "a long");
  need(agree(ask<double>(cfevflt, text), read_real(text)), "a double");
  need(cfevstr(nullptr, nullptr) == 0 && cfevstr(text, nullptr) == 0, "a text is its own value");
  for (size_t i = 0; i < evaluators.size(); ++i)
    evaluate(text, evaluators[i], evaluators[(i + size) % evaluators.size()]);
  return 0;
}
