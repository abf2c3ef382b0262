#ifndef ZEBCOMN_BENCH_PATH_BENCH_H_
#define ZEBCOMN_BENCH_PATH_BENCH_H_

#include <benchmark/benchmark.h>

#include <string>

namespace zebcomn_bench {

using Benchmark = benchmark::internal::Benchmark;

/// `flatten(path)` of a path of state.range(0) components, the second half of which takes the first
/// away again.
template <typename Call>
void MeasureFlatten(benchmark::State& state, Call flatten) {
  std::string path;
  for (int64_t i = 0; i < state.range(0) / 2; ++i) path += "/component";
  for (int64_t i = 0; i < state.range(0) / 2; ++i) path += "/..";
  for (auto _ : state) flatten(path);
}

inline void Components(Benchmark* one) {
  one->ArgName("components")->Arg(512);
}

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_PATH_BENCH_H_
