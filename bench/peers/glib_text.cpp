#include <glib.h>

#include <memory>

#include "bench/text_bench.h"

namespace zebcomn_bench {
namespace {

struct Free {
  void operator()(gpointer memory) const { g_free(memory); }
};

template <typename Text>
struct ToWide {
  static void Measure(benchmark::State& state) {
    MeasureToWide<Text>(state, [](const std::string& narrow) {
      glong written = 0;
      const std::unique_ptr<gunichar, Free> wide(
          g_utf8_to_ucs4(narrow.c_str(), -1, nullptr, &written, nullptr));
      return static_cast<std::size_t>(written);
    });
  }
};

template <typename Text>
struct ToUtf8 {
  static void Measure(benchmark::State& state) {
    MeasureToUtf8<Text>(state, [](const std::wstring& wide) {
      glong written = 0;
      const std::unique_ptr<gchar, Free> narrow(g_ucs4_to_utf8(
          reinterpret_cast<const gunichar*>(wide.c_str()), -1, nullptr, &written, nullptr));
      return static_cast<std::size_t>(written);
    });
  }
};

const bool g_registered = (RegisterConversions<ToWide, ToUtf8>("glib"), true);

bool Match(const char* pattern, const char* name) {
  return g_pattern_match_simple(pattern, name) != FALSE;
}

void WorstCase(benchmark::State& state) {
  MeasureWorstCase(state, Match);
}
BENCHMARK(WorstCase)->Name("wildcard_worst_case/glib")->ArgName("characters")->Arg(1 << 12);

void ManyStars(benchmark::State& state) {
  MeasureManyStars(state, Match);
}
BENCHMARK(ManyStars)->Name("wildcard_many_stars/glib")->ArgName("characters")->Arg(256);

}  // namespace
}  // namespace zebcomn_bench
