// The checkers themselves: a silent run proves something only if a fault would have been reported.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/command.h"

namespace {

using ::testing::HasSubstr;
using zebcomn_test::CommandResult;
using zebcomn_test::RunCommand;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kWatchesMemory = true;
constexpr const char* kLostBlock = "LeakSanitizer: detected memory leaks";
constexpr const char* kBadWrite = "AddressSanitizer: heap-buffer-overflow";
#elif defined(ZEBCOMN_UNDER_VALGRIND)
constexpr bool kWatchesMemory = true;
constexpr const char* kLostBlock = "definitely lost";
constexpr const char* kBadWrite = "Invalid write";
#else
constexpr bool kWatchesMemory = false;
constexpr const char* kLostBlock = "";
constexpr const char* kBadWrite = "";
#endif

void ExpectReported(const std::string& fault, const char* report) {
  const CommandResult result = RunCommand({FAULTY_PROGRAM, fault});
  EXPECT_NE(result.exit_status, 0);
  EXPECT_THAT(result.err, HasSubstr(report));
}

TEST(Checkers, LostBlockIsReported) {
  if (!kWatchesMemory) GTEST_SKIP() << "no checker of memory is in this build";
  ExpectReported("leak", kLostBlock);
}

TEST(Checkers, BlockLostInAChildIsReported) {
  if (!kWatchesMemory) GTEST_SKIP() << "no checker of memory is in this build";
  ExpectReported("leak in a child", kLostBlock);
}

TEST(Checkers, WritePastABlockIsReported) {
  if (!kWatchesMemory) GTEST_SKIP() << "no checker of memory is in this build";
  ExpectReported("write", kBadWrite);
}

TEST(Checkers, OverflowIsReported) {
#if defined(__SANITIZE_ADDRESS__)
  ExpectReported("overflow", "signed integer overflow");
#else
  GTEST_SKIP() << "no checker of undefined behaviour is in this build";
#endif
}

TEST(Checkers, RaceIsReported) {
#if defined(__SANITIZE_THREAD__)
  ExpectReported("race", "ThreadSanitizer: data race");
#else
  GTEST_SKIP() << "no checker of races is in this build";
#endif
}

TEST(Checkers, ProgramWithoutAFaultEndsWell) {
  const CommandResult result = zebcomn_test::RunTargetCommand({FAULTY_PROGRAM});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.err, "");
}

}  // namespace
