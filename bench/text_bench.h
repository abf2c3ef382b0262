#ifndef ZEBCOMN_BENCH_TEXT_BENCH_H_
#define ZEBCOMN_BENCH_TEXT_BENCH_H_

// The work of text_bench, the same for the library, the floor and each peer, which give the calls.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdlib>
#include <string>

namespace zebcomn_bench {

using Benchmark = benchmark::internal::Benchmark;

/// Ends the program: a call that fails would measure nothing.
inline void Require(bool succeeded) {
  if (!succeeded) std::abort();
}

/// Sixteen bytes of UTF-8 each: one character a byte; and one character each of one, two, three and
/// four bytes with ASCII after them.
struct Ascii {
  static constexpr const char* kNarrow = "sixteen bytes it";
  static constexpr const wchar_t* kWide = L"sixteen bytes it";
};
struct Mixed {
  static constexpr const char* kNarrow = "a\u00e9\u20ac\U0001F600bcdefg";
  static constexpr const wchar_t* kWide = L"a\u00e9\u20ac\U0001F600bcdefg";
};

template <typename String>
String Repeated(const String& unit, std::size_t times) {
  String text;
  for (std::size_t i = 0; i < times; ++i) text += unit;
  return text;
}

/// The text of so many bytes of UTF-8, in both forms.
template <typename Text>
struct Texts {
  explicit Texts(int64_t bytes)
      : narrow(Repeated<std::string>(Text::kNarrow, static_cast<std::size_t>(bytes) / 16)),
        wide(Repeated<std::wstring>(Text::kWide, static_cast<std::size_t>(bytes) / 16)) {}
  std::string narrow;
  std::wstring wide;
};

/// `convert(narrow)` gives something with the length of the wide text.
template <typename Text, typename Call>
void MeasureToWide(benchmark::State& state, Call convert) {
  const Texts<Text> texts(state.range(0));
  Require(convert(texts.narrow) == texts.wide.size());
  for (auto _ : state) benchmark::DoNotOptimize(convert(texts.narrow));
}

/// `convert(wide)` gives the length of the UTF-8 text.
template <typename Text, typename Call>
void MeasureToUtf8(benchmark::State& state, Call convert) {
  const Texts<Text> texts(state.range(0));
  Require(convert(texts.wide) == texts.narrow.size());
  for (auto _ : state) benchmark::DoNotOptimize(convert(texts.wide));
}

inline void Sizes(Benchmark* one) {
  one->ArgName("bytes")->Arg(16)->Arg(1 << 10)->Arg(1 << 20);
}

/// Registers the two functions under the operations' names. Each is a class with a static Measure,
/// a template of the text.
template <template <typename> class ToWide, template <typename> class ToUtf8>
void RegisterConversions(const std::string& subject) {
  const auto add = [&](const char* operation, void (*measure)(benchmark::State&)) {
    benchmark::RegisterBenchmark((std::string(operation) + "/" + subject).c_str(), measure)
        ->Apply(Sizes);
  };
  add("utf8_to_wide_ascii", ToWide<Ascii>::Measure);
  add("utf8_to_wide_mixed", ToWide<Mixed>::Measure);
  add("wide_to_utf8_ascii", ToUtf8<Ascii>::Measure);
  add("wide_to_utf8_mixed", ToUtf8<Mixed>::Measure);
}

/// A pattern without an end in sight: its one long segment begins almost everywhere in the name and
/// fits nowhere. `match(pattern, name)` tells whether it does.
template <typename Call>
void MeasureWorstCase(benchmark::State& state, Call match) {
  const auto length = static_cast<std::size_t>(state.range(0));
  const std::string pattern = "*" + std::string(length / 2, 'a') + "b";
  const std::string name(length, 'a');
  for (auto _ : state) Require(!match(pattern.c_str(), name.c_str()));
}

/// Many segments, each of which fits in many places, and a last one that fits nowhere. To try every
/// way to share the name among them would take for ever.
template <typename Call>
void MeasureManyStars(benchmark::State& state, Call match) {
  const auto length = static_cast<std::size_t>(state.range(0));
  std::string pattern = "*";
  for (std::size_t i = 0; i < length / 4; ++i) pattern += "a*";
  pattern += "b";
  const std::string name = std::string(length - 1, 'a') + "c";
  for (auto _ : state) Require(!match(pattern.c_str(), name.c_str()));
}

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_TEXT_BENCH_H_
