#include <winpr/crt.h>
#include <winpr/string.h>

#include "bench/text_bench.h"

// Its wide text is UTF-16, so that a character above U+FFFF takes two units.
namespace zebcomn_bench {
namespace {

template <typename Text>
struct ToWide {
  static void Measure(benchmark::State& state) {
    const Texts<Text> texts(state.range(0));
    for (auto _ : state) {
      WCHAR* wide = nullptr;
      Require(ConvertToUnicode(CP_UTF8, 0, texts.narrow.c_str(), -1, &wide, 0) > 0);
      free(wide);
    }
  }
};

template <typename Text>
struct ToUtf8 {
  static void Measure(benchmark::State& state) {
    const Texts<Text> texts(state.range(0));
    WCHAR* wide = nullptr;
    Require(ConvertToUnicode(CP_UTF8, 0, texts.narrow.c_str(), -1, &wide, 0) > 0);
    for (auto _ : state) {
      char* narrow = nullptr;
      Require(ConvertFromUnicode(CP_UTF8, 0, wide, -1, &narrow, 0, nullptr, nullptr) > 0);
      free(narrow);
    }
    free(wide);
  }
};

const bool g_registered = (RegisterConversions<ToWide, ToUtf8>("winpr"), true);

}  // namespace
}  // namespace zebcomn_bench
