// What the uptime reader makes of every kind of file.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/support/descriptors.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/util/uptime_internal.h"

namespace {

using zebcomn::ReadUptime;

struct UptimeCase {
  std::string text;
  unsigned long expected;
};

TEST(UptimeFile, IsTheWholeSecondsOfTheFirstField) {
  const UptimeCase cases[] = {
      {"0.53 0.10\n", 0}, {"12345.99 54321.00\n", 12345}, {"7", 7}, {" \n\t 42.5 1", 42},
      {"5,5", 5},         {"4294967295.1 0", 4294967295},
  };
  const zebcomn_test::ScratchDir dir;
  for (const UptimeCase& row : cases) {
    EXPECT_EQ(ReadUptime(dir.Write("uptime", row.text).c_str()), row.expected) << row.text;
  }
}

TEST(UptimeFile, WhatIsNoNumberGivesZero) {
  const zebcomn_test::ScratchDir dir;
  for (const char* const text : {"", "\n", "up 5", ".5", "\xFF\xFE"}) {
    EXPECT_EQ(ReadUptime(dir.Write("uptime", text).c_str()), 0u) << text;
  }
}

TEST(UptimeFile, ANumberWithALeadingZeroIsReadAsOctalOrHexadecimal) {
  const zebcomn_test::ScratchDir dir;
  EXPECT_EQ(ReadUptime(dir.Write("uptime", "010.5 1").c_str()), 8u);
  EXPECT_EQ(ReadUptime(dir.Write("uptime", "0x1f 1").c_str()), 31u);
}

TEST(UptimeFile, ANumberTooLargeIsTheLargest) {
  const zebcomn_test::ScratchDir dir;
  EXPECT_EQ(ReadUptime(dir.Write("uptime", std::string(40, '9')).c_str()), ULONG_MAX);
}

TEST(UptimeFile, AFieldIsReadUpTo1023Characters) {
  const zebcomn_test::ScratchDir dir;
  const std::string zeros(1022, '0');
  EXPECT_EQ(ReadUptime(dir.Write("uptime", zeros + "1234567").c_str()), 1u);
  EXPECT_EQ(ReadUptime(dir.Write("uptime", std::string(100000, '0')).c_str()), 0u);
}

TEST(UptimeFile, AFileThatCannotBeOpenedGivesTheSentinel) {
  const zebcomn_test::ScratchDir dir;
  EXPECT_EQ(ReadUptime((dir / "missing").c_str()), 0x7fffffffu);
}

TEST(UptimeFile, AFileThatCannotBeReadGivesZero) {
  const zebcomn_test::ScratchDir dir;
  EXPECT_EQ(ReadUptime(dir.path().c_str()), 0u);
}

TEST(UptimeFile, IsClosedAgain) {
  const zebcomn_test::ScratchDir dir;
  const std::string file = dir.Write("uptime", "1 1");
  const int before = zebcomn_test::OpenDescriptorCount();
  ReadUptime(file.c_str());
  ReadUptime(dir.path().c_str());
  ReadUptime((dir / "missing").c_str());
  EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), before);
}

}  // namespace
