#include "zebcomn/portable/number_text.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>

namespace {

constexpr int kDecimal = 10;
constexpr int kHexadecimal = 16;
constexpr int kOctal = 8;

constexpr auto kConversionFailed = static_cast<std::size_t>(-1);

// Prints `value` as signed in radix 10, as the unsigned number of the same width otherwise.
char* Print32(std::int32_t value, char* buffer, int radix) {
  if (buffer == nullptr) return nullptr;
  switch (radix) {
    case kDecimal:
      std::sprintf(buffer, "%" PRId32, value);
      return buffer;
    case kHexadecimal:
      std::sprintf(buffer, "%" PRIx32, static_cast<std::uint32_t>(value));
      return buffer;
    case kOctal:
      std::sprintf(buffer, "%" PRIo32, static_cast<std::uint32_t>(value));
      return buffer;
    default:
      return nullptr;
  }
}

char* Print64(std::int64_t value, char* buffer, int radix) {
  if (buffer == nullptr) return nullptr;
  switch (radix) {
    case kDecimal:
      std::sprintf(buffer, "%" PRId64, value);
      return buffer;
    case kHexadecimal:
      std::sprintf(buffer, "%" PRIx64, static_cast<std::uint64_t>(value));
      return buffer;
    case kOctal:
      std::sprintf(buffer, "%" PRIo64, static_cast<std::uint64_t>(value));
      return buffer;
    default:
      return nullptr;
  }
}

LONGLONG FoldDigits(const char* text) {
  if (text == nullptr) return 0;
  std::uint64_t number = 0;
  // Kept: no sign, no white space, no stop at a non-digit; callers pass digits alone.
  for (; *text != '\0'; ++text) {
    number = number * 10 + static_cast<unsigned char>(*text) - '0';
  }
  return static_cast<LONGLONG>(number);
}

}  // namespace

size_t tivStandardUtoA(const wchar_t* source, size_t count, char* destination) {
  if (source == nullptr || destination == nullptr) return 0;
  std::mbstate_t state{};
  const std::size_t written = std::wcsrtombs(destination, &source, count, &state);
  return written == kConversionFailed ? 0 : written;
}

size_t tivStandardAtoU(const char* source, size_t count, wchar_t* destination) {
  if (source == nullptr || destination == nullptr) return 0;
  std::mbstate_t state{};
  const std::size_t written = std::mbsrtowcs(destination, &source, count, &state);
  return written == kConversionFailed ? 0 : written;
}

char* tivItoa(int value, char* buffer, int radix) {
  return Print32(value, buffer, radix);
}

char* tivItot(int value, char* buffer, int radix) {
  return Print32(value, buffer, radix);
}

char* tivUltot(ULONGLONG value, char* buffer, int radix) {
  // Kept: only the low 32 bits are printed, on every word size.
  return Print32(static_cast<std::int32_t>(static_cast<std::uint32_t>(value)), buffer, radix);
}

char* tivI64toa(LONGLONG value, char* buffer, int radix) {
  return Print64(value, buffer, radix);
}

char* tivI64tot(LONGLONG value, char* buffer, int radix) {
  return Print64(value, buffer, radix);
}

LONGLONG tivAtoi64(const char* text) {
  return FoldDigits(text);
}

LONGLONG tivTtoi64(const char* text) {
  return FoldDigits(text);
}

char* tivTstrtok_r(char* string, const char* delimiters, char** save) {
  if (delimiters == nullptr || save == nullptr) return nullptr;
  if (string == nullptr && *save == nullptr) return nullptr;
  return strtok_r(string, delimiters, save);
}
