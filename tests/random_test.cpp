// Runs the fuzz targets on the files of their corpus, unchanged and with random changes.
// SPDX-License-Identifier: MIT
#include "oracles.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>

namespace {

using std::string;

struct target {
  const char *name;
  void (*run)(std::string_view bytes);
};

void PrintTo(const target &it, std::ostream *out) { *out << it.name; }

class Fuzz : public testing::TestWithParam<target> {};

TEST_P(Fuzz, KeepsItsPromises) {
  const auto folder = std::filesystem::path(CF_CORPUS) / GetParam().name;
  std::vector<std::filesystem::path> files;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    files.push_back(entry);
  std::ranges::sort(files);
  const char *rounds = std::getenv("CF_ROUNDS");
  for (size_t n = 0; n < files.size() + (rounds ? std::strtoul(rounds, nullptr, 10) : 1000); ++n) {
    const auto &path = files[n % files.size()];
    std::ifstream file(path, std::ios::binary);
    string bytes(std::istreambuf_iterator<char>(file), {});
    std::mt19937 rng(static_cast<unsigned>(n));
    const size_t size = bytes.size(), changes = n < files.size() ? 0 : rng() % (size + 1);
    for (size_t i = 0; i < (n % 2 ? changes : changes % 8); ++i)
      bytes[rng() % size] = rng() % 4 ? static_cast<char>(rng()) : bytes[rng() % size];
    try {
      GetParam().run(bytes);
    } catch (const std::exception &broken) {
      FAIL() << path << ", round " << n << ": not kept: " << broken.what();
    }
  }
}

constexpr target targets[] = {{"read", fuzz::read},
                              {"check", fuzz::check},
                              {"edit", fuzz::edit},
                              {"document", fuzz::document}};
INSTANTIATE_TEST_SUITE_P(Target, Fuzz, testing::ValuesIn(targets),
                         [](const auto &test) { return test.param.name; });

} // namespace
