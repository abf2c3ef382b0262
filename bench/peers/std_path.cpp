#include <filesystem>

#include "bench/path_bench.h"

namespace zebcomn_bench {
namespace {

void Flatten(benchmark::State& state) {
  MeasureFlatten(state, [](const std::string& path) {
    benchmark::DoNotOptimize(std::filesystem::path(path).lexically_normal());
  });
}
BENCHMARK(Flatten)->Name("path_flatten/std")->Apply(Components);

}  // namespace
}  // namespace zebcomn_bench
