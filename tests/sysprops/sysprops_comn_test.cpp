// The conversions and the short host name, through the library.
#include "zebcomn/sysprops/sysprops_comn.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/private_host.h"

namespace {

using quenty_com::pelu::sysprops::getComputerName;
using quenty_com::pelu::sysprops::sysprops_ansi_to_wide;
using quenty_com::pelu::sysprops::sysprops_wide_to_ansi;

struct Pair {
  std::string narrow;
  std::wstring wide;
};

TEST(SyspropsConversion, TextGoesBothWays) {
  const Pair kPairs[] = {
      {"", L""},
      {"x", L"x"},
      {"Edge Router 2", L"Edge Router 2"},
      {"\xC3\xA9", L"\u00e9"},
      {"\xE2\x82\xAC 5", L"\u20ac 5"},
      {"\xF0\x9F\x92\xBE", L"\U0001f4be"},
      {std::string(5000, 'a'), std::wstring(5000, L'a')},
  };
  for (const Pair& pair : kPairs) {
    EXPECT_EQ(sysprops_ansi_to_wide(pair.narrow), pair.wide) << pair.narrow;
    EXPECT_EQ(sysprops_wide_to_ansi(pair.wide), pair.narrow) << pair.narrow;
  }
}

TEST(SyspropsConversion, TextEndsAtItsFirstNul) {
  EXPECT_EQ(sysprops_ansi_to_wide(std::string("ab\0cd", 5)), L"ab");
  EXPECT_EQ(sysprops_wide_to_ansi(std::wstring(L"ab\0cd", 5)), "ab");
}

TEST(SyspropsConversion, InvalidUtf8EndsTheText) {
  const Pair kCases[] = {
      {"ab\xFF\x63", L"ab"},       // never a part of UTF-8
      {"ab\xC3", L"ab"},           // cut sequence
      {"ab\xC0\xAF", L"ab"},       // overlong
      {"ab\xED\xA0\x80z", L"ab"},  // surrogate
      {"\x80text", L""},           // continuation byte first
  };
  for (const Pair& item : kCases) EXPECT_EQ(sysprops_ansi_to_wide(item.narrow), item.wide);
}

TEST(SyspropsConversion, CharacterThatUtf8CannotHoldEndsTheText) {
  EXPECT_EQ(sysprops_wide_to_ansi({L'a', static_cast<wchar_t>(0xD800), L'b'}), "a");
}

TEST(ComputerName, IsTheNodeNameUpToItsFirstDot) {
  if (std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const Pair kNames[] = {
      {"alpha.beta", L"alpha"}, {"plain", L"plain"},        {"a.b.c", L"a"},
      {".hidden", L""},         {"trailing.", L"trailing"},
  };
  for (const Pair& item : kNames) {
    const std::string seen = zebcomn_test::RunInPrivateHost([&](zebcomn_test::PrivateHost& host) {
      host.SetNodeName(item.narrow);
      std::string name = "old";
      const int result = getComputerName(name);
      return std::to_string(result) + name;
    });
    EXPECT_EQ(seen, "1" + sysprops_wide_to_ansi(item.wide)) << item.narrow;
  }
}

}  // namespace
