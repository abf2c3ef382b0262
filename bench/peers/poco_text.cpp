#include <Poco/UnicodeConverter.h>

#include "bench/text_bench.h"

namespace zebcomn_bench {
namespace {

template <typename Text>
struct ToWide {
  static void Measure(benchmark::State& state) {
    MeasureToWide<Text>(state, [](const std::string& narrow) {
      Poco::UTF32String wide;
      Poco::UnicodeConverter::convert(narrow, wide);
      return wide.size();
    });
  }
};

template <typename Text>
struct ToUtf8 {
  static void Measure(benchmark::State& state) {
    MeasureToUtf8<Text>(state, [](const std::wstring& wide) {
      std::string narrow;
      Poco::UnicodeConverter::convert(reinterpret_cast<const Poco::UTF32Char*>(wide.c_str()),
                                      wide.size(), narrow);
      return narrow.size();
    });
  }
};

const bool g_registered = (RegisterConversions<ToWide, ToUtf8>("poco"), true);

}  // namespace
}  // namespace zebcomn_bench
