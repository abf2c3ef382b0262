// UTF-8 to wide text: what the converter gives is what a reader of single bytes gives.
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zebcomn/util/text_conversion.h"

namespace {

using namespace zebcomn_fuzz;
using quenty_com::pelu::tivmcomn_ansi_to_wide;
using quenty_com::pelu::tivmcomn_wide_to_ansi;

constexpr uint32_t kFailure = 0x80000008;
constexpr wchar_t kUntouched = L'#';
/// The smallest number that needs so many bytes.
constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000, 0x200000, 0x4000000};

/// Reads one character of one to six bytes; false for a byte that begins none, for a sequence that
/// is cut or longer than need be, and for a surrogate.
bool ReadCharacter(const std::string& text, size_t& at, uint32_t& character) {
  const auto first = static_cast<uint8_t>(text[at]);
  size_t bytes = 0;
  while (bytes < 8 && (first & (0x80U >> bytes)) != 0) ++bytes;
  if (bytes == 1 || bytes > 6) return false;
  character = bytes == 0 ? first : first & (0x7FU >> bytes);
  for (size_t i = 1; i < bytes; ++i) {
    if (at + i >= text.size()) return false;
    const auto next = static_cast<uint8_t>(text[at + i]);
    if ((next & 0xC0) != 0x80) return false;
    character = character << 6 | (next & 0x3F);
  }
  at += bytes == 0 ? 1 : bytes;
  return character >= kSmallest[bytes] && (character < 0xD800 || character > 0xDFFF);
}

std::wstring WidenByteForByte(const std::string& text, bool& whole) {
  std::wstring wide;
  for (size_t at = 0; at < text.size();) {
    uint32_t character = 0;
    whole = ReadCharacter(text, at, character);
    if (!whole) break;
    wide += static_cast<wchar_t>(character);
  }
  return wide;
}

/// The flat form, into a buffer of `capacity` characters.
void CheckFlatForm(const std::string& text, size_t capacity, const std::wstring& expected) {
  std::vector<wchar_t> buffer(capacity, kUntouched);
  int size = static_cast<int>(capacity);
  const uint32_t status = tivmcomn_utf8_to_unicode(text.c_str(), buffer.data(), &size);
  Require(size == static_cast<int>(capacity));
  if (capacity < text.size() + 1) {
    Require(status == kFailure);
    Require(buffer == std::vector<wchar_t>(capacity, kUntouched));
    return;
  }
  Require(status == 0);
  Require(std::wstring(buffer.data()) == expected);
  for (size_t i = expected.size() + 1; i < capacity; ++i) Require(buffer[i] == kUntouched);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string input = TextOf(data, size);
  const size_t beside = TakeLastByte(input) % 3;
  const std::string text = UpToNul(input);
  bool whole = true;
  const std::wstring expected = WidenByteForByte(text, whole);
  Require(tivmcomn_ansi_to_wide(input) == expected);
  CheckFlatForm(text, text.size() + beside, expected);
  const std::string back = tivmcomn_wide_to_ansi(expected);
  Require(text.compare(0, back.size(), back) == 0);
  Require(!whole || back.size() == text.size());
  return 0;
}
