#include <fnmatch.h>

#include <codecvt>
#include <locale>

#include "bench/text_bench.h"

namespace zebcomn_bench {
namespace {

using Conversion = std::wstring_convert<std::codecvt_utf8<wchar_t>>;

template <typename Text>
struct ToWide {
  static void Measure(benchmark::State& state) {
    MeasureToWide<Text>(
        state, [](const std::string& narrow) { return Conversion().from_bytes(narrow).size(); });
  }
};

template <typename Text>
struct ToUtf8 {
  static void Measure(benchmark::State& state) {
    MeasureToUtf8<Text>(
        state, [](const std::wstring& wide) { return Conversion().to_bytes(wide).size(); });
  }
};

const bool g_registered = (RegisterConversions<ToWide, ToUtf8>("std"), true);

// The C library's match.
bool Match(const char* pattern, const char* name) {
  return fnmatch(pattern, name, 0) == 0;
}

void WorstCase(benchmark::State& state) {
  MeasureWorstCase(state, Match);
}
BENCHMARK(WorstCase)->Name("wildcard_worst_case/std")->ArgName("characters")->Arg(1 << 12);

void ManyStars(benchmark::State& state) {
  MeasureManyStars(state, Match);
}
BENCHMARK(ManyStars)->Name("wildcard_many_stars/std")->ArgName("characters")->Arg(256);

}  // namespace
}  // namespace zebcomn_bench
