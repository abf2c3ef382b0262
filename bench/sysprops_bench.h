#ifndef ZEBCOMN_BENCH_SYSPROPS_BENCH_H_
#define ZEBCOMN_BENCH_SYSPROPS_BENCH_H_

// What sysprops_bench and its peers share.

#include <benchmark/benchmark.h>

#include "bench/support/private_view.h"

namespace zebcomn_bench {

using Benchmark = benchmark::internal::Benchmark;

/// Measures `call()` in a view of the machine such as PrivateView::OfProcessors makes, of size
/// state.range(0).
template <typename Call>
void MeasureInView(benchmark::State& state, PrivateView (*make)(int), Call call) {
  const PrivateView view = make(static_cast<int>(state.range(0)));
  if (!view.WhyNot().empty()) return state.SkipWithError(("left out: " + view.WhyNot()).c_str());
  for (auto _ : state) call();
}

inline void Processors(Benchmark* one) {
  one->ArgName("processors")->Arg(256);
}

inline void Mounts(Benchmark* one) {
  one->ArgName("entries")->Arg(10)->Arg(100)->Arg(1000);
}

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_SYSPROPS_BENCH_H_
