// The moment at which a wait gives up.
#include "zebcomn/portable/wait_deadline_internal.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

struct Case {
  time_t seconds;
  suseconds_t microseconds;
  DWORD timeout;
  time_t deadline_seconds;
  long deadline_nanoseconds;
};

constexpr Case kCases[] = {
    {0, 0, 0, 0, 0},
    {1000, 0, 1, 1000, 1000000},
    {1000, 0, 999, 1000, 999000000},
    {1000, 0, 1000, 1001, 0},
    {1000, 1, 1001, 1001, 1001000},
    {1000, 999999, 0, 1000, 999999000},
    {1000, 999999, 1000, 1001, 999999000},
    {1000, 999999, 60000, 1060, 999999000},
    // No carry: the nanoseconds may reach a second and more.
    {1000, 499999, 1500, 1001, 999999000},
    {1000, 500000, 1500, 1001, 1000000000},
    {1000, 500001, 1500, 1001, 1000001000},
    {1000, 990000, 10, 1000, 1000000000},
    {1000, 989999, 10, 1000, 999999000},
    {1000, 999999, 999, 1000, 1998999000},
    {1000, 0, 0xFFFFFFFE, 1000 + 4294967, 294000000},
};

TEST(WaitDeadline, AddsWithoutACarryIntoTheSeconds) {
  for (const Case& row : kCases) {
    const timespec deadline =
        zebcomn::MakeWaitDeadline({row.seconds, row.microseconds}, row.timeout);
    EXPECT_EQ(deadline.tv_sec, row.deadline_seconds) << row.microseconds << " + " << row.timeout;
    EXPECT_EQ(deadline.tv_nsec, row.deadline_nanoseconds)
        << row.microseconds << " + " << row.timeout;
  }
}

TEST(WaitDeadline, StaysWithinWhatTheClockCanExpress) {
  constexpr time_t kLast = std::numeric_limits<time_t>::max();
  EXPECT_EQ(zebcomn::MakeWaitDeadline({kLast - 1, 0}, 1000).tv_sec, kLast);
  EXPECT_EQ(zebcomn::MakeWaitDeadline({kLast, 0}, 1000).tv_sec, kLast);
  EXPECT_EQ(zebcomn::MakeWaitDeadline({kLast, 0}, 0xFFFFFFFE).tv_sec, kLast);
}

}  // namespace
