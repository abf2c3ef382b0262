#include "zebcomn/network/ipv6_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

struct TextCase {
  const char* input;
  const char* expected;
};

std::string Repeat(const std::string& piece, size_t times) {
  std::string text;
  for (size_t i = 0; i < times; ++i) text += piece;
  return text;
}

TEST(NoOfOccurences, CountsBelowEightAreReturned) {
  EXPECT_EQ(noOfOccurences("", ':', 7), 0);
  EXPECT_EQ(noOfOccurences("fe80", ':', 7), 0);
  EXPECT_EQ(noOfOccurences("a:b:c", ':', 7), 2);
  EXPECT_EQ(noOfOccurences(":::::::", ':', 3), 7);
  EXPECT_EQ(noOfOccurences(std::string("a\0b\0", 4), '\0', 7), 2);
}

TEST(NoOfOccurences, EightAndMoreGiveTheCap) {
  EXPECT_EQ(noOfOccurences("::::::::", ':', 7), 7);
  EXPECT_EQ(noOfOccurences(std::string(1000, ':'), ':', 7), 7);
  EXPECT_EQ(noOfOccurences("::::::::", ':', 300), 300);
}

TEST(NoOfOccurences, TheCapIsCutToSixteenBits) {
  EXPECT_EQ(noOfOccurences("::::::::", ':', -1), 0xFFFF);
  EXPECT_EQ(noOfOccurences("::::::::", ':', 0x10007), 7);
}

TEST(NoOfOccurences, TheCounterHasSixteenBits) {
  EXPECT_EQ(noOfOccurences(std::string(65535, ':'), ':', 7), 7);
  EXPECT_EQ(noOfOccurences(std::string(65536, ':'), ':', 7), 0);
  EXPECT_EQ(noOfOccurences(std::string(65536 + 3, ':'), ':', 7), 3);
  EXPECT_EQ(noOfOccurences(std::string(65536 + 8, ':'), ':', 7), 7);
}

TEST(ExpandIPV6Address, WritesTheZeroGroupsOut) {
  const TextCase cases[] = {
      {"fe80::1", "fe80:0:0:0:0:0:0:1"},
      {"::1", "0:0:0:0:0:0:0:1"},
      {"::", "0:0:0:0:0:0:0:0"},
      {"ffff:ffff:ffff:ffff::", "ffff:ffff:ffff:ffff:0:0:0:0"},
      {"2001:db8::8:800:200c:417a", "2001:db8:0:0:8:800:200c:417a"},
      {"fe80::211:22ff:fe33:4455", "fe80:0:0:0:211:22ff:fe33:4455"},
      {"1:2:3:4:5:6:7::", "1:2:3:4:5:6:7:0"},
      {"::2:3:4:5:6:7:8", "0:2:3:4:5:6:7:8"},
      {"1::", "1:0:0:0:0:0:0:0"},
  };
  for (const TextCase& each : cases) EXPECT_EQ(expandIPV6Address(each.input), each.expected);
}

TEST(ExpandIPV6Address, TextWithoutAGapKeepsItsGroups) {
  const TextCase cases[] = {
      {"", ""},
      {"10.1.2.3", "10.1.2.3"},
      {"0fe8:0000:1:2:3:4:5:0006", "0fe8:0000:1:2:3:4:5:0006"},
      {"FE80:0:0:0:0:0:0:1", "FE80:0:0:0:0:0:0:1"},
      {"a:b:", "a:b:"},
      {":", ":"},
  };
  for (const TextCase& each : cases) EXPECT_EQ(expandIPV6Address(each.input), each.expected);
}

TEST(ExpandIPV6Address, TheScopeGoesFromEveryAddress) {
  const TextCase cases[] = {
      {"fe80::1%eth0", "fe80:0:0:0:0:0:0:1"},
      {"fec0::1%2", "fec0:0:0:0:0:0:0:1"},
      {"2001:db8::1%eth0", "2001:db8:0:0:0:0:0:1"},
      {"10.1.2.3%lo", "10.1.2.3"},
      {"%eth0", ""},
      {"a%b%c", "a"},
      {"a%::", "a"},
  };
  for (const TextCase& each : cases) EXPECT_EQ(expandIPV6Address(each.input), each.expected);
}

TEST(ExpandIPV6Address, ADottedTailCountsAsOneGroup) {
  EXPECT_EQ(expandIPV6Address("::ffff:10.1.2.3"), "0:0:0:0:0:0:ffff:10.1.2.3");
  EXPECT_EQ(expandIPV6Address("64:ff9b::192.0.2.33"), "64:ff9b:0:0:0:0:0:192.0.2.33");
}

TEST(ExpandIPV6Address, TooManyColonsAddNoGroups) {
  EXPECT_EQ(expandIPV6Address("1:2:3:4:5:6:7:8::9"), "1:2:3:4:5:6:7:8:9");
  EXPECT_EQ(expandIPV6Address("1:2:3:4::5:6:7:8:9"), "1:2:3:4:5:6:7:8:9");
  EXPECT_EQ(expandIPV6Address("::1:2:3:4:5:6:7:8"), "0:1:2:3:4:5:6:7:8");
  EXPECT_EQ(expandIPV6Address(Repeat("1:", 5000) + ":" + Repeat("2:", 5000)),
            Repeat("1:", 5000) + Repeat("2:", 5000) + "0");
}

TEST(ExpandIPV6Address, OnlyTheFirstGapIsFilled) {
  EXPECT_EQ(expandIPV6Address("1::2::3"), "1:0:0:0:0:2::3");
  EXPECT_EQ(expandIPV6Address(":::"), "0:0:0:0:0:0::0");
}

TEST(CalculateSubNetAddrForV6, MasksGroupByGroup) {
  EXPECT_EQ(
      calculateSubNetAddrForV6("fe80:0:0:0:211:22ff:fe33:4455", "ffff:ffff:ffff:ffff:0:0:0:0"),
      "fe80:0:0:0:0:0:0:0");
  EXPECT_EQ(calculateSubNetAddrForV6("2001:db8:0:0:8:800:200c:417a", "ffff:ffff:ff00:0:0:0:0:0"),
            "2001:db8:0:0:0:0:0:0");
  EXPECT_EQ(calculateSubNetAddrForV6("2001:DB8:0:0:8:800:200C:417A", "ffff:ffff:ff00:0:0:0:f0:FF"),
            "2001:db8:0:0:0:0:0:7a");
}

TEST(CalculateSubNetAddrForV6, AnEmptyTextGivesTheEmptyText) {
  EXPECT_EQ(calculateSubNetAddrForV6("", "ffff:0:0:0:0:0:0:0"), "");
  EXPECT_EQ(calculateSubNetAddrForV6("fe80:0:0:0:0:0:0:1", ""), "");
  EXPECT_EQ(calculateSubNetAddrForV6("", ""), "");
}

TEST(CalculateSubNetAddrForV6, HasAsManyGroupsAsTheShorterText) {
  EXPECT_EQ(calculateSubNetAddrForV6("fe80:1:2", "ffff"), "fe80");
  EXPECT_EQ(calculateSubNetAddrForV6("fe80", "ffff:ffff:ffff"), "fe80");
  EXPECT_EQ(calculateSubNetAddrForV6("fe80::1", "ffff:ffff:ffff"), "fe80:0:1");
  EXPECT_EQ(calculateSubNetAddrForV6("fe80:", "ffff:ffff:ffff"), "fe80:0");
  EXPECT_EQ(calculateSubNetAddrForV6(":", ":"), "0:0");
}

TEST(CalculateSubNetAddrForV6, GroupsReadAsThirtyTwoBitNumbersOnEveryTarget) {
  const TextCase cases[] = {
      {"zz", "0"},
      {"12zz", "12"},
      {"0x1F", "1f"},
      {"0XfG", "f"},
      {"0x", "0"},
      {"-0x10", "fffffff0"},
      {"+5", "5"},
      {"+-5", "0"},
      {"-", "0"},
      {" ", "0"},
      {"\t\n\v\f\r 2A ", "2a"},
      {"00000000000000000001", "1"},

      {" 2a", "2a"},
      {"10.1.2.3", "10"},
      {"12345678", "12345678"},
      {"-1", "ffffffff"},
      {"-2", "fffffffe"},
      {"-ffffffff", "1"},
      {"ffffffff", "ffffffff"},
      {"100000000", "ffffffff"},
      {"-100000000", "ffffffff"},
      {"ffffffffffffffff", "ffffffff"},
      {"fffffffffffffffe-", "ffffffff"},
      {"123456789abcdef0123456789", "ffffffff"},
      {"-123456789abcdef0123456789", "ffffffff"},
  };
  for (const TextCase& each : cases) {
    EXPECT_EQ(calculateSubNetAddrForV6(each.input, "ffffffff"), each.expected) << each.input;
  }
  EXPECT_EQ(calculateSubNetAddrForV6(std::string("1\0002", 3), "ffffffff"), "1") << "a NUL ends it";
}

// Found by fuzzing: a group of 64 bits or nearly so wrapped into the 32 bits when it had a sign.
TEST(CalculateSubNetAddrForV6, ASignBringsNoWideNumberBackIntoThirtyTwoBits) {
  for (const char* const group :
       {"-ffffffffffffffff", "-fffffffffffffff0", "-100000000", "-fffffffffffffffffff",
        " -ffffffff00000001", "+ffffffffffffffff"}) {
    EXPECT_EQ(calculateSubNetAddrForV6(group, "ffffffff"), "ffffffff") << group;
  }
  EXPECT_EQ(calculateSubNetAddrForV6("-fffffffe", "ffffffff"), "2");
  EXPECT_EQ(calculateSubNetAddrForV6("--1", "ffffffff"), "0");
  EXPECT_EQ(calculateSubNetAddrForV6("- 1", "ffffffff"), "0");
}

TEST(ConvertV6AddrToLiteralFormat, WritesAHostNameAndDropsTheScope) {
  const TextCase cases[] = {
      {"[fe80::1%eth0]", "fe80--1.ipv6-literal.net"},
      {"fe80::1%eth0", "fe80--1.ipv6-literal.net"},
      {"2001:db8::1", "2001-db8--1.ipv6-literal.net"},
      {"[2001:db8::1]:80", "2001-db8--1.ipv6-literal.net"},
      {"::", "--.ipv6-literal.net"},
      {"[]:", ".ipv6-literal.net"},
      {"[fe80::1", "[fe80--1.ipv6-literal.net"},
      {"]fe80::1[", "]fe80--1[.ipv6-literal.net"},
  };
  for (const TextCase& each : cases) {
    EXPECT_EQ(convertV6AddrToLiteralFormat(each.input), each.expected);
  }
}

TEST(ConvertV6AddrToLiteralFormat, WhatIsNoBareAddressStaysAsItIs) {
  for (const char* text : {"", "10.1.2.3", "host", "[host]", "a%b", "fe80--1.ipv6-literal.net",
                           "[x:y].ipv6-literal.net:80"}) {
    EXPECT_EQ(convertV6AddrToLiteralFormat(text), text);
  }
}

TEST(ConvertLiteralFormatToV6Addr, ReadsTheAddressAndDropsTheScope) {
  const TextCase cases[] = {
      {"fe80--1s4.ipv6-literal.net", "fe80::1"},
      {"fe80--1.ipv6-literal.net", "fe80::1"},
      {"[2001-db8--1.ipv6-literal.net]:80", "2001:db8::1"},
      {"2001-db8--1.ipv6-literal.net:80", "2001:db8::1"},
      {".ipv6-literal.net", ""},
      {"s.ipv6-literal.net", ""},
      {"1-s-2s3.ipv6-literal.net", "1:"},
      {"a.ipv6-literal.net.ipv6-literal.net", "a"},
  };
  for (const TextCase& each : cases) {
    EXPECT_EQ(convertLiteralFormatToV6Addr(each.input), each.expected);
  }
}

TEST(ConvertLiteralFormatToV6Addr, AnOrdinaryHostNameStaysAsItIs) {
  for (const char* text :
       {"", "host.example.net", "as-is", "10.1.2.3", "fe80::1", "][", "[", "]"}) {
    EXPECT_EQ(convertLiteralFormatToV6Addr(text), text);
  }
}

TEST(ConvertLiteralFormatToV6Addr, BracketsComeOffAnyText) {
  EXPECT_EQ(convertLiteralFormatToV6Addr("[host]:80"), "host");
  EXPECT_EQ(convertLiteralFormatToV6Addr("[]"), "");
  EXPECT_EQ(convertLiteralFormatToV6Addr("[fe80-1].ipv6-literal.net"), "fe80-1");
}

TEST(LiteralFormat, TheTwoConversionsAreAsymmetricInTheScope) {
  EXPECT_EQ(convertLiteralFormatToV6Addr(convertV6AddrToLiteralFormat("fe80::1%4")), "fe80::1");
  EXPECT_EQ(
      convertV6AddrToLiteralFormat(convertLiteralFormatToV6Addr("fe80--1s4.ipv6-literal.net")),
      "fe80--1.ipv6-literal.net");
}

TEST(FindNthOccuranceOf, CountsFromOne) {
  EXPECT_EQ(findNthOccuranceOf("a.b.c", ".", 1), 1U);
  EXPECT_EQ(findNthOccuranceOf("a.b.c", ".", 2), 3U);
  EXPECT_EQ(findNthOccuranceOf(".a", ".", 1), 0U);
}

TEST(FindNthOccuranceOf, FewerThanAskedForAreNotFound) {
  EXPECT_EQ(findNthOccuranceOf("a.b.c", ".", 3), std::string::npos);
  EXPECT_EQ(findNthOccuranceOf("a.b.c", ".", UINT32_MAX), std::string::npos);
  EXPECT_EQ(findNthOccuranceOf("", "a", 1), std::string::npos);
  EXPECT_EQ(findNthOccuranceOf("abc", "abcd", 1), std::string::npos);
}

TEST(FindNthOccuranceOf, TheZerothIsNotFound) {
  EXPECT_EQ(findNthOccuranceOf("a.b.c", ".", 0), std::string::npos);
}

TEST(FindNthOccuranceOf, OccurrencesMayOverlap) {
  EXPECT_EQ(findNthOccuranceOf("aaa", "aa", 2), 1U);
  EXPECT_EQ(findNthOccuranceOf("aaa", "aa", 3), std::string::npos);
}

TEST(FindNthOccuranceOf, AnEmptyPatternOccursAtEveryPositionAndAtTheEnd) {
  EXPECT_EQ(findNthOccuranceOf("ab", "", 1), 0U);
  EXPECT_EQ(findNthOccuranceOf("ab", "", 3), 2U);
  EXPECT_EQ(findNthOccuranceOf("ab", "", 4), std::string::npos);
}

// Long texts are searched by another way than short ones.
TEST(FindNthOccuranceOf, LongTextsAndPatternsAreSearchedAlike) {
  std::string pattern(300, 'a');
  pattern[150] = '\0';
  std::string text(100'000, 'a');
  for (const size_t at : {900U, 901U, 40'000U, 99'849U}) text.replace(at, 1, 1, '\0');
  text.replace(1200, 300, pattern);
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 1), 1200U);
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 2), 39'850U);
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 3), 99'699U);
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 4), std::string::npos);
  EXPECT_EQ(findNthOccuranceOf(text, text, 1), 0U);
  EXPECT_EQ(findNthOccuranceOf(text, text + 'a', 1), std::string::npos);
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 0), std::string::npos);
}

// A pattern that occurs everywhere: searched anew for each occurrence it would take minutes.
TEST(FindNthOccuranceOf, ManyOverlappingOccurrencesAreNoBurden) {
  const std::string text(1'000'000, 'a');
  const std::string pattern(500'000, 'a');
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 400'000), 399'999U);
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 500'001), 500'000U);
  EXPECT_EQ(findNthOccuranceOf(text, pattern, 500'002), std::string::npos);
}

TEST(FindNthOccuranceOf, AgreesWithASearchForEachOccurrence) {
  std::mt19937 engine(20240607);
  const auto draw = [&](size_t length) {
    std::string text(length, 'a');
    for (char& letter : text) letter = engine() % 8 == 0 ? 'b' : 'a';
    return text;
  };
  for (int round = 0; round < 300; ++round) {
    const std::string pattern = draw(1 + engine() % 12);
    const std::string text = draw(4096 / pattern.size() + engine() % 200);
    size_t place = std::string::npos;
    for (unsigned int n = 1; n <= 40; ++n) {
      if (n == 1 || place != std::string::npos) place = text.find(pattern, place + 1);
      ASSERT_EQ(findNthOccuranceOf(text, pattern, n), place) << pattern << " in " << text;
    }
  }
}

/// Texts over the characters that mean something to these functions, and bytes that mean nothing.
class RandomText {
 public:
  std::string Next() {
    static const std::vector<std::string> pieces = {":",
                                                    "::",
                                                    "%",
                                                    "[",
                                                    "]",
                                                    "-",
                                                    "s",
                                                    "0",
                                                    "fe80",
                                                    "fec0",
                                                    "f",
                                                    ".",
                                                    "ipv6-literal.net",
                                                    ".ipv6-literal.net",
                                                    "10.1.2.3",
                                                    " ",
                                                    "x",
                                                    std::string(1, '\0'),
                                                    "\xFF",
                                                    "+",
                                                    "99999999999"};
    std::string text;
    for (auto left = engine_() % 24; left > 0; --left) text += pieces[engine_() % pieces.size()];
    return text;
  }

 private:
  std::mt19937 engine_{20240607};
};

TEST(IPv6Text, NoTextMakesAFunctionFailOrGrowItsResultWithoutBound) {
  constexpr size_t kAddedAtMost = 32;
  RandomText random;
  for (int round = 0; round < 20000; ++round) {
    const std::string text = random.Next();
    const std::string other = random.Next();
    EXPECT_LE(expandIPV6Address(text).size(), text.size() + kAddedAtMost);
    EXPECT_LE(convertV6AddrToLiteralFormat(text).size(), text.size() + kAddedAtMost);
    EXPECT_LE(convertLiteralFormatToV6Addr(text).size(), text.size());
    EXPECT_LE(calculateSubNetAddrForV6(text, other).size(), 9 * (text.size() + 1));
    const size_t found = findNthOccuranceOf(text, other, 2);
    EXPECT_TRUE(found == std::string::npos || found + other.size() <= text.size());
    EXPECT_LE(noOfOccurences(text, ':', 7), 7);
  }
}

TEST(IPv6Text, ExpandingTwiceChangesNothingMoreInAnAddress) {
  for (const char* text :
       {"fe80::1%eth0", "::", "::1", "10.1.2.3", "2001:db8::", "1:2:3:4:5:6:7:8"}) {
    const std::string once = expandIPV6Address(text);
    EXPECT_EQ(expandIPV6Address(once), once);
  }
}

}  // namespace
