// Numbers to text and back, tokens, and the small helpers for texts, against plain loops. The first
// eight bytes are a number, the ninth chooses a radix; the next line holds the delimiters, the rest
// is the text.
#include "zebcomn/portable/number_text.h"

#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zebcomn/util/string_helpers.h"

namespace {

using namespace zebcomn_fuzz;
using namespace quenty_com::pelu;

constexpr size_t kNumberBytes = 8;
constexpr size_t kRoomFor32Bits = 12;
constexpr size_t kRoomFor64Bits = 24;

std::string Digits(uint64_t number, unsigned radix) {
  std::string digits;
  do {
    digits.insert(digits.begin(), "0123456789abcdef"[number % radix]);
    number /= radix;
  } while (number != 0);
  return digits;
}

/// Signed in radix 10, the two's complement of the number's width in 16 and 8.
template <typename Unsigned>
std::string Printed(Unsigned number, int radix) {
  const bool negative = radix == 10 && number >> (sizeof(Unsigned) * 8 - 1) != 0;
  if (negative) return "-" + Digits(static_cast<Unsigned>(0 - number), 10);
  return Digits(number, static_cast<unsigned>(radix));
}

/// One call into a buffer of the stated room; an unknown radix writes nothing.
template <typename Number, typename Unsigned>
void CheckPrinted(char* (*print)(Number, char*, int), Unsigned number, int radix, size_t room) {
  std::vector<char> buffer(room, '#');
  char* const result = print(static_cast<Number>(number), buffer.data(), radix);
  if (radix != 10 && radix != 16 && radix != 8) {
    Require(result == nullptr && buffer == std::vector<char>(room, '#'));
    return;
  }
  Require(result == buffer.data() && Printed(number, radix) == buffer.data());
}

void CheckNumber(uint64_t number, int radix) {
  const auto low = static_cast<uint32_t>(number);
  CheckPrinted(tivItoa, low, radix, kRoomFor32Bits);
  CheckPrinted(tivItot, low, radix, kRoomFor32Bits);
  CheckPrinted(tivI64toa, number, radix, kRoomFor64Bits);
  CheckPrinted(tivI64tot, number, radix, kRoomFor64Bits);
  std::vector<char> buffer(kRoomFor32Bits, '#');
  const bool known = radix == 10 || radix == 16 || radix == 8;
  Require(tivUltot(number, buffer.data(), radix) == (known ? buffer.data() : nullptr));
  if (known) Require(Printed(low, radix) == buffer.data());
  const auto value = static_cast<long>(number);
  const std::string decimal = Printed(static_cast<unsigned long>(number), 10);
  Require(tivmcomn_long_to_ansi_string(value) == decimal);
  Require(tivmcomn_long_to_wide_string(value) == std::wstring(decimal.begin(), decimal.end()));
  Require(tivAtoi64(Digits(number, 10).c_str()) == static_cast<LONGLONG>(number));
}

void CheckFolding(const std::string& text) {
  uint64_t number = 0;
  for (const char c : text) number = number * 10 + static_cast<unsigned char>(c) - 48;
  Require(tivAtoi64(text.c_str()) == static_cast<LONGLONG>(number));
  Require(tivTtoi64(text.c_str()) == static_cast<LONGLONG>(number));
}

void CheckTokens(const std::string& delimiters, const std::string& text) {
  std::vector<std::string> expected(1);
  for (const char c : text) {
    if (delimiters.find(c) == std::string::npos) {
      expected.back() += c;
    } else if (!expected.back().empty()) {
      expected.emplace_back();
    }
  }
  if (expected.back().empty()) expected.pop_back();
  std::vector<char> buffer(text.c_str(), text.c_str() + text.size() + 1);
  std::vector<std::string> tokens;
  char* rest = nullptr;
  for (char* token = tivTstrtok_r(buffer.data(), delimiters.c_str(), &rest); token != nullptr;
       token = tivTstrtok_r(nullptr, delimiters.c_str(), &rest)) {
    tokens.emplace_back(token);
  }
  Require(tokens == expected);
}

void CheckInPlace(const std::string& text) {
  std::vector<char> buffer(text.c_str(), text.c_str() + text.size() + 1);
  char* const semicolon = tivmcomn_chop_semicolon(buffer.data());
  const std::string before = CutAt(text, ';').first;
  Require(before == buffer.data());
  Require(semicolon == (before == text ? nullptr : buffer.data() + before.size()));

  std::vector<char> path(text.c_str(), text.c_str() + text.size() + 1);
  path.push_back('#');
  Require(tivmcomn_append_backslash_check(path.data()) == text.size());
  const bool ends = !text.empty() && text.back() == '/';
  Require(path.data() == (ends ? text : text + "/"));
}

void CheckCopies(const std::string& text) {
  std::string upper;
  std::string lower;
  for (const char c : text) {
    upper += c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  }
  Require(tivmcomn_convert_to_upper(text) == upper);
  Require(tivmcomn_convert_to_lower(text) == lower);
  const char* const kSpaces = " \t\n\v\f\r";
  const size_t first = text.find_first_not_of(kSpaces);
  const size_t last = text.find_last_not_of(kSpaces);
  const bool blank = first == std::string::npos;
  Require(tivmcomn_strip_leading_whitespace(text) == (blank ? "" : text.substr(first)));
  Require(tivmcomn_strip_trailing_whitespace(text) == (blank ? "" : text.substr(0, last + 1)));
}

/// In the locale "C", ASCII is all that both forms share.
void CheckLocaleForms(const std::string& text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) > 127) return;
  }
  const std::wstring wide(text.begin(), text.end());
  for (const size_t capacity : {text.size(), text.size() + 1}) {
    std::vector<char> narrow_buffer(capacity, '#');
    std::vector<wchar_t> wide_buffer(capacity, L'#');
    Require(tivStandardUtoA(wide.c_str(), capacity, narrow_buffer.data()) == text.size());
    Require(tivStandardAtoU(text.c_str(), capacity, wide_buffer.data()) == text.size());
    Require(std::string(narrow_buffer.data(), text.size()) == text);
    Require(std::wstring(wide_buffer.data(), text.size()) == wide);
    if (capacity > text.size()) Require(narrow_buffer.back() == 0 && wide_buffer.back() == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size <= kNumberBytes) return 0;
  constexpr int kRadixes[] = {10, 16, 8};
  uint64_t number = 0;
  for (size_t i = 0; i < kNumberBytes; ++i) number = number << 8 | data[i];
  const uint8_t choice = data[kNumberBytes];
  CheckNumber(number, choice < 192 ? kRadixes[choice % 3] : choice - 192);
  const auto [line, rest] = CutAt(TextOf(data + kNumberBytes + 1, size - kNumberBytes - 1), '\n');
  CheckCopies(rest);
  const std::string text = UpToNul(rest);
  CheckFolding(text);
  CheckTokens(UpToNul(line), text);
  CheckInPlace(text);
  CheckLocaleForms(text);
  return 0;
}
