// The Windows-style codes for C error numbers.
#include "zebcomn/portable/error.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <map>
#include <thread>

#include "zebcomn/portable/event.h"

namespace {

// Every number that has a code of its own.
const std::map<int, DWORD> kCodes = {
    {0, 0},    {2, 38},    {5, 38},    {6, 38},   {37, 38},  {61, 38},  {3, 126},
    {4, 126},  {9, 126},   {19, 126},  {7, 259},  {12, 259}, {23, 259}, {24, 259},
    {27, 259}, {28, 259},  {31, 259},  {11, 997}, {16, 997}, {26, 997}, {35, 997},
    {13, 5},   {22, 1010}, {25, 1010}, {30, 19},
};

const int32_t error_at_start = nErrno;

DWORD CodeFor(int number) {
  errno = number;
  return tivGetLastError();
}

TEST(LastError, EveryNumberHasItsCode) {
  for (int number = -1; number <= 200; ++number) {
    const auto row = kCodes.find(number);
    EXPECT_EQ(CodeFor(number), row == kCodes.end() ? 0x80000008u : row->second) << number;
  }
}

TEST(LastError, NumbersFarOutsideGiveTheGeneralCode) {
  EXPECT_EQ(CodeFor(INT_MAX), 0x80000008u);
  EXPECT_EQ(CodeFor(INT_MIN), 0x80000008u);
}

TEST(LastError, TimeoutGivesTheGeneralCode) {
  EXPECT_EQ(CodeFor(110), 0x80000008u);
}

TEST(LastError, LeavesErrnoAlone) {
  CodeFor(13);
  EXPECT_EQ(errno, 13);
}

TEST(LastError, DoesNotLookAtTheErrorSlot) {
  nErrno = 13;
  EXPECT_EQ(CodeFor(0), 0u);
  EXPECT_EQ(nErrno, 13);
}

TEST(ErrorSlot, IsZeroAtFirst) {
  EXPECT_EQ(error_at_start, 0);
}

TEST(ErrorSlot, IsOneForAllThreads) {
  nErrno = 0;
  std::thread([] { EXPECT_EQ(tivResetEvent(nullptr), FALSE); }).join();
  EXPECT_EQ(nErrno, EINVAL);
}

}  // namespace
