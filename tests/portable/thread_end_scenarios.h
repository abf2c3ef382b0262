#ifndef ZEBCOMN_TESTS_PORTABLE_THREAD_END_SCENARIOS_H_
#define ZEBCOMN_TESTS_PORTABLE_THREAD_END_SCENARIOS_H_

/// \file
/// The moments at which the end of a thread, the close of its handle and the use of slots can meet.
/// The stress tests run them at full speed, tests/reliability under schedules. Each call is one
/// round; none of them may touch what has been freed.

#include <gtest/gtest.h>
#include <sched.h>

#include "tests/portable/owned_handle.h"
#include "zebcomn/portable/tls.h"

namespace zebcomn_test {

inline DWORD EndAtOnce(void* /*parameter*/) {
  return 0;
}

/// A close right after a wait: the ending thread may still be telling the record.
inline void CloseAfterWait() {
  HANDLE thread = NewThread(EndAtOnce, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivCloseHandle(thread), TRUE);
}

/// A close as soon as the flag is seen without the record's lock.
inline void CloseOnFlag() {
  HANDLE thread = NewThread(EndAtOnce, nullptr);
  ASSERT_NE(thread, nullptr);
  while (__atomic_load_n(&RecordOf(thread)->bSignalled, __ATOMIC_ACQUIRE) != 1) sched_yield();
  EXPECT_EQ(tivCloseHandle(thread), TRUE);
}

/// A close that meets the end at any point, or comes before it.
inline void CloseWithoutWait() {
  HANDLE thread = NewThread(EndAtOnce, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(tivCloseHandle(thread), TRUE);
}

/// A close of a thread whose flag was set by hand while it runs.
inline void CloseAfterFlagSetByHand() {
  HANDLE thread = NewThread(EndAtOnce, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(tivSetEvent(thread), TRUE);
  EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivCloseHandle(thread), TRUE);
}

/// Several threads end at once while slots are allocated, so that all of them want to free the same
/// slots, and another thread uses these slots meanwhile.
inline void EndTogetherWithSlots() {
  constexpr int kThreads = 3;
  constexpr DWORD kSlots = 20;
  OwnedHandle gate(NewEvent());
  HANDLE threads[kThreads];
  const auto wait = [](void* handle) -> DWORD { return WaitForEver(handle); };
  for (HANDLE& thread : threads) thread = NewThread(wait, gate.get());
  DWORD slots[kSlots];
  for (DWORD& slot : slots) slot = tivTlsAlloc();
  EXPECT_EQ(tivSetEvent(gate.get()), TRUE);
  for (const DWORD slot : slots) {
    if (slot == TIV_INVALID_DWORD) continue;
    tivTlsSetValue(slot, &slots);
    void* value = tivTlsGetValue(slot);
    EXPECT_TRUE(value == nullptr || value == &slots);
    if (slot % 4 == 0) tivTlsFree(slot);
  }
  for (HANDLE thread : threads) {
    EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
  }
  for (const DWORD slot : slots) tivTlsFree(slot);
}

/// One event lets several waiters through, the last of which closes it.
inline void LastWaiterClosesTheEvent() {
  constexpr LONG kWaiters = 3;
  struct Shared {
    HANDLE event = NewEvent();
    LONG left = kWaiters;
  };
  auto* shared = new Shared;
  const auto wait_and_close = [](void* argument) -> DWORD {
    auto* mine = static_cast<Shared*>(argument);
    EXPECT_EQ(WaitForEver(mine->event), TIV_WAIT_SIGNALLED);
    if (__atomic_sub_fetch(&mine->left, 1, __ATOMIC_ACQ_REL) == 0) {
      EXPECT_EQ(tivCloseHandle(mine->event), TRUE);
      delete mine;
    }
    return 0;
  };
  HANDLE threads[kWaiters];
  for (HANDLE& thread : threads) thread = NewThread(wait_and_close, shared);
  EXPECT_EQ(tivSetEvent(shared->event), TRUE);
  for (HANDLE thread : threads) {
    EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
  }
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_THREAD_END_SCENARIOS_H_
