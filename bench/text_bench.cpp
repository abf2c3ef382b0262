// Text: the conversions beside the C library's calls that they are made of, and the wildcard match.
#include "bench/text_bench.h"

#include <iconv.h>

#include <cstring>
#include <cwchar>
#include <memory>

#include "zebcomn/portable/wildcard.h"
#include "zebcomn/util/text_conversion.h"

namespace zebcomn_bench {
namespace {

constexpr std::size_t kMostUtf8Bytes = 6;

using Bytes = std::unique_ptr<char[]>;

Bytes NewBytes(std::size_t count) {
  return Bytes(new char[count]);
}

// ---- the library

/// The caller's buffer is taken once, as one that converts many texts has it.
template <typename Text>
struct ToWide_Zebcomn {
  static void Measure(benchmark::State& state) {
    std::wstring out(static_cast<std::size_t>(state.range(0)) + 1, L'\0');
    MeasureToWide<Text>(state, [&](const std::string& narrow) {
      auto capacity = static_cast<int>(out.size());
      Require(tivmcomn_utf8_to_unicode(narrow.c_str(), out.data(), &capacity) == 0);
      return out[0] == L'\0' ? 0 : std::wcslen(out.data());
    });
  }
};

template <typename Text>
struct ToUtf8_Zebcomn {
  static void Measure(benchmark::State& state) {
    std::string out(static_cast<std::size_t>(state.range(0)) * kMostUtf8Bytes + 1, '\0');
    MeasureToUtf8<Text>(state, [&](const std::wstring& wide) {
      auto capacity = static_cast<unsigned>(out.size());
      Require(tivmcomn_unicode_to_utf8(wide.c_str(), out.data(), &capacity) == 0);
      return std::strlen(out.data());
    });
  }
};

// ---- the floor: the two work buffers, the converter of each call, and the copy to the caller

std::size_t ConvertBare(const char* to, const char* from, char* in, std::size_t in_bytes, char* out,
                        std::size_t out_bytes) {
  const std::size_t room = out_bytes;
  const iconv_t converter = iconv_open(to, from);
  iconv(converter, &in, &in_bytes, &out, &out_bytes);
  iconv_close(converter);
  return room - out_bytes;
}

template <typename Text>
struct ToWide_Floor {
  static void Measure(benchmark::State& state) {
    std::wstring result(static_cast<std::size_t>(state.range(0)) + 1, L'\0');
    MeasureToWide<Text>(state, [&](const std::string& narrow) {
      const std::size_t bytes = std::strlen(narrow.c_str()) + 1;
      const Bytes out = NewBytes((bytes + 1) * sizeof(wchar_t));
      const Bytes in = NewBytes(bytes);
      std::memcpy(in.get(), narrow.c_str(), bytes);
      ConvertBare("UCS-4LE", "UTF8", in.get(), bytes, out.get(), bytes * sizeof(wchar_t));
      std::wcscpy(result.data(), reinterpret_cast<const wchar_t*>(out.get()));
      return std::wcslen(result.data());
    });
  }
};

template <typename Text>
struct ToUtf8_Floor {
  static void Measure(benchmark::State& state) {
    std::string result(static_cast<std::size_t>(state.range(0)) * kMostUtf8Bytes + 1, '\0');
    MeasureToUtf8<Text>(state, [&](const std::wstring& wide) {
      const std::size_t length = std::wcslen(wide.c_str());
      const Bytes out = NewBytes(length * kMostUtf8Bytes + 1);
      const Bytes in = NewBytes((length + 1) * sizeof(wchar_t));
      std::memcpy(in.get(), wide.c_str(), (length + 1) * sizeof(wchar_t));
      const std::size_t end = ConvertBare("UTF8", "UCS-4LE", in.get(), length * sizeof(wchar_t),
                                          out.get(), length * kMostUtf8Bytes);
      out[end] = '\0';
      std::strcpy(result.data(), out.get());
      return std::strlen(result.data());
    });
  }
};

// ---- the floor without what a converter of each call's own costs

class KeptConverter {
 public:
  KeptConverter(const char* to, const char* from) : converter_(iconv_open(to, from)) {}
  ~KeptConverter() { iconv_close(converter_); }
  KeptConverter(const KeptConverter&) = delete;
  KeptConverter& operator=(const KeptConverter&) = delete;

  /// The number of bytes that come out.
  std::size_t Convert(const void* text, std::size_t in_bytes, void* out, std::size_t out_bytes) {
    const Bytes copy = NewBytes(in_bytes);
    std::memcpy(copy.get(), text, in_bytes);
    char* in = copy.get();
    char* end = static_cast<char*>(out);
    const std::size_t room = out_bytes;
    iconv(converter_, &in, &in_bytes, &end, &out_bytes);
    return room - out_bytes;
  }

 private:
  iconv_t converter_;
};

template <typename Text>
struct ToWide_KeptOpen {
  static void Measure(benchmark::State& state) {
    KeptConverter converter("UCS-4LE", "UTF8");
    std::wstring result(static_cast<std::size_t>(state.range(0)) + 1, L'\0');
    MeasureToWide<Text>(state, [&](const std::string& narrow) {
      const std::size_t bytes = std::strlen(narrow.c_str()) + 1;
      const Bytes out = NewBytes((bytes + 1) * sizeof(wchar_t));
      converter.Convert(narrow.c_str(), bytes, out.get(), bytes * sizeof(wchar_t));
      std::wcscpy(result.data(), reinterpret_cast<const wchar_t*>(out.get()));
      return std::wcslen(result.data());
    });
  }
};

template <typename Text>
struct ToUtf8_KeptOpen {
  static void Measure(benchmark::State& state) {
    KeptConverter converter("UTF8", "UCS-4LE");
    std::string result(static_cast<std::size_t>(state.range(0)) * kMostUtf8Bytes + 1, '\0');
    MeasureToUtf8<Text>(state, [&](const std::wstring& wide) {
      const std::size_t length = std::wcslen(wide.c_str());
      const Bytes out = NewBytes(length * kMostUtf8Bytes + 1);
      out[converter.Convert(wide.c_str(), length * sizeof(wchar_t), out.get(),
                            length * kMostUtf8Bytes)] = '\0';
      std::strcpy(result.data(), out.get());
      return std::strlen(result.data());
    });
  }
};

// ---- wildcards: no system call is required, so there is no floor

bool Match(const char* pattern, const char* name) {
  return tivWildCardMatch(pattern, name) == 0;
}

void WorstCase_Zebcomn(benchmark::State& state) {
  MeasureWorstCase(state, Match);
}
BENCHMARK(WorstCase_Zebcomn)
    ->Name("wildcard_worst_case/zebcomn")
    ->ArgName("characters")
    ->Arg(256)
    ->Arg(1 << 12)
    ->Arg(1 << 16);

void ManyStars_Zebcomn(benchmark::State& state) {
  MeasureManyStars(state, Match);
}
BENCHMARK(ManyStars_Zebcomn)
    ->Name("wildcard_many_stars/zebcomn")
    ->ArgName("characters")
    ->Arg(256)
    ->Arg(1 << 12)
    ->Arg(1 << 16);

/// A segment with a "?" fits or fails only character by character.
void QuestionMarks_Zebcomn(benchmark::State& state) {
  const auto length = static_cast<std::size_t>(state.range(0));
  const std::string pattern = "*" + Repeated<std::string>("aaa?", 16) + "b";
  const std::string name = std::string(length - 1, 'a') + "c";
  for (auto _ : state) Require(!Match(pattern.c_str(), name.c_str()));
}
BENCHMARK(QuestionMarks_Zebcomn)
    ->Name("wildcard_question_marks/zebcomn")
    ->ArgName("characters")
    ->Arg(256)
    ->Arg(1 << 12)
    ->Arg(1 << 16);

const bool g_registered = [] {
  RegisterConversions<ToWide_Zebcomn, ToUtf8_Zebcomn>("zebcomn");
  RegisterConversions<ToWide_Floor, ToUtf8_Floor>("floor");
  RegisterConversions<ToWide_KeptOpen, ToUtf8_KeptOpen>("kept_open");
  return true;
}();

}  // namespace
}  // namespace zebcomn_bench
