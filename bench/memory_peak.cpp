// Prints the peak memory of a full catalogue and of each conversion, beside what the described
// buffers need, as lines of "NAME BYTES NEEDED".
//
// What a conversion needs is computed from the described sizes of its buffers, and a converter's
// own memory, which is measured. What the catalogue needs is the peak of the calls that it cannot
// do without, the allocation of the map that it hands back among them, measured too.
#include <iconv.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "bench/counted_memory.h"
#include "bench/support/catalogue_floor.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/util/text_conversion.h"

namespace zebcomn_bench {
namespace {

using quenty_com::pelu::tivmcomn_ansi_to_wide;
using quenty_com::pelu::tivmcomn_wide_to_ansi;
namespace sysprops = quenty_com::pelu::sysprops;

constexpr std::size_t kWide = sizeof(wchar_t);
constexpr std::size_t kMostUtf8Bytes = 6;

template <typename Call>
std::size_t PeakOf(Call call) {
  call();  // What the C library keeps from the first call on is not counted.
  const PeakMemory peak;
  call();
  return peak.Bytes();
}

void Print(const char* name, std::size_t bytes, std::size_t peak, std::size_t needed) {
  std::printf("%s_%zu %zu %zu\n", name, bytes, peak, needed);
}

std::size_t ConverterBytes() {
  return PeakOf([] { iconv_close(iconv_open("UCS-4LE", "UTF8")); });
}

void PrintFlatConversions(std::size_t bytes) {
  const std::string narrow(bytes, 'x');
  const std::wstring wide(bytes, L'x');
  std::string narrow_out(bytes * kMostUtf8Bytes + 1, '\0');
  std::wstring wide_out(bytes + 1, L'\0');
  const std::size_t to_wide = PeakOf([&] {
    auto capacity = static_cast<int>(wide_out.size());
    tivmcomn_utf8_to_unicode(narrow.c_str(), wide_out.data(), &capacity);
  });
  const std::size_t to_utf8 = PeakOf([&] {
    auto capacity = static_cast<unsigned>(narrow_out.size());
    tivmcomn_unicode_to_utf8(wide.c_str(), narrow_out.data(), &capacity);
  });
  Print("memory_utf8_to_unicode", bytes, to_wide,
        (bytes + 2) * kWide + bytes + 1 + ConverterBytes());
  Print("memory_unicode_to_utf8", bytes, to_utf8,
        bytes * kMostUtf8Bytes + 1 + (bytes + 1) * kWide + ConverterBytes());
}

/// The wrappers have a buffer of their own around the flat call, and then the result.
void PrintWrappers(std::size_t bytes) {
  const std::string narrow(bytes, 'x');
  const std::wstring wide(bytes, L'x');
  const std::size_t wide_flat = (bytes + 2) * kWide + bytes + 1 + ConverterBytes();
  const std::size_t wide_result = (bytes + 1) * kWide;
  const std::size_t narrow_flat =
      bytes * kMostUtf8Bytes + 1 + (bytes + 1) * kWide + ConverterBytes();
  Print("memory_ansi_to_wide", bytes, PeakOf([&] { tivmcomn_ansi_to_wide(narrow); }),
        (bytes + 1) * kWide + std::max(wide_flat, wide_result));
  Print("memory_wide_to_ansi", bytes, PeakOf([&] { tivmcomn_wide_to_ansi(wide); }),
        bytes * kMostUtf8Bytes + 1 + std::max(narrow_flat, bytes + 1));
}

void PrintCatalogue() {
  const std::size_t peak = PeakOf([] {
    sysprops::ISysProps properties;
    sysprops::PropertyMap catalogue;
    properties.GetAllSystemProperties(catalogue);
  });
  const std::size_t needed = PeakOf([] { AskForCatalogue([](const char*) {}); });
  std::printf("memory_full_catalogue %zu %zu\n", peak, needed);
}

}  // namespace
}  // namespace zebcomn_bench

int main() {
  using namespace zebcomn_bench;
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  for (const std::size_t bytes : {std::size_t{16}, std::size_t{1024}, std::size_t{1} << 20}) {
    PrintFlatConversions(bytes);
    PrintWrappers(bytes);
  }
  PrintCatalogue();
  return 0;
}
