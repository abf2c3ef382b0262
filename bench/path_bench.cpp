// Flattening: its time grows in proportion to the length of the path.
#include <benchmark/benchmark.h>

#include <string>

#include "zebcomn/util/filenameflattener.h"

namespace {

/// A path of so many components, half of them taken away again.
std::string UpAndDown(int64_t components) {
  std::string path;
  for (int64_t i = 0; i < components / 2; ++i) path += "/component";
  for (int64_t i = 0; i < components / 2; ++i) path += "/..";
  return path;
}

void BM_Flatten(benchmark::State& state) {
  const std::string path = UpAndDown(state.range(0));
  for (auto unused : state) {
    FileNameFlattener flattener(path, "/base");
    benchmark::DoNotOptimize(flattener);
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_Flatten)->RangeMultiplier(8)->Range(8, 1 << 18)->Complexity(benchmark::oN);

}  // namespace

BENCHMARK_MAIN();
