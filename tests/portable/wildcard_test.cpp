#include "zebcomn/portable/wildcard.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/portable/wildcard_recursion.h"

namespace {

/// The answer of the plain recursion.
int32_t RecursiveMatch(const char* pattern, const char* name) {
  size_t steps = 100'000'000;
  const int32_t result = zebcomn_test::RecursiveMatch(pattern, name, steps);
  EXPECT_GT(steps, 0U) << "the recursion gave up on " << pattern << " on " << name;
  return result;
}

struct MatchCase {
  const char* pattern;
  const char* name;
  int32_t result;
};

void ExpectResults(const std::vector<MatchCase>& cases) {
  for (const MatchCase& c : cases) {
    EXPECT_EQ(tivWildCardMatch(c.pattern, c.name), c.result) << c.pattern << " on " << c.name;
    EXPECT_EQ(RecursiveMatch(c.pattern, c.name), c.result) << c.pattern << " on " << c.name;
  }
}

TEST(WildCardMatch, NullOrEmptyPatternMatchesAnything) {
  EXPECT_EQ(tivWildCardMatch(nullptr, "abc"), 0);
  EXPECT_EQ(tivWildCardMatch("", "abc"), 0);
  EXPECT_EQ(tivWildCardMatch("", ""), 0);
  EXPECT_EQ(tivWildCardMatch(nullptr, nullptr), 0);
}

TEST(WildCardMatch, NullNameMatchesNoOtherPattern) {
  EXPECT_EQ(tivWildCardMatch("a", nullptr), 1);
  EXPECT_EQ(tivWildCardMatch("*", nullptr), 1);
}

TEST(WildCardMatch, PatternWithoutWildcardsMatchesEveryNameThatBeginsWithIt) {
  ExpectResults({{"abc", "abc", 0},
                 {"abc", "abcdef", 0},
                 {"abc", "ab", 1},
                 {"abc", "xabc", 1},
                 {"abc", "", 1}});
}

TEST(WildCardMatch, LettersKeepTheirCase) {
  ExpectResults({{"abc", "ABC", 1}, {"*B", "ab", 1}, {"*b", "ab", 0}});
}

TEST(WildCardMatch, QuestionMarkNeedsOneCharacter) {
  ExpectResults({{"a?c", "abc", 0},
                 {"a?c", "ab", 1},
                 {"a?c", "ac", 1},
                 {"?", "", 1},
                 {"?", "x", 0},
                 {"??", "x", 1},
                 {"a?", "a?b", 0}});
}

TEST(WildCardMatch, StarMatchesAnyNumberOfCharacters) {
  ExpectResults({{"*", "", 0},
                 {"*", "abc", 0},
                 {"a*c", "abbbc", 0},
                 {"a*c", "ac", 0},
                 {"a*c", "abbb", 1},
                 {"*.log", "x.log", 0},
                 {"*.log", "x.lo", 1},
                 {"*?", "x", 0},
                 {"a*b*c", "a1b2c3", 0},
                 {"a*b*c", "a1c2b3", 1}});
}

TEST(WildCardMatch, EndOfPatternMatchesTheRestOfTheName) {
  ExpectResults({{"*.log", "x.log.1", 0}, {"a*b", "acbd", 0}, {"a?", "abcd", 0}});
}

TEST(WildCardMatch, StarAtTheEndOfTheNameMatchesWhateverFollowsIt) {
  ExpectResults({{"a*z", "a", 0},
                 {"*z", "", 0},
                 {"*a*b", "xaya", 0},
                 {"*a*?", "ba", 0},
                 {"*ab*cd", "abxab", 0},
                 {"?*?", "x", 0},
                 {"*a*b", "xay", 1}});
}

TEST(WildCardMatch, RunsOfStarsMatchAsOneDoes) {
  ExpectResults(
      {{"**", "", 0}, {"**", "a", 0}, {"a**b", "axb", 0}, {"a**b", "ax", 1}, {"***x", "y", 1}});
}

TEST(WildCardMatch, BytesAboveAsciiStandForThemselves) {
  ExpectResults(
      {{"\xC3\xBC*", "\xC3\xBC.txt", 0}, {"?", "\xC3\xBC", 0}, {"\xC3\xA4", "\xC3\xBC", 1}});
}

std::string TextOfNumber(unsigned number, const std::string& alphabet, unsigned length) {
  std::string text;
  for (unsigned i = 0; i < length; ++i) {
    text += alphabet[number % alphabet.size()];
    number /= static_cast<unsigned>(alphabet.size());
  }
  return text;
}

std::vector<std::string> AllTexts(const std::string& alphabet, unsigned longest) {
  std::vector<std::string> texts;
  unsigned count = 1;
  for (unsigned length = 0; length <= longest; ++length) {
    for (unsigned i = 0; i < count; ++i) texts.push_back(TextOfNumber(i, alphabet, length));
    count *= static_cast<unsigned>(alphabet.size());
  }
  return texts;
}

TEST(WildCardMatch, AgreesWithTheRecursionOnEveryShortText) {
  const std::vector<std::string> names = AllTexts("ab", 6);
  for (const std::string& pattern : AllTexts("ab?*", 5)) {
    for (const std::string& name : names) {
      ASSERT_EQ(tivWildCardMatch(pattern.c_str(), name.c_str()),
                RecursiveMatch(pattern.c_str(), name.c_str()))
          << pattern << " on " << name;
    }
  }
}

TEST(WildCardMatch, AgreesWithTheRecursionOnRandomTexts) {
  std::mt19937 random(20);
  const auto text = [&random](const std::string& alphabet, size_t longest) {
    std::string result(random() % (longest + 1), ' ');
    for (char& c : result) c = alphabet[random() % alphabet.size()];
    return result;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::string pattern = text("aab?**", 10);
    const std::string name = text("aaab", 14);
    ASSERT_EQ(tivWildCardMatch(pattern.c_str(), name.c_str()),
              RecursiveMatch(pattern.c_str(), name.c_str()))
        << pattern << " on " << name;
  }
}

// Long enough for the search that short texts do without.
TEST(WildCardMatch, AgreesWithTheRecursionOnLongTexts) {
  std::mt19937 random(21);
  int matches = 0;
  for (int round = 0; round < 2000; ++round) {
    std::string name(300 + random() % 100, ' ');
    for (char& c : name) c = "ab"[random() % 2];
    const size_t length = 20 + random() % 40;
    const size_t place = random() % (name.size() - length);
    const std::string segment = name.substr(place, length);
    // What follows the segment must be looked for right behind the first place of it, neither
    // within it nor farther on.
    const std::string next = name.substr(place + length - random() % 2, 4);
    for (const std::string& pattern :
         {"*" + segment, "*" + segment + "c", "*" + segment + "*" + next + "*c",
          "*" + segment + "*" + segment, "*" + segment.substr(0, 10) + "?" + segment.substr(11)}) {
      const int32_t expected = RecursiveMatch(pattern.c_str(), name.c_str());
      ASSERT_EQ(tivWildCardMatch(pattern.c_str(), name.c_str()), expected)
          << pattern << " on " << name;
      matches += expected == 0 ? 1 : 0;
    }
    ASSERT_EQ(tivWildCardMatch(("*" + segment + "*c").c_str(),
                               (name.substr(0, place + length) + "c").c_str()),
              0);
  }
  EXPECT_GT(matches, 4000);
  EXPECT_LT(matches, 9000);
}

TEST(WildCardMatch, LongSegmentThatNearlyFitsEverywhereEndsSoon) {
  const std::string name(1000000, 'a');
  const std::string pattern = "*" + std::string(500000, 'a') + "b";
  // Comparing the segment at every place of the name would take minutes.
  EXPECT_EQ(tivWildCardMatch(pattern.c_str(), name.c_str()), 1);
  EXPECT_EQ(tivWildCardMatch(pattern.c_str(), (name + "bc").c_str()), 0);
}

TEST(WildCardMatch, ManyStarsOnALongNameEndSoon) {
  std::string pattern;
  for (int i = 0; i < 1000; ++i) pattern += "*a";
  pattern += "*b";
  // The recursion would need more steps here than any machine can take.
  const std::string name(4000, 'a');
  EXPECT_EQ(tivWildCardMatch(pattern.c_str(), (name + "c").c_str()), 1);
  EXPECT_EQ(tivWildCardMatch(pattern.c_str(), name.c_str()), 0);
  EXPECT_EQ(tivWildCardMatch(pattern.c_str(), (name + "b").c_str()), 0);
}

}  // namespace
