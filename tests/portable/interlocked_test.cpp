// Counters under process-wide locks.
#include "zebcomn/portable/interlocked.h"

#include <gtest/gtest.h>

#include <climits>
#include <thread>
#include <vector>

#include "zebcomn/portable/error.h"

namespace {

// Runs `body` on several threads at once.
template <typename Body>
void OnThreads(int count, const Body& body) {
  std::vector<std::thread> threads;
  threads.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) threads.emplace_back(body, i);
  for (std::thread& thread : threads) thread.join();
}

TEST(Interlocked, IncrementAndDecrementGiveTheNewValue) {
  LONG value = -1;
  EXPECT_EQ(tivInterlockedIncrement(&value), 0);
  EXPECT_EQ(tivInterlockedIncrement(&value), 1);
  EXPECT_EQ(tivInterlockedDecrement(&value), 0);
  EXPECT_EQ(tivInterlockedDecrement(&value), -1);
}

TEST(Interlocked, ValuesWrap) {
  LONG value = INT32_MAX;
  EXPECT_EQ(tivInterlockedIncrement(&value), INT32_MIN);
  EXPECT_EQ(tivInterlockedDecrement(&value), INT32_MAX);
}

TEST(Interlocked, ExchangeGivesThePreviousValue) {
  LONG value = 5;
  EXPECT_EQ(tivInterlockedExchange(&value, -7), 5);
  EXPECT_EQ(value, -7);
}

TEST(Interlocked, NullGivesZero) {
  nErrno = 0;
  EXPECT_EQ(tivInterlockedIncrement(nullptr), 0);
  EXPECT_EQ(nErrno, 22);
  nErrno = 0;
  EXPECT_EQ(tivInterlockedDecrement(nullptr), 0);
  EXPECT_EQ(nErrno, 22);
  nErrno = 0;
  EXPECT_EQ(tivInterlockedExchange(nullptr, 1), 0);
  EXPECT_EQ(nErrno, 22);
}

TEST(Interlocked, NoIncrementOrDecrementIsLost) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 5000;
  LONG value = 0;
  OnThreads(kThreads, [&](int) {
    for (int i = 0; i < kRounds; ++i) {
      tivInterlockedIncrement(&value);
      tivInterlockedIncrement(&value);
      tivInterlockedDecrement(&value);
    }
  });
  EXPECT_EQ(value, kThreads * kRounds);
}

TEST(Interlocked, EachExchangedValueComesBackOnce) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 2000;
  LONG value = 0;
  std::vector<int> seen(kThreads * kRounds + 1);
  std::vector<std::vector<LONG>> previous(kThreads);
  OnThreads(kThreads, [&](int thread) {
    for (int i = 0; i < kRounds; ++i) {
      const LONG mine = thread * kRounds + i + 1;
      previous[static_cast<size_t>(thread)].push_back(tivInterlockedExchange(&value, mine));
    }
  });
  for (const auto& values : previous) {
    for (const LONG one : values) ++seen[static_cast<size_t>(one)];
  }
  ++seen[static_cast<size_t>(value)];
  for (size_t i = 0; i < seen.size(); ++i) EXPECT_EQ(seen[i], 1) << i;
}

TEST(Interlocked, ExchangesAndIncrementsOfOneVariableMeetWithoutATornValue) {
  // Two different locks: one of two simultaneous changes may be lost, but no other value appears.
  constexpr int kRounds = 5000;
  LONG value = 0;
  OnThreads(2, [&](int thread) {
    for (int i = 0; i < kRounds; ++i) {
      if (thread == 0) {
        tivInterlockedIncrement(&value);
      } else {
        const LONG previous = tivInterlockedExchange(&value, 0);
        EXPECT_GE(previous, 0);
        EXPECT_LE(previous, kRounds);
      }
    }
  });
  EXPECT_GE(value, 0);
  EXPECT_LE(value, kRounds);
}

}  // namespace
