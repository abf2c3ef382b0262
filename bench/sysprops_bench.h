#ifndef ZEBCOMN_BENCH_SYSPROPS_BENCH_H_
#define ZEBCOMN_BENCH_SYSPROPS_BENCH_H_

// What sysprops_bench and its peers share.

#include <benchmark/benchmark.h>

#include "bench/support/private_view.h"

namespace zebcomn_bench {

using Benchmark = benchmark::internal::Benchmark;

/// Measures `call()` on a machine of state.range(0) processors.
template <typename Call>
void MeasureWithProcessors(benchmark::State& state, Call call) {
  const PrivateView view = PrivateView::OfProcessors(static_cast<int>(state.range(0)));
  if (!view.WhyNot().empty()) return state.SkipWithError(("left out: " + view.WhyNot()).c_str());
  for (auto _ : state) call();
}

inline void Processors(Benchmark* one) {
  one->ArgName("processors")->Arg(256);
}

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_SYSPROPS_BENCH_H_
