// Wake-ups of the lock under schedules that do not come by themselves: a processor yield at every
// thread call, spurious wake-ups, events that somebody else has set, signals, cancellation.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "tests/lists/attached.h"
#include "tests/portable/interposed_calls.h"
#include "tests/support/command.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/tls.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::Call;
using zebcomn_test::LockView;
using zebcomn_test::OwnLock;
using zebcomn_test::Rounds;
using zebcomn_test::SetStepHook;
using zebcomn_test::ViewOf;

_tivHandleObject_t* RecordOf(uintptr_t identity) {
  return reinterpret_cast<_tivHandleObject_t*>(identity);
}

HANDLE HandleOf(uintptr_t identity) {
  return reinterpret_cast<HANDLE>(identity);
}

std::atomic<int> handled_signals{0};

void CountSignal(int) {
  ++handled_signals;
}

/// Counts SIGUSR1, without restarting the calls that it interrupts.
class SignalCounter {
 public:
  SignalCounter() {
    struct sigaction action {};
    action.sa_handler = CountSignal;
    sigaction(SIGUSR1, &action, &before_);
  }
  ~SignalCounter() { sigaction(SIGUSR1, &before_, nullptr); }
  SignalCounter(const SignalCounter&) = delete;
  SignalCounter& operator=(const SignalCounter&) = delete;

 private:
  struct sigaction before_ {};
};

// A step hook runs on threads that a sanitizer does not know yet, or no longer.
#define ZEBCOMN_UNSANITIZED __attribute__((no_sanitize("thread"), no_sanitize("address")))

class StepHook {
 public:
  explicit StepHook(zebcomn_test::StepHook hook) { SetStepHook(hook); }
  ~StepHook() { SetStepHook(nullptr); }
  StepHook(const StepHook&) = delete;
  StepHook& operator=(const StepHook&) = delete;
};

// One thread that waits.

const void* watched_cond = nullptr;
int sleeps = 0;

/// Counts how often somebody goes to sleep on the watched condition.
ZEBCOMN_UNSANITIZED void CountSleeps(Call call, bool before, void* object) {
  if (call != Call::kCondWait || !before) return;
  if (object != __atomic_load_n(&watched_cond, __ATOMIC_ACQUIRE)) return;
  __atomic_fetch_add(&sleeps, 1, __ATOMIC_RELEASE);
}

int Sleeps() {
  return __atomic_load_n(&sleeps, __ATOMIC_ACQUIRE);
}

/// A lock that the test's thread owns, and a thread that sleeps because of that.
class SleepingRequest : public AttachedTest {
 protected:
  SleepingRequest() {
    EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
    __atomic_store_n(&sleeps, 0, __ATOMIC_RELEASE);
    thread_ = std::thread([this] {
      tiSO_ThreadAttach();
      identity_ = tiSO_GetThread();
      const void* cond = &RecordOf(identity_)->cond;
      __atomic_store_n(&watched_cond, cond, __ATOMIC_RELEASE);
      EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
      granted_ = true;
      tiSO_SELockRelease(lock_);
      tiSO_ThreadDetach();
    });
    AwaitSleep(1);
  }
  ~SleepingRequest() override {
    EXPECT_FALSE(granted_.load());
    const LockView view = ViewOf(lock_);
    EXPECT_EQ(view.exclusive, (std::vector<uintptr_t>{identity_}));
    EXPECT_EQ(view.owner, tiSO_GetThread());
    tiSO_SELockRelease(lock_);
    thread_.join();
    EXPECT_TRUE(granted_.load());
    EXPECT_EQ(lock_->count, 0U);
  }

  /// Waits until the thread has gone to sleep that often.
  void AwaitSleep(int times) {
    while (Sleeps() < times) sched_yield();
  }

  StepHook hook_{CountSleeps};
  OwnLock lock_;
  std::atomic<uintptr_t> identity_{0};
  std::atomic<bool> granted_{false};
  std::thread thread_;
};

TEST_F(SleepingRequest, GoesBackToSleepAfterASpuriousWakeUp) {
  while (Sleeps() < 6) {
    pthread_cond_broadcast(&RecordOf(identity_)->cond);
    sched_yield();
  }
}

TEST_F(SleepingRequest, GoesBackToSleepWhenSomebodyElseSetsItsEvent) {
  for (int time = 2; time < 7; ++time) {
    EXPECT_EQ(tivSetEvent(HandleOf(identity_)), 1);
    AwaitSleep(time);
  }
}

TEST_F(SleepingRequest, SleepsOnUnderSignals) {
  const SignalCounter counter;
  for (int wanted = handled_signals + 5; handled_signals < wanted;) {
    const int before = handled_signals;
    ASSERT_EQ(pthread_kill(thread_.native_handle(), SIGUSR1), 0);
    while (handled_signals == before) sched_yield();
  }
}

// Cancellation.

struct CancelledWait {
  tiSO_SELock_t* lock;
  std::atomic<BOOL> answer{-1};
};

void* WaitAndBeCancelled(void* argument) {
  auto* wait = static_cast<CancelledWait*>(argument);
  tiSO_ThreadAttach();
  wait->answer = tiSO_SELockExclusive(wait->lock, 1);
  tiSO_ThreadDetach();
  pthread_testcancel();
  return nullptr;
}

class SeLockSchedule : public AttachedTest {
 protected:
  OwnLock lock_;
};

TEST_F(SeLockSchedule, ACancelledRequestStaysQueuedUntilItIsGranted) {
  if (zebcomn_test::IsEmulated()) GTEST_SKIP() << "the emulator aborts in a cancelled thread";
  EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
  CancelledWait wait{lock_, {-1}};
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, nullptr, WaitAndBeCancelled, &wait), 0);
  while (ViewOf(lock_).exclusive.empty()) sched_yield();
  ASSERT_EQ(pthread_cancel(thread), 0);
  for (int turn = 0; turn < 100; ++turn) sched_yield();
  EXPECT_EQ(ViewOf(lock_).exclusive.size(), 1U);
  tiSO_SELockRelease(lock_);
  void* result = nullptr;
  ASSERT_EQ(pthread_join(thread, &result), 0);
  EXPECT_EQ(result, PTHREAD_CANCELED) << "the cancellation acts after the request";
  EXPECT_EQ(wait.answer.load(), 1);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(lock_->count, 0U);
}

// A thread that somebody else wakes between its grant and its granter's setting of the event.

const void* mutex_of_woken = nullptr;  // Set and read on the granter's thread only.
std::atomic<bool> woken_returned{false};
std::atomic<bool> woken_detached{false};
std::atomic<bool> closed_under_granter{false};
std::atomic<bool> hook_was_hit{false};
thread_local uintptr_t wake_beforehand = 0;

/// Wakes the other thread by hand, and gives it time to run away.
void WakeAndLetRun(uintptr_t woken) {
  hook_was_hit = true;
  tivSetEvent(HandleOf(woken));
  while (!woken_returned) sched_yield();
  for (int turn = 0; turn < 1000; ++turn) sched_yield();
  closed_under_granter = woken_detached.load();
}

/// On the granter's thread, just before its tivSetEvent() takes effect.
ZEBCOMN_UNSANITIZED void WakeBeforehand(Call call, bool before, void* object) {
  if (wake_beforehand == 0 || call != Call::kMutexLock || !before || object != mutex_of_woken) {
    return;
  }
  const uintptr_t woken = wake_beforehand;
  wake_beforehand = 0;
  WakeAndLetRun(woken);
}

TEST_F(SeLockSchedule, AThreadCannotCloseItsEventBeforeItsGranterHasSetIt) {
  const StepHook hook(WakeBeforehand);
  EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
  std::atomic<uintptr_t> identity{0};
  woken_returned = woken_detached = closed_under_granter = hook_was_hit = false;
  std::thread woken([&] {
    tiSO_ThreadAttach();
    identity = tiSO_GetThread();
    EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
    woken_returned = true;
    tiSO_ThreadDetach();
    woken_detached = true;
  });
  while (ViewOf(lock_).exclusive.empty()) sched_yield();
  mutex_of_woken = &RecordOf(identity)->mutex;
  wake_beforehand = identity;
  tiSO_SELockRelease(lock_);
  woken.join();
  EXPECT_TRUE(hook_was_hit.load());
  EXPECT_FALSE(closed_under_granter.load());
  tiSO_SELockRelease(lock_);
}

// Load with a yield at every step.

uint32_t next_seed = 1;

/// Gives the processor up at about a third of all steps, at others in each thread.
ZEBCOMN_UNSANITIZED void YieldSometimes(Call, bool, void*) {
  thread_local uint32_t random = 0;
  while (random == 0) random = __atomic_fetch_add(&next_seed, 1, __ATOMIC_RELAXED) * 2654435761U;
  random ^= random << 13;
  random ^= random >> 17;
  random ^= random << 5;
  if (random % 3 == 0) sched_yield();
}

class SeLockYields : public SeLockSchedule {
 protected:
  static constexpr int kThreads = 4;
  static constexpr int kTurns = Rounds(800);

  void Write() {
    ++left_;
    sched_yield();
    ++right_;
  }
  void Read() { broken_ += left_ != right_ ? 1 : 0; }

  void UseLock(int turn) {
    switch (turn % 4) {
      case 0:
      case 1:
        ASSERT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
        Write();
        if (turn % 8 == 0) tiSO_SELockExclusiveToShared(lock_);
        break;
      case 2:
        ASSERT_EQ(tiSO_SELockSharedStarveExclusive(lock_, 1), 1);
        Read();
        break;
      default:
        ASSERT_EQ(tiSO_SELockSharedWaitForExclusive(lock_, 1), 1);
        Read();
    }
    tiSO_SELockRelease(lock_);
  }

  /// Several threads use the lock while `disturb` is called over and over with each of them.
  void RunDisturbed(const std::function<void(uintptr_t identity, pthread_t thread)>& disturb) {
    const StepHook hook(YieldSometimes);
    std::atomic<uintptr_t> identities[kThreads] = {};
    std::atomic<int> at_work{kThreads};
    std::atomic<bool> may_end{false};
    std::vector<std::thread> threads;
    for (std::atomic<uintptr_t>& identity : identities) {
      threads.emplace_back([this, &identity, &at_work, &may_end] {
        tiSO_ThreadAttach();
        identity = tiSO_GetThread();
        for (int turn = 0; turn < kTurns; ++turn) UseLock(turn);
        --at_work;
        while (!may_end) sched_yield();
        tiSO_ThreadDetach();
      });
    }
    while (at_work > 0) {
      for (size_t thread = 0; thread < kThreads; ++thread) {
        if (identities[thread] == 0) continue;
        disturb(identities[thread], threads[thread].native_handle());
      }
      sched_yield();
    }
    may_end = true;
    for (std::thread& thread : threads) thread.join();
    ExpectWhole(kThreads * kTurns / 2);
  }

  void ExpectWhole(unsigned writes) {
    EXPECT_EQ(broken_.load(), 0);
    EXPECT_EQ(left_, writes);
    EXPECT_EQ(right_, writes);
    EXPECT_EQ(lock_->count, 0U);
    EXPECT_EQ(lock_->owner, TISO_NO_THREAD);
  }

  // Plain, so that the thread sanitizer sees it when two meet.
  unsigned left_ = 0;
  unsigned right_ = 0;
  std::atomic<int> broken_{0};
};

TEST_F(SeLockYields, NoWakeUpIsLostOrInvented) {
  RunDisturbed([](uintptr_t, pthread_t) {});
}

TEST_F(SeLockYields, SpuriousWakeUpsInventNoGrant) {
  RunDisturbed(
      [](uintptr_t identity, pthread_t) { pthread_cond_broadcast(&RecordOf(identity)->cond); });
}

TEST_F(SeLockYields, EventsSetBySomebodyElseInventNoGrant) {
  RunDisturbed([](uintptr_t identity, pthread_t) { tivSetEvent(HandleOf(identity)); });
}

TEST_F(SeLockYields, SignalsLoseNoWakeUp) {
  const SignalCounter counter;
  RunDisturbed([](uintptr_t, pthread_t thread) { pthread_kill(thread, SIGUSR1); });
  EXPECT_GT(handled_signals.load(), 0);
}

TEST_F(SeLockYields, ThreadsMayDetachRightAfterTheirGrant) {
  const StepHook hook(YieldSometimes);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([this] {
      for (int turn = 0; turn < kTurns; ++turn) {
        tiSO_ThreadAttach();
        tivSetEvent(HandleOf(tiSO_GetThread()));  // So that it wakes up early at least once.
        UseLock(turn);
        tiSO_ThreadDetach();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  ExpectWhole(kThreads * kTurns / 2);
}

// The identity slot is freed, and given to somebody else, in the middle of the detach.

DWORD given_slot = TIV_INVALID_DWORD;

void GiveTheIdentitySlotToSomebodyElse(Call call, bool before, void* /*object*/) {
  if (call != Call::kMutexLock || !before) return;
  SetStepHook(nullptr);
  tivTlsFree(tiSO_tls_index);
  given_slot = tivTlsAlloc();
}

TEST(ProcessDetach, LeavesTheSlotAloneThatSomebodyElseIsGivenMeanwhile) {
  const DWORD slot = tiSO_ProcessAttach();
  {
    const StepHook hook(GiveTheIdentitySlotToSomebodyElse);
    EXPECT_EQ(tiSO_ProcessDetach(), FALSE);
  }
  EXPECT_EQ(tiSO_tls_index, TIV_INVALID_DWORD);
  ASSERT_EQ(given_slot, slot);
  EXPECT_EQ(tivTlsSetValue(slot, &given_slot), TRUE);
  EXPECT_EQ(tivTlsGetValue(slot), &given_slot);
  EXPECT_EQ(tivTlsFree(slot), TRUE);
}

// The new identity slot is freed, and given to somebody else, before the attach has ended: the end
// of a library thread does so. The attach used to take the other's slot for its own.

void GiveTheNewSlotToSomebodyElse(Call call, bool before, void* /*object*/) {
  if (call != Call::kMutexUnlock || before) return;
  SetStepHook(nullptr);
  tivTlsFree(0);
  given_slot = tivTlsAlloc();
}

TEST(ProcessAttach, DoesNotTakeTheSlotForItsOwnThatSomebodyElseIsGivenMeanwhile) {
  given_slot = TIV_INVALID_DWORD;
  {
    const StepHook hook(GiveTheNewSlotToSomebodyElse);
    EXPECT_EQ(tiSO_ProcessAttach(), 0U);
  }
  ASSERT_EQ(given_slot, 0U);
  EXPECT_EQ(tivTlsSetValue(given_slot, &given_slot), TRUE);
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_ThreadAttachX(), FALSE);
  EXPECT_EQ(tiSO_ProcessDetach(), FALSE);
  EXPECT_EQ(tivTlsGetValue(given_slot), &given_slot);
  EXPECT_EQ(tivTlsFree(given_slot), TRUE);
}

}  // namespace
