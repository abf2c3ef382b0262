// The conversions between UTF-8 and wide text, through the shared library.
#include "zebcomn/util/text_conversion.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/huge_text.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/util/byte_order.h"
#include "zebcomn/util/string_helpers.h"

namespace {

using quenty_com::pelu::tivmcomn_ansi_to_wide;
using quenty_com::pelu::tivmcomn_wide_to_ansi;

constexpr uint32_t kOk = 0;
constexpr uint32_t kFailure = 0x80000008;

std::wstring Wide(uint32_t code_point) {
  return std::wstring(1, static_cast<wchar_t>(code_point));
}

struct CodePoint {
  uint32_t value;
  const char* utf8;
};

// The edges of every UTF-8 length, the two longest ones among them.
const CodePoint kCodePoints[] = {
    {0x01, "\x01"},
    {0x7F, "\x7F"},
    {0x80, "\xC2\x80"},
    {0xE9, "\xC3\xA9"},
    {0x7FF, "\xDF\xBF"},
    {0x800, "\xE0\xA0\x80"},
    {0x20AC, "\xE2\x82\xAC"},
    {0xD7FF, "\xED\x9F\xBF"},
    {0xE000, "\xEE\x80\x80"},
    {0xFFFE, "\xEF\xBF\xBE"},
    {0xFFFF, "\xEF\xBF\xBF"},
    {0x10000, "\xF0\x90\x80\x80"},
    {0x10FFFF, "\xF4\x8F\xBF\xBF"},
    {0x110000, "\xF4\x90\x80\x80"},
    {0x1FFFFF, "\xF7\xBF\xBF\xBF"},
    {0x200000, "\xF8\x88\x80\x80\x80"},
    {0x3FFFFFF, "\xFB\xBF\xBF\xBF\xBF"},
    {0x4000000, "\xFC\x84\x80\x80\x80\x80"},
    {0x7FFFFFFF, "\xFD\xBF\xBF\xBF\xBF\xBF"},
};

TEST(TextConversion, EveryLengthOfUtf8GoesBothWays) {
  for (const CodePoint& row : kCodePoints) {
    const std::string narrow = std::string("a") + row.utf8 + "z";
    const std::wstring wide = L"a" + Wide(row.value) + L"z";
    EXPECT_EQ(tivmcomn_wide_to_ansi(wide), narrow) << std::hex << row.value;
    EXPECT_EQ(tivmcomn_ansi_to_wide(narrow), wide) << std::hex << row.value;
  }
}

TEST(TextConversion, EmptyTextGoesBothWays) {
  EXPECT_EQ(tivmcomn_wide_to_ansi(L""), "");
  EXPECT_EQ(tivmcomn_ansi_to_wide(""), L"");
}

TEST(TextConversion, WhatIsNoCodePointEndsTheNarrowText) {
  for (const uint32_t value : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(tivmcomn_wide_to_ansi(L"ab" + Wide(value) + L"z"), "ab") << std::hex << value;
    EXPECT_EQ(tivmcomn_wide_to_ansi(Wide(value) + L"z"), "") << std::hex << value;
  }
  // Two halves of a pair are not joined.
  EXPECT_EQ(tivmcomn_wide_to_ansi(L"a" + Wide(0xD83D) + Wide(0xDE00) + L"z"), "a");
}

TEST(TextConversion, AnInvalidSequenceEndsTheWideText) {
  const char* const invalid[] = {
      "\x80z",                          // a continuation byte alone
      "\xBFz",                          //
      "\xFFz",                          // never a first byte
      "\xFE\x83\x80\x80\x80\x80\x80z",  // seven bytes
      "\xC3(",                          // a first byte without its second
      "\xC3",                           // cut by the end, at each length
      "\xE2\x82",                       //
      "\xF0\x9F\x98",                   //
      "\xF8\x88\x80\x80",               //
      "\xFC\x84\x80\x80\x80",           //
      "\xE2\x82z",                      // cut in the middle
      "\xC0\x80z",                      // overlong, at each length
      "\xC1\xBFz",                      //
      "\xE0\x9F\xBFz",                  //
      "\xF0\x8F\xBF\xBFz",              //
      "\xF8\x87\xBF\xBF\xBFz",          //
      "\xFC\x83\xBF\xBF\xBF\xBFz",      //
      "\xED\xA0\x80z",                  // surrogates
      "\xED\xBF\xBFz",                  //
  };
  for (const char* const sequence : invalid) {
    EXPECT_EQ(tivmcomn_ansi_to_wide(std::string("ab") + sequence), L"ab") << sequence;
    EXPECT_EQ(tivmcomn_ansi_to_wide(sequence), L"") << sequence;
  }
}

TEST(TextConversion, TextEndsWhereItStopsWhateverTheMemoryHeldBefore) {
  // The work buffers of the second call are the freed ones of the first.
  const std::string long_text(400, 'x');
  const std::string cut_text = "ab\xFF" + long_text.substr(3);
  ASSERT_EQ(tivmcomn_ansi_to_wide(long_text).size(), long_text.size());
  EXPECT_EQ(tivmcomn_ansi_to_wide(cut_text), L"ab");
  const std::wstring long_wide(400, L'x');
  const std::wstring cut_wide = L"ab\xD800" + long_wide.substr(3);
  ASSERT_EQ(tivmcomn_wide_to_ansi(long_wide).size(), long_wide.size());
  EXPECT_EQ(tivmcomn_wide_to_ansi(cut_wide), "ab");
}

TEST(TextConversion, WrappersStopAtTheFirstNul) {
  EXPECT_EQ(tivmcomn_wide_to_ansi(std::wstring(L"ab\0cd", 5)), "ab");
  EXPECT_EQ(tivmcomn_ansi_to_wide(std::string("ab\0cd", 5)), L"ab");
}

TEST(TextConversion, LongTextGoesBothWays) {
  std::string narrow;
  std::wstring wide;
  for (int i = 0; i < 20000; ++i) {
    const CodePoint& row = kCodePoints[static_cast<size_t>(i) % std::size(kCodePoints)];
    narrow += row.utf8;
    wide += Wide(row.value);
  }
  EXPECT_TRUE(tivmcomn_wide_to_ansi(wide) == narrow);
  EXPECT_TRUE(tivmcomn_ansi_to_wide(narrow) == wide);
}

TEST(UnicodeToUtf8, ConvertsAndTerminates) {
  char buffer[64];
  std::memset(buffer, 'x', sizeof buffer);
  unsigned int size = sizeof buffer;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"gr\u00fc\u00df", buffer, &size), kOk);
  EXPECT_STREQ(buffer, "gr\xC3\xBC\xC3\x9F");
  EXPECT_EQ(size, sizeof buffer) << "the capacity is only read";
  EXPECT_EQ(buffer[7], 'x') << "nothing is written behind the NUL";
}

TEST(UnicodeToUtf8, RefusesNullArguments) {
  char buffer[8] = "old";
  unsigned int size = sizeof buffer;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(nullptr, buffer, &size), kFailure);
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"a", nullptr, &size), kFailure);
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"a", buffer, nullptr), kFailure);
  EXPECT_STREQ(buffer, "old");
}

TEST(UnicodeToUtf8, RefusesACapacityOfZero) {
  char buffer[8] = "old";
  unsigned int size = 0;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"", buffer, &size), kFailure);
  EXPECT_STREQ(buffer, "old");
}

TEST(UnicodeToUtf8, WantsRoomForTheWorstCaseEvenOfPlainAscii) {
  char buffer[32] = "old";
  unsigned int size = 3 * 6;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"abc", buffer, &size), kFailure);
  EXPECT_STREQ(buffer, "old");
  size = 3 * 6 + 1;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"abc", buffer, &size), kOk);
  EXPECT_STREQ(buffer, "abc");
}

TEST(UnicodeToUtf8, EmptyTextFitsOneByte) {
  char buffer[2] = {'x', 'x'};
  unsigned int size = 1;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"", buffer, &size), kOk);
  EXPECT_EQ(buffer[0], '\0');
  EXPECT_EQ(buffer[1], 'x');
}

TEST(UnicodeToUtf8, ACapacityOfTwoToThe31AndMoreCountsAsNegative) {
  char buffer[32] = "old";
  for (unsigned int size : {0x80000000u, 0x80000001u, 0xFFFFFFFFu}) {
    EXPECT_EQ(tivmcomn_unicode_to_utf8(L"a", buffer, &size), kFailure) << size;
    EXPECT_EQ(tivmcomn_unicode_to_utf8(L"", buffer, &size), kFailure) << size;
  }
  EXPECT_STREQ(buffer, "old");
  unsigned int size = 0x7FFFFFFFu;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"a", buffer, &size), kOk);
  EXPECT_STREQ(buffer, "a");
}

TEST(UnicodeToUtf8, WorstCaseFillsTheBufferExactly) {
  // Exactly as large as stated, so that a sanitizer sees a byte too many.
  std::vector<char> buffer(2 * 6 + 1, 'x');
  auto size = static_cast<unsigned int>(buffer.size());
  const std::wstring text = Wide(0x7FFFFFFF) + Wide(0x4000000);
  EXPECT_EQ(tivmcomn_unicode_to_utf8(text.c_str(), buffer.data(), &size), kOk);
  EXPECT_STREQ(buffer.data(), "\xFD\xBF\xBF\xBF\xBF\xBF\xFC\x84\x80\x80\x80\x80");
}

TEST(UnicodeToUtf8, AnUnconvertibleCharacterIsNotReported) {
  char buffer[32] = "old";
  unsigned int size = sizeof buffer;
  EXPECT_EQ(tivmcomn_unicode_to_utf8((L"a" + Wide(0xD800) + L"b").c_str(), buffer, &size), kOk);
  EXPECT_STREQ(buffer, "a");
}

TEST(Utf8ToUnicode, ConvertsAndTerminates) {
  wchar_t buffer[16];
  std::wmemset(buffer, L'x', std::size(buffer));
  int size = std::size(buffer);
  EXPECT_EQ(tivmcomn_utf8_to_unicode("gr\xC3\xBC\xC3\x9F", buffer, &size), kOk);
  EXPECT_EQ(std::wstring(buffer), L"gr\u00fc\u00df");
  EXPECT_EQ(size, static_cast<int>(std::size(buffer))) << "the capacity is only read";
  EXPECT_EQ(buffer[5], L'x') << "nothing is written behind the NUL";
}

TEST(Utf8ToUnicode, RefusesNullArguments) {
  wchar_t buffer[8] = L"old";
  int size = std::size(buffer);
  EXPECT_EQ(tivmcomn_utf8_to_unicode(nullptr, buffer, &size), kFailure);
  EXPECT_EQ(tivmcomn_utf8_to_unicode("a", nullptr, &size), kFailure);
  EXPECT_EQ(tivmcomn_utf8_to_unicode("a", buffer, nullptr), kFailure);
  EXPECT_EQ(std::wstring(buffer), L"old");
}

TEST(Utf8ToUnicode, WantsOneWideCharacterPerByteAndOneMore) {
  std::vector<wchar_t> buffer = {L'o', L'l', L'd', L'\0'};
  int size = 3;
  EXPECT_EQ(tivmcomn_utf8_to_unicode("abc", buffer.data(), &size), kFailure);
  EXPECT_EQ(std::wstring(buffer.data()), L"old");
  size = 4;
  EXPECT_EQ(tivmcomn_utf8_to_unicode("abc", buffer.data(), &size), kOk);
  EXPECT_EQ(std::wstring(buffer.data()), L"abc");
  size = 2;
  EXPECT_EQ(tivmcomn_utf8_to_unicode("\xC3\xA9", buffer.data(), &size), kFailure)
      << "one wide character, but two bytes";
  size = 3;
  EXPECT_EQ(tivmcomn_utf8_to_unicode("\xC3\xA9", buffer.data(), &size), kOk);
  EXPECT_EQ(std::wstring(buffer.data()), L"\u00e9");
}

TEST(Utf8ToUnicode, RefusesACapacityOfZeroOrLess) {
  wchar_t buffer[8] = L"old";
  for (int size : {0, -1, -0x7FFFFFFF - 1}) {
    EXPECT_EQ(tivmcomn_utf8_to_unicode("", buffer, &size), kFailure) << size;
  }
  EXPECT_EQ(std::wstring(buffer), L"old");
}

TEST(Utf8ToUnicode, ATextWhoseWideFormFitsNoAddressSpaceIsAFailure) {
  if (sizeof(void*) != 4) GTEST_SKIP() << "every text that there is has a wide form in 64 bits";
  const zebcomn_test::HugeText text(size_t{512} * 1024 * 1024);
  ASSERT_TRUE(text.IsMapped());
  wchar_t wide[8] = L"old";
  int capacity = std::numeric_limits<int>::max();
  EXPECT_NO_THROW(EXPECT_EQ(tivmcomn_utf8_to_unicode(text.c_str(), wide, &capacity), kFailure));
  EXPECT_EQ(std::wstring(wide), L"old");
}

TEST(Utf8ToUnicode, AnInvalidSequenceIsNotReportedAndTheTextIsTerminated) {
  wchar_t buffer[8];
  std::wmemset(buffer, L'x', std::size(buffer));
  int size = std::size(buffer);
  EXPECT_EQ(tivmcomn_utf8_to_unicode("ab\xFF"
                                     "cd",
                                     buffer, &size),
            kOk);
  EXPECT_EQ(std::wstring(buffer), L"ab");
}

TEST(TextConversion, LeavesTheLastErrorAlone) {
  nErrno = 99;
  tivmcomn_unicode_to_utf8(nullptr, nullptr, nullptr);
  tivmcomn_utf8_to_unicode(nullptr, nullptr, nullptr);
  tivmcomn_wide_to_ansi(Wide(0xD800));
  tivmcomn_ansi_to_wide("\xFF");
  tivmcomn_chop_semicolon(nullptr);
  tivmcomn_append_backslash_check(nullptr);
  EXPECT_EQ(nErrno, 99);
  nErrno = 0;
}

TEST(TextConversion, ManyThreadsMayConvertAtOnce) {
  std::vector<std::thread> threads;
  std::vector<int> right(4, 0);
  for (size_t i = 0; i < right.size(); ++i) {
    threads.emplace_back([&right, i] {
      const std::wstring wide = L"caf\u00e9 " + std::to_wstring(i);
      for (int round = 0; round < 200; ++round) {
        if (tivmcomn_ansi_to_wide(tivmcomn_wide_to_ansi(wide)) == wide) ++right[i];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, std::vector<int>(4, 200));
}

TEST(ByteOrder, AgreesWithTheCompilersTarget) {
  EXPECT_EQ(quenty_com::pelu::isBigEndian(), __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__);
}

}  // namespace
