#include <uv.h>

#include "bench/sysprops_bench.h"

namespace zebcomn_bench {
namespace {

/// Free and total memory.
void Memory(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(uv_get_total_memory());
    benchmark::DoNotOptimize(uv_get_free_memory());
  }
}
BENCHMARK(Memory)->Name("one_property_memory/libuv");

/// Model and speed of each processor; it reads "/proc/stat" and files under "/sys" too.
void Processor(benchmark::State& state) {
  for (auto _ : state) {
    uv_cpu_info_t* processors = nullptr;
    int count = 0;
    if (uv_cpu_info(&processors, &count) == 0) uv_free_cpu_info(processors, count);
  }
}
BENCHMARK(Processor)->Name("one_property_processor/libuv");

}  // namespace
}  // namespace zebcomn_bench
