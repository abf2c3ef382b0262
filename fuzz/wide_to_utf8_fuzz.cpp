// Wide text to UTF-8: what the converter gives is what a writer of single characters gives. Each
// four bytes of the input are a character, the lowest byte first.
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zebcomn/util/text_conversion.h"

namespace {

using namespace zebcomn_fuzz;
using quenty_com::pelu::tivmcomn_ansi_to_wide;
using quenty_com::pelu::tivmcomn_wide_to_ansi;

constexpr uint32_t kFailure = 0x80000008;
constexpr char kUntouched = '#';

std::wstring WideTextOf(const std::string& input) {
  std::wstring wide;
  for (size_t at = 0; at + 4 <= input.size(); at += 4) {
    uint32_t character = 0;
    for (size_t i = 4; i-- > 0;) character = character << 8 | static_cast<uint8_t>(input[at + i]);
    wide += static_cast<wchar_t>(character);
  }
  return wide;
}

/// The shortest form of a character: each byte but the first takes six bits, and the first one
/// tells by its leading ones how many bytes there are.
std::string NarrowCharacter(uint32_t character) {
  constexpr struct {
    uint32_t below;
    size_t bytes;
    uint32_t mark;
  } kForms[] = {{0x80, 1, 0x00},     {0x800, 2, 0xC0},     {0x10000, 3, 0xE0},
                {0x200000, 4, 0xF0}, {0x4000000, 5, 0xF8}, {0x80000000, 6, 0xFC}};
  size_t form = 0;
  while (character >= kForms[form].below) ++form;
  std::string narrow(kForms[form].bytes, '\0');
  for (size_t i = narrow.size() - 1; i > 0; --i, character >>= 6) {
    narrow[i] = static_cast<char>(0x80 | (character & 0x3F));
  }
  narrow[0] = static_cast<char>(kForms[form].mark | character);
  return narrow;
}

std::string NarrowOneByOne(const std::wstring& text, bool& whole) {
  std::string narrow;
  for (const wchar_t wide : text) {
    const auto character = static_cast<uint32_t>(wide);
    whole = character <= 0x7FFFFFFF && (character < 0xD800 || character > 0xDFFF);
    if (!whole) break;
    narrow += NarrowCharacter(character);
  }
  return narrow;
}

/// The flat form, into a buffer of `capacity` bytes.
void CheckFlatForm(const std::wstring& text, size_t capacity, const std::string& expected) {
  std::vector<char> buffer(capacity, kUntouched);
  auto size = static_cast<unsigned int>(capacity);
  const uint32_t status = tivmcomn_unicode_to_utf8(text.c_str(), buffer.data(), &size);
  Require(size == capacity);
  if (capacity < text.size() * 6 + 1) {
    Require(status == kFailure);
    Require(buffer == std::vector<char>(capacity, kUntouched));
    return;
  }
  Require(status == 0);
  Require(std::string(buffer.data()) == expected);
  for (size_t i = expected.size() + 1; i < capacity; ++i) Require(buffer[i] == kUntouched);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string input = TextOf(data, size);
  const size_t beside = TakeLastByte(input) % 3;
  const std::wstring wide = WideTextOf(input);
  const std::wstring text = wide.substr(0, wide.find(L'\0'));
  bool whole = true;
  const std::string expected = NarrowOneByOne(text, whole);
  Require(tivmcomn_wide_to_ansi(wide) == expected);
  CheckFlatForm(text, text.size() * 6 + beside, expected);
  const std::wstring back = tivmcomn_ansi_to_wide(expected);
  Require(text.compare(0, back.size(), back) == 0);
  Require(!whole || back.size() == text.size());
  return 0;
}
