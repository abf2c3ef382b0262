#include <Poco/Path.h>

#include "bench/path_bench.h"

namespace zebcomn_bench {
namespace {

void Flatten(benchmark::State& state) {
  MeasureFlatten(state, [](const std::string& path) {
    benchmark::DoNotOptimize(Poco::Path(path).toString());
  });
}
BENCHMARK(Flatten)->Name("path_flatten/poco")->Apply(Components);

}  // namespace
}  // namespace zebcomn_bench
