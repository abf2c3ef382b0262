// The platform of this machine against lists of supported ones.
#include "zebcomn/util/platform_match.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/util/platform_match_step_by_step.h"

namespace {

using zebcomn_test::HoldsALongNumber;
using zebcomn_test::kMatch;
using zebcomn_test::kNoName;
using zebcomn_test::kOtherVersion;
using zebcomn_test::MatchStepByStep;

struct Row {
  const char* platform;
  const char* list;
  uint32_t expected;
};

template <size_t kCount>
void ExpectAll(const Row (&rows)[kCount]) {
  for (const Row& row : rows) {
    EXPECT_EQ(tivmcomn_IsPlatformMatch(row.platform, row.list), row.expected)
        << row.platform << " against " << row.list;
  }
}

TEST(PlatformMatch, NameAndRangeDecide) {
  const Row rows[] = {
      {"WRLX:4:6:0", "WRLX:4:0:0-4:9:9", kMatch},
      {"WRLX:4:6:0", "WRLX:5:0:0", kOtherVersion},
      {"WRLX:4:6:0", "LINUX", kNoName},
      {"WRLX:4:6:0", "WRLX", kMatch},
      {"WRLX:4:6:0", "LINUX|WRLX", kMatch},
      {"WRLX:4:6:0", "WRLX:5:0:0|WRLX:4:0:0", kMatch},
      {"WRLX:4:6:0", "WRLX:5:0:0|LINUX", kOtherVersion},
      {"WRLX:4:6:0", "LINUX:4:6:0|AIX:4:6:0", kNoName},
      {"WRLX:4:6:0", "WRLX:4:0:0-4:5:9", kOtherVersion},
      {"WRLX:4:6:0", "", kNoName},
      {"WRLX", "WRLX", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, BothBoundsAreInclusive) {
  const Row rows[] = {
      {"W:4:6:0", "W:4:6:0-4:6:0", kMatch},        {"W:4:6:0", "W:4:6:0", kMatch},
      {"W:4:6:0", "W:0:0:0-4:6:0", kMatch},        {"W:4:6:0", "W:4:6:1", kOtherVersion},
      {"W:4:6:1", "W:0:0:0-4:6:0", kOtherVersion}, {"W:4:6:0", "W:4:7:0-4:5:0", kOtherVersion},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, WithoutAHighBoundEveryRealVersionIsBelow) {
  const Row rows[] = {
      {"W:65534:65535:65535", "W:1", kMatch},
      {"W:65535:0:0", "W:1", kOtherVersion},
      {"W:65534:65535:65535", "W:", kMatch},
      {"W", "W:", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, BlanksAreDroppedEverywhere) {
  const Row rows[] = {
      {" W R L X : 4 : 6 : 0 ", "WRLX:4:6:0-4:6:0", kMatch},
      {"WRLX:4:6:0", "  LIN UX | W RLX : 4 : 0 : 0 - 4 : 9 : 9 ", kMatch},
      {"WRLX:4 6:0", "WRLX:46:0:0-46:0:0", kMatch},
      {"WRLX:4\t:6:0", "WRLX:4:0:0-4:0:0", kMatch},
      {"WRLX:4:\t6:0", "WRLX:4:6:0-4:6:0", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, NameMatchesAnywhereInThePlatformText) {
  const Row rows[] = {
      {"MYWRLX2:4:6:0", "WRLX", kMatch}, {"WRLX:4:6:0", "RL", kMatch},
      {"WRLX:4:6:0", "6", kMatch},       {"WRLX:4:6:0", "wrlx", kNoName},
      {"WRLX:4:6:0", "WRLX2", kNoName},  {"WRLX:4:6:0", "4:6", kOtherVersion},
      {"WRLX:4:6:0", "4:4:0:0", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, EmptyEntriesArePassedOver) {
  const Row rows[] = {
      {"W:1:0:0", "|||", kNoName},
      {"W:1:0:0", " | | ", kNoName},
      {"W:1:0:0", "||X||W||", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, EmptyNameMatchesEveryPlatform) {
  const Row rows[] = {
      {"W:1:0:0", ":1:0:0", kMatch},
      {"W:1:0:0", ":2:0:0", kOtherVersion},
      {"", ":0:0:0", kMatch},
      {"", "W", kNoName},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, NumbersMissingInThePlatformAreZero) {
  const Row rows[] = {
      {"W", "W:0:0:0-0:0:0", kMatch},         {"W:", "W:0:0:0-0:0:0", kMatch},
      {"W:4", "W:4:0:0-4:0:0", kMatch},       {"W:4:6", "W:4:6:0-4:6:0", kMatch},
      {"W:x:6:0", "W:0:0:0-0:0:0", kMatch},   {"W:4:x:6", "W:4:0:0-4:0:0", kMatch},
      {"W:4.6.0", "W:4:0:0-4:0:0", kMatch},   {"W::4:6", "W:0:0:0-0:0:0", kMatch},
      {"W:4:6:0:9", "W:4:6:0-4:6:0", kMatch}, {"W:4:6:0x9", "W:4:6:0-4:6:0", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, MissingNumbersAreInheritedFromEarlierEntries) {
  const Row rows[] = {
      // No high bound: that of the first entry stands.
      {"W:4:6:0", "W:1:0:0-2:0:0|W:3:0:0", kOtherVersion},
      {"W:4:6:0", "W:1:0:0-5:0:0|W:3:0:0", kMatch},
      // An empty range: both bounds of the first entry stand.
      {"W:4:6:0", "W:5:0:0-6:0:0|W:", kOtherVersion},
      // Half a low version: the rest of the first one stands.
      {"W:4:6:0", "W:5:7:0|W:4", kOtherVersion},
      {"W:4:7:0", "W:5:7:0|W:4", kMatch},
      // Half a high version.
      {"W:4:6:0", "W:0:0:0-3:9:9|W:0:0:0-4", kMatch},
      {"W:4:6:0", "W:0:0:0-3:1:9|W:0:0:0-4", kOtherVersion},
      // Without digits after the "-" nothing is read.
      {"W:4:6:0", "W:0:0:0-3:9:9|W:0:0:0-", kOtherVersion},
      // An entry with another name gives nothing.
      {"W:4:6:0", "X:1:0:0-2:0:0|W:3:0:0", kMatch},
      // A later list starts afresh.
      {"W:4:6:0", "W:3:0:0", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, PartsOf65536CarryIntoTheNext) {
  const Row rows[] = {
      {"W:1:0:0", "W:0:65536:0-0:65536:0", kMatch},
      {"W:0:1:0", "W:0:0:65536-0:0:65536", kMatch},
      {"W:0:65535:65536", "W:1:0:0-1:0:0", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, SignsAreRead) {
  const Row rows[] = {
      {"W:+4:6:0", "W:4:6:0-4:6:0", kMatch},
      {"W:-4:0:0", "W:0:0:0", kOtherVersion},
      // The first "-" is the low version's sign and starts the high version as well.
      {"W:3:0:0", "W:-4:0:0", kMatch},
      {"W:5:0:0", "W:-4:0:0", kOtherVersion},
      {"W:4:0:0", "W:0:0:0-+5:0:0", kMatch},
      {"W:+-4:0:0", "W:0:0:0-0:0:0", kMatch},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, NumbersBeyond32BitsAreTheNearestOnEveryWordSize) {
  const Row rows[] = {
      {"W:2147483648:0:0", "W:2147483647:0:0-2147483647:0:0", kMatch},
      {"W:4294967297:0:0", "W:2147483647:0:0-2147483647:0:0", kMatch},
      {"W:99999999999999999999999999999999:0:0", "W:2147483647:0:0-2147483647:0:0", kMatch},
      {"W:-99999999999999999999999999999999:0:0", "W:0:0:0", kOtherVersion},
      {"W:-2147483649:0:0", "W:0:0:0--2147483648:0:0", kOtherVersion},
      {"W:4294967297:0:0", "W:1:0:0-1:0:0", kOtherVersion},
      {"W:2147483647:2147483647:2147483647", "W:0:0:0", kOtherVersion},
  };
  ExpectAll(rows);
}

TEST(PlatformMatch, NullArgumentsMatchNothing) {
  EXPECT_EQ(tivmcomn_IsPlatformMatch(nullptr, "W"), kNoName);
  EXPECT_EQ(tivmcomn_IsPlatformMatch("W", nullptr), kNoName);
  EXPECT_EQ(tivmcomn_IsPlatformMatch(nullptr, nullptr), kNoName);
}

TEST(PlatformMatch, PlatformTextBeyond259CharactersIsCut) {
  const std::string filler(258, 'f');
  EXPECT_EQ(tivmcomn_IsPlatformMatch((filler + "W").c_str(), "W"), kMatch);
  EXPECT_EQ(tivmcomn_IsPlatformMatch((filler + "fW").c_str(), "W"), kNoName);
  EXPECT_EQ(tivmcomn_IsPlatformMatch((filler + std::string(500, ' ') + "W").c_str(), "W"), kMatch);
  EXPECT_EQ(tivmcomn_IsPlatformMatch((std::string(5000, 'f') + "W").c_str(), "W"), kNoName);
}

TEST(PlatformMatch, ListBeyond259CharactersIsCut) {
  const std::string filler(257, 'f');
  EXPECT_EQ(tivmcomn_IsPlatformMatch("W", (filler + "|W").c_str()), kMatch);
  EXPECT_EQ(tivmcomn_IsPlatformMatch("W", (filler + "f|W").c_str()), kNoName);
  EXPECT_EQ(tivmcomn_IsPlatformMatch("W", (filler + " |" + std::string(99, ' ') + "W").c_str()),
            kMatch);
  EXPECT_EQ(tivmcomn_IsPlatformMatch("W", (std::string(5000, 'f') + "|W").c_str()), kNoName);
}

TEST(PlatformMatch, EveryAnswerIsThatOfTheStepsInTheCLibrarysTerms) {
  const char* const pieces[] = {
      "W",     "W:",    "X", ":",      "-", "|",   "|W:",          "1", "2", "3:", "\t", " ",
      "4:5:6", "70000", "+", "1:0:0-", "x", "\n9", "W:2:1:0-3:0:0"};
  std::mt19937 random(20260102);  // NOLINT: the same texts in every run
  int seen[3] = {};
  for (int round = 0; round < 50000; ++round) {
    std::string platform = "W:";
    for (auto left = random() % 6; left > 0; --left) platform += pieces[random() % 19];
    std::string list;
    for (auto left = random() % 16; left > 0; --left) list += pieces[random() % 19];
    if (HoldsALongNumber(platform) || HoldsALongNumber(list)) continue;
    const uint32_t expected = MatchStepByStep(platform.c_str(), list.c_str());
    ASSERT_EQ(tivmcomn_IsPlatformMatch(platform.c_str(), list.c_str()), expected)
        << platform << " against " << list;
    ++seen[expected == kNoName ? 2 : expected];
  }
  for (const int count : seen) EXPECT_GT(count, 1000);
}

}  // namespace
