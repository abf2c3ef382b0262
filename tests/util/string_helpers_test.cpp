// The string helpers, through the shared library.
#include "zebcomn/util/string_helpers.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using namespace quenty_com::pelu;

struct TextCase {
  std::string input;
  std::string expected;
};

TEST(ChopSemicolon, EndsTheTextAtTheFirstSemicolon) {
  char text[] = "a;b;c";
  EXPECT_EQ(tivmcomn_chop_semicolon(text), text + 1);
  EXPECT_EQ(std::string(text, sizeof text), std::string("a\0b;c\0", 6));
}

TEST(ChopSemicolon, ASemicolonAtTheFrontLeavesTheEmptyText) {
  char text[] = ";";
  EXPECT_EQ(tivmcomn_chop_semicolon(text), text);
  EXPECT_STREQ(text, "");
}

TEST(ChopSemicolon, ATextWithoutOneIsLeftAlone) {
  char text[] = "abc";
  EXPECT_EQ(tivmcomn_chop_semicolon(text), nullptr);
  EXPECT_STREQ(text, "abc");
  char empty[] = "";
  EXPECT_EQ(tivmcomn_chop_semicolon(empty), nullptr);
}

TEST(ChopSemicolon, NullGivesNull) {
  EXPECT_EQ(tivmcomn_chop_semicolon(nullptr), nullptr);
}

TEST(AppendBackslashCheck, AddsASlashAndReturnsTheLengthFromBefore) {
  char text[] = {'d', 'i', 'r', '\0', 'x', 'x'};
  EXPECT_EQ(tivmcomn_append_backslash_check(text), 3u);
  EXPECT_EQ(std::string(text, sizeof text), std::string("dir/\0x", 6));
}

TEST(AppendBackslashCheck, ATextThatEndsInASlashIsLeftAlone) {
  char text[] = "dir/";
  EXPECT_EQ(tivmcomn_append_backslash_check(text), 4u);
  EXPECT_STREQ(text, "dir/");
}

TEST(AppendBackslashCheck, ABackslashIsNoSeparator) {
  char text[8] = "dir\\";
  EXPECT_EQ(tivmcomn_append_backslash_check(text), 4u);
  EXPECT_STREQ(text, "dir\\/");
}

TEST(AppendBackslashCheck, TheEmptyTextBecomesASlash) {
  // What stands before the text must not be looked at.
  char buffer[] = {'/', '\0', 'x', 'x'};
  EXPECT_EQ(tivmcomn_append_backslash_check(buffer + 1), 0u);
  EXPECT_EQ(std::string(buffer, sizeof buffer), std::string("//\0x", 4));
}

TEST(AppendBackslashCheck, NullGivesZero) {
  EXPECT_EQ(tivmcomn_append_backslash_check(nullptr), 0u);
}

TEST(ConvertCase, MapsTheAsciiLettersAndNothingElse) {
  const std::string every_other = "09 _-\t{}[]@`~";
  EXPECT_EQ(tivmcomn_convert_to_upper("azAZ" + every_other), "AZAZ" + every_other);
  EXPECT_EQ(tivmcomn_convert_to_lower("azAZ" + every_other), "azaz" + every_other);
  EXPECT_EQ(tivmcomn_convert_to_upper(""), "");
  EXPECT_EQ(tivmcomn_convert_to_lower(""), "");
}

TEST(ConvertCase, EveryByteAbove127PassesThrough) {
  std::string high;
  for (int byte = 128; byte < 256; ++byte) high += static_cast<char>(byte);
  EXPECT_EQ(tivmcomn_convert_to_upper(high), high);
  EXPECT_EQ(tivmcomn_convert_to_lower(high), high);
}

TEST(ConvertCase, ANulInsideTheTextIsKept) {
  EXPECT_EQ(tivmcomn_convert_to_upper(std::string("a\0b", 3)), std::string("A\0B", 3));
}

TEST(StripLeadingWhitespace, TakesEveryKindOfWhiteSpaceFromTheFrontAlone) {
  const TextCase cases[] = {
      {"  x ", "x "}, {" \t\n\v\f\rx", "x"},       {"x", "x"}, {"x y ", "x y "}, {"   ", ""},
      {"", ""},       {std::string(100, ' '), ""},
  };
  for (const TextCase& row : cases) {
    EXPECT_EQ(tivmcomn_strip_leading_whitespace(row.input), row.expected) << row.input;
  }
}

TEST(StripTrailingWhitespace, TakesEveryKindOfWhiteSpaceFromTheEndAlone) {
  const TextCase cases[] = {
      {"  x ", "  x"}, {"x \t\n\v\f\r", "x"},       {"x", "x"}, {" x y", " x y"}, {"   ", ""},
      {"", ""},        {std::string(100, ' '), ""},
  };
  for (const TextCase& row : cases) {
    EXPECT_EQ(tivmcomn_strip_trailing_whitespace(row.input), row.expected) << row.input;
  }
}

TEST(StripWhitespace, HighBytesAreNoWhiteSpace) {
  const std::string text = "\xA0x\x85";
  EXPECT_EQ(tivmcomn_strip_leading_whitespace(text), text);
  EXPECT_EQ(tivmcomn_strip_trailing_whitespace(text), text);
}

TEST(LongToString, PrintsDecimalDigitsAndASign) {
  for (const long value : {0L, 7L, -5L, 1234567890L, LONG_MAX, LONG_MIN}) {
    EXPECT_EQ(tivmcomn_long_to_ansi_string(value), std::to_string(value));
    EXPECT_EQ(tivmcomn_long_to_wide_string(value), std::to_wstring(value));
  }
  EXPECT_EQ(tivmcomn_long_to_ansi_string(-5), "-5");
  EXPECT_EQ(tivmcomn_long_to_wide_string(-5), L"-5");
}

}  // namespace
