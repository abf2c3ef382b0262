#include <glib.h>

#include "bench/path_bench.h"

namespace zebcomn_bench {
namespace {

void Flatten(benchmark::State& state) {
  MeasureFlatten(state, [](const std::string& path) {
    char* const flat = g_canonicalize_filename(path.c_str(), "/base");
    benchmark::DoNotOptimize(flat);
    g_free(flat);
  });
}
BENCHMARK(Flatten)->Name("path_flatten/glib")->Apply(Components);

}  // namespace
}  // namespace zebcomn_bench
