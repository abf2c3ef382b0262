// Waits on several handles. The single wait that they are made of is the test's own here.
#include <gtest/gtest.h>

#include <vector>

#include "tests/support/command.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/portable/wait.h"

namespace {

struct SingleWait {
  HANDLE handle;
  DWORD timeout;
};

// What the single waits give, the last one for ever, and what they were asked.
std::vector<DWORD> g_results;
std::vector<SingleWait> g_waits;

// How many waits time out before the results above begin, unrecorded.
uint64_t g_uncounted_timeouts = 0;

DWORD NextResult() {
  const size_t done = g_waits.size() - 1;
  return done < g_results.size() ? g_results[done] : g_results.back();
}

HANDLE Handle(uintptr_t number) {
  return reinterpret_cast<HANDLE>(number);
}

const HANDLE kHandles[] = {Handle(16), Handle(32), Handle(48)};

DWORD WaitForThree(std::vector<DWORD> results, DWORD timeout, BOOL wait_all = 0) {
  g_results = std::move(results);
  g_waits.clear();
  return tivWaitForMultipleObjects(3, kHandles, wait_all, timeout);
}

TEST(WaitForSeveral, WaitingForAllIsRefusedWithoutAReason) {
  nErrno = 77;
  for (const BOOL wait_all : {1, 2, -1}) {
    EXPECT_EQ(WaitForThree({TIV_WAIT_SIGNALLED}, 100, wait_all), 0u) << wait_all;
  }
  EXPECT_TRUE(g_waits.empty());
  EXPECT_EQ(tivWaitForMultipleObjects(1, nullptr, 1, 100), 0u)
      << "before the handles are looked at";
  EXPECT_EQ(nErrno, 77);
}

TEST(WaitForSeveral, GivesTwoAndTheIndex) {
  EXPECT_EQ(WaitForThree({2}, 100), 2u);
  EXPECT_EQ(WaitForThree({3, 2}, 100), 3u);
  EXPECT_EQ(WaitForThree({3, 3, 2}, 100), 4u);
  EXPECT_EQ(WaitForThree({3, 3, 3, 3, 2}, 100), 3u);
}

TEST(WaitForSeveral, VisitsTheHandlesInOrderInSlicesOfTenMilliseconds) {
  EXPECT_EQ(WaitForThree({3}, 65), TIV_WAIT_TIMEOUT);
  ASSERT_EQ(g_waits.size(), 7u);
  for (size_t i = 0; i < g_waits.size(); ++i) {
    EXPECT_EQ(g_waits[i].handle, kHandles[i % 3]) << i;
    EXPECT_EQ(g_waits[i].timeout, 10u) << i;
  }
}

TEST(WaitForSeveral, EachSingleWaitCountsTenMilliseconds) {
  struct Row {
    DWORD timeout;
    size_t waits;
  };
  for (const Row& row : {Row{1, 1}, Row{10, 1}, Row{11, 2}, Row{100, 10}}) {
    EXPECT_EQ(WaitForThree({3}, row.timeout), TIV_WAIT_TIMEOUT);
    EXPECT_EQ(g_waits.size(), row.waits) << row.timeout;
  }
}

TEST(WaitForSeveral, TimeoutZeroLooksAtNoHandle) {
  EXPECT_EQ(WaitForThree({2}, 0), TIV_WAIT_TIMEOUT);
  EXPECT_TRUE(g_waits.empty());
  EXPECT_EQ(tivWaitForMultipleObjects(1, nullptr, 0, 0), TIV_WAIT_TIMEOUT);
}

TEST(WaitForSeveral, FailureAndTheReservedResultEndTheWait) {
  EXPECT_EQ(WaitForThree({3, 0}, 100), 0u);
  EXPECT_EQ(g_waits.size(), 2u);
  EXPECT_EQ(WaitForThree({3, 1}, 100), 1u);
  EXPECT_EQ(g_waits.size(), 2u);
  EXPECT_EQ(WaitForThree({4}, 100), 0u);
  EXPECT_EQ(WaitForThree({0xFFFFFFFF}, 100), 0u);
}

TEST(WaitForSeveral, CountZeroLooksAtTheFirstHandleOnly) {
  g_results = {3, 3, 3, 2};
  g_waits.clear();
  EXPECT_EQ(tivWaitForMultipleObjects(0, kHandles, 0, 100), 2u);
  ASSERT_EQ(g_waits.size(), 4u);
  for (const SingleWait& wait : g_waits) EXPECT_EQ(wait.handle, kHandles[0]);
}

TEST(WaitForSeveral, RefusesNullHandles) {
  nErrno = 0;
  EXPECT_EQ(tivWaitForMultipleObjects(1, nullptr, 0, 10), 0u);
  EXPECT_EQ(nErrno, 22);
}

TEST(WaitForSeveral, LargestTimeoutIsACountThatWrapsAndIsNeverReached) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(ZEBCOMN_UNDER_VALGRIND)
  GTEST_SKIP() << "429 million calls take too long under a checker";
#else
  if (zebcomn_test::IsEmulated()) GTEST_SKIP() << "429 million calls take too long emulated";
  constexpr uint64_t kSlicesToTheWrap = (uint64_t{1} << 32) / 10 + 1;
  g_uncounted_timeouts = kSlicesToTheWrap + 5;
  EXPECT_EQ(WaitForThree({2}, TIV_WAIT_INFINITE), 2u + (kSlicesToTheWrap + 5) % 3);
  EXPECT_EQ(g_uncounted_timeouts, 0u);
#endif
}

}  // namespace

// Stands in for the library's own, which the wait on several handles calls through the same name.
extern "C" __attribute__((visibility("default"))) DWORD tivWaitForSingleObject(
    HANDLE hHandle, DWORD dwMilliseconds) {
  if (g_uncounted_timeouts != 0) {
    --g_uncounted_timeouts;
    return TIV_WAIT_TIMEOUT;
  }
  g_waits.push_back({hHandle, dwMilliseconds});
  return NextResult();
}
