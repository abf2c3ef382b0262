#include <apr_fnmatch.h>

#include "bench/text_bench.h"

namespace zebcomn_bench {
namespace {

bool Match(const char* pattern, const char* name) {
  return apr_fnmatch(pattern, name, 0) == APR_SUCCESS;
}

void WorstCase(benchmark::State& state) {
  MeasureWorstCase(state, Match);
}
BENCHMARK(WorstCase)->Name("wildcard_worst_case/apr")->ArgName("characters")->Arg(1 << 12);

void ManyStars(benchmark::State& state) {
  MeasureManyStars(state, Match);
}
BENCHMARK(ManyStars)->Name("wildcard_many_stars/apr")->ArgName("characters")->Arg(256);

}  // namespace
}  // namespace zebcomn_bench
