// supply: what an application gives to the library: texts, evaluators, definitions, filters.
// SPDX-License-Identifier: MIT
#include "supply.h"

#include "fuzz.h"

#include <cstring>

namespace fuzz {

int evsized(const char *val, void *vval) {
  called_out();
  if (!val || *val == 'x')
    return -1;
  const size_t size = std::strlen(val) * 5 + 1;
  if (vval)
    std::memset(vval, *val, size);
  return vval && *val == 'F' ? -1 : static_cast<int>(size);
}

bool takes(cfeval_t eval, const char *text) {
  std::string storage(std::strlen(text) * 5 + 32, '\0');
  return eval == cfevstr || eval(text, storage.data()) >= 0;
}

cfscope *scopedef(const char *scope) {
  called_out();
  static cfscope definition;
  const size_t length = std::strlen(scope);
  definition.eval = length % 7 ? evaluators[length % evaluators.size()] : nullptr;
  definition.multi = length % 3 == 0;
  return length % 5 ? &definition : nullptr;
}

int chkscope(const char *scope) {
  called_out();
  return std::strlen(scope) % 5 != 0;
}

const char *name(size_t choice) {
  static const std::string longer(1200, 'k');
  const std::array<const char *, 8> names = {"a", "A", "b", "ab", "", nullptr, "B", longer.c_str()};
  return names[choice % names.size()];
}

const char *value(size_t choice) {
  static constexpr std::array<const char *, 8> values = {"1",   "true", "x", "-0x10",
                                                         "1.5", "F",    "",  "a longer value"};
  return values[choice % values.size()];
}

const char *file(size_t choice) {
  static constexpr std::array<const char *, 5> files = {
      "# r\n# s\na b {\n  # t\n  k = 1\n  k = x\n}\nb = F\n",
      "a {\na b {\nb a {\n}\n}\n}\nA = 1\n",
      "# r\n\nk = v\n# s\nK = true\n",
      "a {\n# r\n# s\n}\n",
      "a {\nfault\nk = 1\n# r\nk = 2\n",
  };
  return files[choice % files.size()];
}

} // namespace fuzz
