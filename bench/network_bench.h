#ifndef ZEBCOMN_BENCH_NETWORK_BENCH_H_
#define ZEBCOMN_BENCH_NETWORK_BENCH_H_

// The work of network_bench, the same for the library, the floor and each peer.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdlib>

#include "bench/support/private_view.h"

namespace zebcomn_bench {

using Benchmark = benchmark::internal::Benchmark;

/// The sizes that every subject is measured with.
constexpr int64_t kFewAddresses = 3;
constexpr int64_t kManyAddresses = 200;

/// `enumerate()` gives the number of addresses found, those of the loopback interface not counted.
template <typename Call>
void MeasureInterfaces(benchmark::State& state, Call enumerate) {
  const PrivateView view = PrivateView::OfAddresses(static_cast<int>(state.range(0)));
  if (!view.WhyNot().empty()) return state.SkipWithError(("left out: " + view.WhyNot()).c_str());
  if (enumerate() != static_cast<std::size_t>(state.range(0))) {
    return state.SkipWithError("the number of addresses is wrong");
  }
  for (auto _ : state) enumerate();
}

inline void Addresses(Benchmark* one) {
  one->ArgName("addresses")->Arg(kFewAddresses)->Arg(kManyAddresses);
}

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_NETWORK_BENCH_H_
