#include <boost/filesystem.hpp>

#include "bench/path_bench.h"

namespace zebcomn_bench {
namespace {

void Flatten(benchmark::State& state) {
  MeasureFlatten(state, [](const std::string& path) {
    benchmark::DoNotOptimize(boost::filesystem::path(path).lexically_normal());
  });
}
BENCHMARK(Flatten)->Name("path_flatten/boost")->Apply(Components);

}  // namespace
}  // namespace zebcomn_bench
