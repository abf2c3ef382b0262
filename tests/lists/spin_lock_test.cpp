// The spin lock: its word, and the pauses of its back-off, seen through usleep().
#include "zebcomn/lists/spin_lock.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "tests/lists/attached.h"
#include "zebcomn/portable/global_mutexes.h"
#include "zebcomn/portable/interlocked.h"

namespace {

thread_local std::vector<useconds_t>* pauses = nullptr;
thread_local std::function<void()> on_pause;

// How many tries this thread has made.
thread_local int exchanges = 0;

}  // namespace

extern "C" int usleep(useconds_t microseconds) {
  if (pauses != nullptr) pauses->push_back(microseconds);
  if (on_pause) on_pause();
  return 0;
}

// The library's own exchange, counted, so that a test can end a wait after a given try.
extern "C" LONG tivInterlockedExchange(LONG* lpTarget, LONG lValue) {
  ++exchanges;
  pthread_mutex_lock(&MutexInterlockedExchange);
  const LONG previous = *lpTarget;
  *lpTarget = lValue;
  pthread_mutex_unlock(&MutexInterlockedExchange);
  return previous;
}

namespace {

using zebcomn_test::Rounds;

TEST(SpinLock, GetStoresOneAndReleaseStoresZero) {
  LONG word = 0;
  tiSL_Get(&word);
  EXPECT_EQ(word, 1);
  tiSL_Release(&word);
  EXPECT_EQ(word, 0);
}

TEST(SpinLock, NullPointersDoNothing) {
  tiSL_Get(nullptr);
  tiSL_Release(nullptr);
}

TEST(SpinLock, AFreeWordIsTakenByOneExchangeWithoutAPause) {
  std::vector<useconds_t> seen;
  pauses = &seen;
  exchanges = 0;
  LONG word = 0;
  tiSL_Get(&word);
  EXPECT_EQ(exchanges, 1);
  tiSL_Release(&word);
  EXPECT_EQ(exchanges, 2);
  pauses = nullptr;
  EXPECT_TRUE(seen.empty());
}

TEST(SpinLock, BackOffFollowsItsScheduleAndEndsInPureSpinning) {
  std::vector<useconds_t> seen;
  LONG word = 1;
  std::vector<int> tries_before_pause;
  exchanges = 0;
  pauses = &seen;
  // After the last pause another thread gives the word back, but only once the waiting one has
  // begun to spin again.
  std::thread releaser;
  on_pause = [&] {
    tries_before_pause.push_back(exchanges);
    if (seen.size() < 400) return;
    releaser = std::thread([&word] { tiSL_Release(&word); });
  };
  tiSL_Get(&word);
  on_pause = nullptr;
  pauses = nullptr;
  releaser.join();
  std::vector<useconds_t> expected;
  for (useconds_t pause : {0U, 10'000U, 100'000U, 1'000'000U}) {
    expected.insert(expected.end(), 100, pause);
  }
  EXPECT_EQ(seen, expected);
  // The pause after failed try n comes when n + 1 tries have been made, and n starts at 4000.
  for (size_t pause = 0; pause < tries_before_pause.size(); ++pause) {
    ASSERT_EQ(tries_before_pause[pause], static_cast<int>(4001 + pause));
  }
}

TEST(SpinLock, NoPauseFollowsTheOneSecondStage) {
  std::vector<useconds_t> seen;
  LONG word = 1;
  pauses = &seen;
  exchanges = 0;
  std::atomic<bool> spinning{false};
  std::thread releaser([&] {
    while (!spinning) std::this_thread::yield();
    // Long enough for any pause that followed the schedule to be seen.
    for (int turn = 0; turn < 1000; ++turn) std::this_thread::yield();
    tiSL_Release(&word);
  });
  on_pause = [&] { spinning = seen.size() >= 400; };
  tiSL_Get(&word);
  on_pause = nullptr;
  pauses = nullptr;
  releaser.join();
  EXPECT_EQ(seen.size(), 400U);
  EXPECT_EQ(word, 1);
}

// A release of a lock that was cancelled in a pause used to be lost.
TEST(SpinLock, NoPauseIsACancellationPoint) {
  LONG word = 1;
  int state = PTHREAD_CANCEL_ENABLE;
  on_pause = [&] {
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
    pthread_setcancelstate(state, nullptr);
    tiSL_Release(&word);
  };
  tiSL_Get(&word);
  on_pause = nullptr;
  EXPECT_EQ(state, PTHREAD_CANCEL_DISABLE);
  pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &state);
  EXPECT_EQ(state, PTHREAD_CANCEL_ENABLE) << "the thread can be cancelled afterwards";
}

TEST(SpinLock, ExcludesThreadsFromEachOther) {
  LONG word = 0;
  int guarded = 0;
  constexpr int kThreads = 4;
  constexpr int kTurns = Rounds(20'000);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&] {
      for (int turn = 0; turn < kTurns; ++turn) {
        tiSL_Get(&word);
        ++guarded;
        tiSL_Release(&word);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(guarded, kThreads * kTurns);
  EXPECT_EQ(word, 0);
}

}  // namespace
