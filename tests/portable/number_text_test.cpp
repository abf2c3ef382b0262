// Numbers to text and back, locale conversion and tokens, through the shared library.
#include "zebcomn/portable/number_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/fresh_process.h"
#include "zebcomn/portable/clock.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/portable/guid.h"
#include "zebcomn/portable/system_names.h"

namespace {

constexpr int kRadixes[] = {10, 16, 8};
constexpr int kOtherRadixes[] = {2, 0, -10, 7, 9, 11, 36};

// The text that `print` makes of a value, checked to be in the buffer that was given.
template <typename Print, typename Value>
std::string Printed(Print print, Value value, int radix) {
  char buffer[64];
  std::memset(buffer, '?', sizeof buffer);
  if (print(value, buffer, radix) != buffer) return "not the buffer";
  return buffer;
}

struct IntCase {
  int value;
  const char* texts[3];  // Radix 10, 16, 8.
};

const IntCase kInts[] = {
    {0, {"0", "0", "0"}},
    {255, {"255", "ff", "377"}},
    {-1, {"-1", "ffffffff", "37777777777"}},
    {INT_MAX, {"2147483647", "7fffffff", "17777777777"}},
    {INT_MIN, {"-2147483648", "80000000", "20000000000"}},
};

TEST(Itoa, PrintsInEachRadix) {
  for (const IntCase& row : kInts) {
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(Printed(tivItoa, row.value, kRadixes[i]), row.texts[i]) << row.value;
      EXPECT_EQ(Printed(tivItot, row.value, kRadixes[i]), row.texts[i]) << row.value;
    }
  }
}

struct WideIntCase {
  uint64_t value;
  const char* texts[3];
};

TEST(Ultot, PrintsOnlyTheLow32Bits) {
  const WideIntCase cases[] = {
      {0, {"0", "0", "0"}},
      {0x7FFFFFFF, {"2147483647", "7fffffff", "17777777777"}},
      {0x80000000, {"-2147483648", "80000000", "20000000000"}},
      {0xFFFFFFFF, {"-1", "ffffffff", "37777777777"}},
      {0x100000005, {"5", "5", "5"}},
      {0xFFFFFFFFFFFFFFFF, {"-1", "ffffffff", "37777777777"}},
  };
  for (const WideIntCase& row : cases) {
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(Printed(tivUltot, row.value, kRadixes[i]), row.texts[i]) << row.value;
    }
  }
}

TEST(I64toa, PrintsAll64Bits) {
  const WideIntCase cases[] = {
      {0, {"0", "0", "0"}},
      {0x100000005, {"4294967301", "100000005", "40000000005"}},
      {0x7FFFFFFFFFFFFFFF, {"9223372036854775807", "7fffffffffffffff", "777777777777777777777"}},
      {0x8000000000000000, {"-9223372036854775808", "8000000000000000", "1000000000000000000000"}},
      {0xFFFFFFFFFFFFFFFF, {"-1", "ffffffffffffffff", "1777777777777777777777"}},
  };
  for (const WideIntCase& row : cases) {
    const auto value = static_cast<int64_t>(row.value);
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(Printed(tivI64toa, value, kRadixes[i]), row.texts[i]) << value;
      EXPECT_EQ(Printed(tivI64tot, value, kRadixes[i]), row.texts[i]) << value;
    }
  }
}

TEST(NumberText, AnyOtherRadixGivesNullAndWritesNothing) {
  for (const int radix : kOtherRadixes) {
    char buffer[8] = "old";
    EXPECT_EQ(tivItoa(5, buffer, radix), nullptr) << radix;
    EXPECT_EQ(tivItot(5, buffer, radix), nullptr) << radix;
    EXPECT_EQ(tivUltot(5, buffer, radix), nullptr) << radix;
    EXPECT_EQ(tivI64toa(5, buffer, radix), nullptr) << radix;
    EXPECT_EQ(tivI64tot(5, buffer, radix), nullptr) << radix;
    EXPECT_STREQ(buffer, "old") << radix;
  }
}

TEST(NumberText, ANullBufferGivesNull) {
  for (const int radix : kRadixes) {
    EXPECT_EQ(tivItoa(5, nullptr, radix), nullptr);
    EXPECT_EQ(tivItot(5, nullptr, radix), nullptr);
    EXPECT_EQ(tivUltot(5, nullptr, radix), nullptr);
    EXPECT_EQ(tivI64toa(5, nullptr, radix), nullptr);
    EXPECT_EQ(tivI64tot(5, nullptr, radix), nullptr);
  }
}

TEST(NumberText, TheLongestTextsFitTheStatedSizes) {
  std::vector<char> small(12);
  EXPECT_STREQ(tivItoa(INT_MIN, small.data(), 10), "-2147483648");
  std::vector<char> large(24);
  EXPECT_STREQ(tivI64toa(-1, large.data(), 8), "1777777777777777777777");
}

TEST(Atoi64, FoldsEveryCharacterIn) {
  const struct {
    const char* text;
    int64_t expected;
  } cases[] = {
      {"", 0},
      {"12", 12},
      {"007", 7},
      {"1a", 59},
      {"-5", ('-' - '0') * 10 + 5},
      {" 7", (' ' - '0') * 10 + 7},
      {"1.5", (10 + ('.' - '0')) * 10 + 5},
      {"9223372036854775807", INT64_MAX},
      {"9223372036854775808", INT64_MIN},
      {"18446744073709551616", 0},
      {"18446744073709551617", 1},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(tivAtoi64(row.text), row.expected) << row.text;
    EXPECT_EQ(tivTtoi64(row.text), row.expected) << row.text;
  }
}

TEST(Atoi64, HighBytesAreFoldedInAsUnsigned) {
  EXPECT_EQ(tivAtoi64("\xFF"), 255 - 48);
  EXPECT_EQ(tivTtoi64("\x80"), 128 - 48);
}

TEST(Atoi64, NullGivesZero) {
  EXPECT_EQ(tivAtoi64(nullptr), 0);
  EXPECT_EQ(tivTtoi64(nullptr), 0);
}

TEST(StandardUtoA, CountsWithoutTheTerminator) {
  char buffer[8];
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(tivStandardUtoA(L"abc", sizeof buffer, buffer), 3u);
  EXPECT_EQ(std::string(buffer, 5), std::string("abc\0x", 5));
}

TEST(StandardUtoA, ATextThatJustFitsIsNotTerminated) {
  char buffer[8] = "xxxxxxx";
  EXPECT_EQ(tivStandardUtoA(L"abc", 3, buffer), 3u);
  EXPECT_STREQ(buffer, "abcxxxx");
  EXPECT_EQ(tivStandardUtoA(L"defg", 2, buffer), 2u);
  EXPECT_STREQ(buffer, "decxxxx");
  EXPECT_EQ(tivStandardUtoA(L"h", 0, buffer), 0u);
  EXPECT_STREQ(buffer, "decxxxx");
}

TEST(StandardUtoA, WhatTheLocaleCannotExpressGivesZero) {
  char buffer[32];
  EXPECT_EQ(tivStandardUtoA(L"caf\u0142", sizeof buffer, buffer), 0u);
}

TEST(StandardAtoU, CountsWithoutTheTerminator) {
  wchar_t buffer[8];
  std::wmemset(buffer, L'x', 8);
  EXPECT_EQ(tivStandardAtoU("abc", 8, buffer), 3u);
  EXPECT_EQ(std::wstring(buffer, 5), std::wstring(L"abc\0x", 5));
}

TEST(StandardAtoU, ATextThatJustFitsIsNotTerminated) {
  wchar_t buffer[8] = L"xxxxxxx";
  EXPECT_EQ(tivStandardAtoU("abc", 3, buffer), 3u);
  EXPECT_EQ(std::wstring(buffer), L"abcxxxx");
  EXPECT_EQ(tivStandardAtoU("d", 0, buffer), 0u);
  EXPECT_EQ(std::wstring(buffer), L"abcxxxx");
}

TEST(StandardConversion, NullArgumentsGiveZero) {
  char narrow[8] = "old";
  wchar_t wide[8] = L"old";
  EXPECT_EQ(tivStandardUtoA(nullptr, 8, narrow), 0u);
  EXPECT_EQ(tivStandardUtoA(L"a", 8, nullptr), 0u);
  EXPECT_EQ(tivStandardAtoU(nullptr, 8, wide), 0u);
  EXPECT_EQ(tivStandardAtoU("a", 8, nullptr), 0u);
  EXPECT_STREQ(narrow, "old");
  EXPECT_EQ(std::wstring(wide), L"old");
}

TEST(StandardConversion, FollowsTheProcessLocale) {
  const std::string found = zebcomn_test::RunInFreshProcess([]() -> std::string {
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) return "no locale";
    char narrow[8] = {};
    wchar_t wide[8] = {};
    if (tivStandardUtoA(L"\u0142a", sizeof narrow, narrow) != 3) return "UtoA count";
    if (std::strcmp(narrow,
                    "\xC5\x82"
                    "a") != 0) {
      return "UtoA text";
    }
    if (tivStandardAtoU(narrow, 8, wide) != 2) return "AtoU count";
    if (std::wstring(wide) != L"\u0142a") return "AtoU text";
    if (tivStandardAtoU("\xFF", 8, wide) != 0) return "AtoU of an invalid sequence";
    // A cut sequence leaves nothing behind for the next conversion.
    if (tivStandardAtoU("\xC5", 8, wide) != 0) return "AtoU of a cut sequence";
    if (tivStandardAtoU("b", 8, wide) != 1 || wide[0] != L'b') return "state was kept";
    return "right";
  });
  if (found == "no locale") GTEST_SKIP() << "this system has no C.UTF-8 locale";
  EXPECT_EQ(found, "right");
}

TEST(Tstrtok, WalksThroughTheTokens) {
  char text[] = ",a,,b;c";
  char* save = nullptr;
  EXPECT_STREQ(tivTstrtok_r(text, ",;", &save), "a");
  EXPECT_STREQ(tivTstrtok_r(nullptr, ",;", &save), "b");
  EXPECT_STREQ(tivTstrtok_r(nullptr, ",;", &save), "c");
  EXPECT_EQ(tivTstrtok_r(nullptr, ",;", &save), nullptr);
  EXPECT_EQ(tivTstrtok_r(nullptr, ",;", &save), nullptr);
}

TEST(Tstrtok, TwoTextsDoNotDisturbEachOther) {
  char first[] = "a b";
  char second[] = "c d";
  char* first_save = nullptr;
  char* second_save = nullptr;
  EXPECT_STREQ(tivTstrtok_r(first, " ", &first_save), "a");
  EXPECT_STREQ(tivTstrtok_r(second, " ", &second_save), "c");
  EXPECT_STREQ(tivTstrtok_r(nullptr, " ", &first_save), "b");
  EXPECT_STREQ(tivTstrtok_r(nullptr, " ", &second_save), "d");
}

TEST(Tstrtok, NullArgumentsGiveNull) {
  char text[] = "a";
  char* save = nullptr;
  EXPECT_EQ(tivTstrtok_r(nullptr, " ", &save), nullptr);
  EXPECT_EQ(tivTstrtok_r(text, nullptr, &save), nullptr);
  EXPECT_EQ(tivTstrtok_r(text, " ", nullptr), nullptr);
  EXPECT_STREQ(text, "a");
}

TEST(NumberText, LeavesTheLastErrorAloneLikeItsNeighbours) {
  nErrno = 99;
  char text[4] = "a";
  tivItoa(5, nullptr, 10);
  tivItoa(5, text, 2);
  tivAtoi64(nullptr);
  tivStandardUtoA(L"\u0142", sizeof text, text);
  tivTstrtok_r(nullptr, nullptr, nullptr);
  tivGetTickCount();
  tivGetSystemTime(nullptr);
  tivCoCreateGuid(nullptr);
  tivUuidToStringA(nullptr, nullptr);
  tivGetWindowsDirectory(nullptr, 10);
  tivGetComputerName(nullptr, nullptr);
  tivGetModuleFileName(nullptr, nullptr, 0);
  EXPECT_EQ(nErrno, 99);
  nErrno = 0;
}

}  // namespace
