// Flattening: the ".." and "." of a path taken away by its text alone. No system call is required,
// so there is no floor.
#include "bench/path_bench.h"

#include "zebcomn/util/filenameflattener.h"

namespace zebcomn_bench {
namespace {

void Flatten_Zebcomn(benchmark::State& state) {
  MeasureFlatten(state, [](const std::string& path) {
    FileNameFlattener flattener(path, "/base");
    benchmark::DoNotOptimize(flattener);
  });
}
BENCHMARK(Flatten_Zebcomn)
    ->Name("path_flatten/zebcomn")
    ->Apply(Components)
    ->Arg(64)
    ->Arg(1 << 13)
    ->Arg(1 << 17);

}  // namespace
}  // namespace zebcomn_bench
