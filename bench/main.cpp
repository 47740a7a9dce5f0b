// The benchmark: every operation on every shape, named Operation/library/shape.
// SPDX-License-Identifier: MIT
#include "operations.h"
#include "verify.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>

#include <malloc.h>

namespace {

using namespace bench;

constexpr std::array shapes = {"typical", "wide", "deep"};

constexpr std::array sizes = {1000, 10000, 100000, 1000000};

// What is measured on the crowded shape: making a text ready for look-ups. For cf that is Load; the
// other libraries are ready after ReadMemory.
constexpr std::array crowded_operations = {"Load", "ReadMemory"};
constexpr std::array crowded_libraries = {"cf", "nlohmann-json", "toml++", "libconfig"};

/// Times `work` alone: preparing and clearing stay off the clock. Gives the least time of all
/// rounds, since what else runs on the machine can only add to it.
double timed(benchmark::State &state, const Task &task, std::size_t repeats) {
  using clock = std::chrono::steady_clock;
  double least = std::numeric_limits<double>::max();
  for ([[maybe_unused]] auto _ : state) {
    if (task.prepare)
      task.prepare();
    const auto begin = clock::now();
    for (std::size_t i = 0; i < repeats; ++i)
      task.work();
    const std::chrono::duration<double> took = clock::now() - begin;
    if (task.clear)
      task.clear();
    state.SetIterationTime(took.count());
    least = std::min(least, took.count() / static_cast<double>(repeats));
  }
  return least;
}

void run(benchmark::State &state, const Operation &operation, const std::string &name) {
  const Shape &content = shape(name);
  const Task task = operation.make(content);
  const bool brief = content.elements < 1000 && !task.prepare && !task.clear;
  const double least = timed(state, task, brief ? 32 : 1); // reading the clock takes time as well
  const std::size_t units = task.units ? task.units : content.elements;
  state.counters["ns"] = least * 1e9 / static_cast<double>(units); // per element or unit
}

void list(const Operation &operation, const std::string &name) {
  auto *entry =
      benchmark::RegisterBenchmark((operation.name + "/" + operation.library + "/" + name).c_str(),
                                   [&operation, name](auto &state) { run(state, operation, name); })
          ->UseManualTime();
  // A library with a pool deletes so fast that the benchmark would repeat it millions of times, and
  // read before each time.
  if (operation.name == "Delete")
    entry->Iterations(name == "typical" ? 10000 : 20);
}

/// Keeps released memory in the process. Otherwise it depends on the last block of the heap whether
/// a round begins with fresh pages, which the kernel clears while the clock runs.
void keepmemory() {
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  mallopt(M_MMAP_MAX, 0);
}

} // namespace

int main(int argc, char **argv) {
  keepmemory();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  for (const char *shape : shapes)
    verify(bench::shape(shape));
  for (const Operation &operation : operations()) {
    for (const char *shape : shapes)
      list(operation, shape);
    const bool crowded = std::ranges::count(crowded_operations, operation.name) > 0 &&
                         std::ranges::count(crowded_libraries, operation.library) > 0;
    for (const int size : sizes) {
      if (operation.scales)
        list(operation, "scale:" + std::to_string(size));
      // The time of libconfig grows with the square of the size.
      if (crowded && (operation.library != "libconfig" || size <= 10000))
        list(operation, "crowded:" + std::to_string(size));
    }
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
