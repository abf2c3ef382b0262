// Waits on one handle.
#include "zebcomn/portable/wait.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>

#include "tests/portable/interposed_calls.h"
#include "tests/portable/owned_handle.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::Call;
using zebcomn_test::CallWatch;
using zebcomn_test::FixedClock;
using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::Poll;
using zebcomn_test::RecordOf;
using zebcomn_test::WaitForEver;

// A moment long past, so that every deadline near it has passed too.
constexpr time_t kPastSecond = 1000;

TEST(Wait, RefusesNull) {
  nErrno = 0;
  EXPECT_EQ(Poll(nullptr), 0u);
  EXPECT_EQ(nErrno, 22);
}

TEST(Wait, RefusesFilesAndUnknownTypes) {
  const OwnedHandle event(NewEvent(1));
  for (const int32_t type : {0, 4, -1}) {
    nErrno = 0;
    event.record()->nType = type;
    EXPECT_EQ(Poll(event.get()), 0u) << type;
    EXPECT_EQ(nErrno, 22) << type;
  }
  event.record()->nType = TIV_HANDLE_EVENT;
}

TEST(Wait, SignalledEventLetsEverybodyThroughAndStaysSet) {
  const OwnedHandle event(NewEvent(1));
  for (const DWORD timeout : {0u, 1u, 1500u, TIV_WAIT_INFINITE}) {
    EXPECT_EQ(tivWaitForSingleObject(event.get(), timeout), 2u) << timeout;
  }
  EXPECT_EQ(event.record()->bSignalled, 1);
}

TEST(Wait, OnlyOneCountsAsSignalled) {
  const OwnedHandle event(NewEvent());
  event.record()->bSignalled = 2;
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_TIMEOUT);
}

TEST(Wait, StateThatDecidesNeedsNeitherTheClockNorASleep) {
  const OwnedHandle unset(NewEvent());
  const OwnedHandle set(NewEvent(1));
  const OwnedHandle owned(tivCreateMutex(nullptr, 1, nullptr));
  const CallWatch watch;
  EXPECT_EQ(Poll(unset.get()), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(Poll(owned.get()), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(tivWaitForSingleObject(set.get(), 1500), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(watch.Count(Call::kGettimeofday), 0);
  EXPECT_EQ(watch.Count(Call::kCondTimedwait), 0);
  EXPECT_EQ(watch.Count(Call::kCondWait), 0);
  EXPECT_EQ(watch.Count(Call::kMutexLock), 3);
  EXPECT_EQ(watch.Count(Call::kMutexUnlock), 3);
}

TEST(Wait, TimeoutIsAWaitOnTheWallClock) {
  const OwnedHandle event(NewEvent());
  const FixedClock clock({kPastSecond, 0});
  const CallWatch watch;
  EXPECT_EQ(tivWaitForSingleObject(event.get(), 60000), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(watch.Count(Call::kGettimeofday), 1);
  EXPECT_EQ(watch.Count(Call::kCondTimedwait), 1);
  EXPECT_EQ(watch.Count(Call::kMutexLock), watch.Count(Call::kMutexUnlock));
}

TEST(Wait, TimeoutPassesForReal) {
  const OwnedHandle event(NewEvent());
  DWORD result = TIV_WAIT_FAILED;
  // Waits that begin in the last milliseconds of a second fail at once; one after them does not.
  while (result == TIV_WAIT_FAILED) result = tivWaitForSingleObject(event.get(), 5);
  EXPECT_EQ(result, TIV_WAIT_TIMEOUT);
}

TEST(Wait, DeadlineWithoutCarryFailsAtOnce) {
  const OwnedHandle event(NewEvent());
  struct Row {
    suseconds_t microseconds;
    DWORD timeout;
    DWORD result;
  };
  for (const Row& row : {Row{499999, 1500, TIV_WAIT_TIMEOUT}, Row{500000, 1500, TIV_WAIT_FAILED},
                         Row{500001, 1500, TIV_WAIT_FAILED}, Row{989999, 10, TIV_WAIT_TIMEOUT},
                         Row{990000, 10, TIV_WAIT_FAILED}, Row{999999, 1, TIV_WAIT_FAILED},
                         Row{999999, 1000, TIV_WAIT_TIMEOUT}, Row{999999, 0, TIV_WAIT_TIMEOUT}}) {
    const FixedClock clock({kPastSecond, row.microseconds});
    nErrno = 77;
    EXPECT_EQ(tivWaitForSingleObject(event.get(), row.timeout), row.result)
        << row.microseconds << " us, " << row.timeout << " ms";
    EXPECT_EQ(nErrno, 77);
  }
  EXPECT_EQ(tivSetEvent(event.get()), TRUE) << "the record is not left locked";
}

TEST(Wait, MutexIsTaken) {
  const OwnedHandle mutex(tivCreateMutex(nullptr, 0, nullptr));
  EXPECT_EQ(WaitForEver(mutex.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(mutex.record()->bSignalled, 0);
  const FixedClock clock({kPastSecond, 0});
  EXPECT_EQ(tivWaitForSingleObject(mutex.get(), 100), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
}

struct Waiter {
  HANDLE event;
  std::atomic<bool> done{false};
  DWORD result = TIV_WAIT_FAILED;
};

DWORD WaitOnce(void* argument) {
  auto* waiter = static_cast<Waiter*>(argument);
  waiter->result = WaitForEver(waiter->event);
  waiter->done = true;
  return 0;
}

TEST(Wait, AnyWakeUpCountsAsSignalled) {
  const OwnedHandle event(NewEvent());
  Waiter waiter;
  waiter.event = event.get();
  const OwnedHandle thread(NewThread(WaitOnce, &waiter));
  while (!waiter.done) {
    pthread_mutex_lock(&event.record()->mutex);
    pthread_cond_broadcast(&event.record()->cond);
    pthread_mutex_unlock(&event.record()->mutex);
  }
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(waiter.result, TIV_WAIT_SIGNALLED);
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_TIMEOUT) << "the event was never set";
}

TEST(Wait, SetEventWakesEveryWaiter) {
  constexpr int kWaiters = 8;
  const OwnedHandle event(NewEvent());
  Waiter waiters[kWaiters];
  HANDLE threads[kWaiters];
  for (int i = 0; i < kWaiters; ++i) {
    waiters[i].event = event.get();
    threads[i] = NewThread(WaitOnce, &waiters[i]);
  }
  EXPECT_EQ(tivSetEvent(event.get()), TRUE);
  for (int i = 0; i < kWaiters; ++i) {
    EXPECT_EQ(WaitForEver(threads[i]), TIV_WAIT_SIGNALLED);
    EXPECT_EQ(waiters[i].result, TIV_WAIT_SIGNALLED);
    EXPECT_EQ(tivCloseHandle(threads[i]), TRUE);
  }
}

TEST(Wait, MutexHandleMadeSignalledByHandTakesTheFreeLock) {
  const OwnedHandle mutex(tivCreateMutex(nullptr, 0, nullptr));
  tivResetEvent(mutex.get());
  EXPECT_EQ(Poll(mutex.get()), TIV_WAIT_TIMEOUT);
  tivSetEvent(mutex.get());
  EXPECT_EQ(Poll(mutex.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
}

}  // namespace
