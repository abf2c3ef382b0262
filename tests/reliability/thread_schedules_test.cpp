// The ends of threads against closes, waits and slots.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cstdint>

#include "tests/portable/thread_end_scenarios.h"
#include "tests/reliability/schedule.h"

namespace {

using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::RunSchedules;
using zebcomn_test::WaitForEver;

TEST(ThreadSchedules, CloseAfterWait) {
  RunSchedules(400, zebcomn_test::CloseAfterWait);
}

TEST(ThreadSchedules, CloseOnFlag) {
  RunSchedules(400, zebcomn_test::CloseOnFlag);
}

TEST(ThreadSchedules, CloseWithoutWait) {
  RunSchedules(400, zebcomn_test::CloseWithoutWait);
}

TEST(ThreadSchedules, CloseAfterFlagSetByHand) {
  RunSchedules(400, zebcomn_test::CloseAfterFlagSetByHand);
}

TEST(ThreadSchedules, LastWaiterClosesTheEvent) {
  RunSchedules(200, zebcomn_test::LastWaiterClosesTheEvent);
}

TEST(ThreadSchedules, EndTogetherWithSlots) {
  RunSchedules(100, zebcomn_test::EndTogetherWithSlots);
}

// A waiter lets the closer go on only when it has seen the end, as a component does that collects
// its threads.
TEST(ThreadSchedules, SeveralWaitForOneThread) {
  RunSchedules(200, [] {
    struct Shared {
      HANDLE gate = NewEvent();
      HANDLE thread = nullptr;
    } shared;
    shared.thread = NewThread([](void* gate) -> DWORD { return WaitForEver(gate); }, shared.gate);
    const auto wait = [](void* argument) -> DWORD {
      EXPECT_EQ(WaitForEver(static_cast<Shared*>(argument)->thread), TIV_WAIT_SIGNALLED);
      return 0;
    };
    {
      const OwnedHandle first(NewThread(wait, &shared));
      const OwnedHandle second(NewThread(wait, &shared));
      EXPECT_EQ(tivSetEvent(shared.gate), TRUE);
      EXPECT_EQ(WaitForEver(first.get()), TIV_WAIT_SIGNALLED);
      EXPECT_EQ(WaitForEver(second.get()), TIV_WAIT_SIGNALLED);
    }
    EXPECT_EQ(tivCloseHandle(shared.thread), TRUE);
    EXPECT_EQ(tivCloseHandle(shared.gate), TRUE);
  });
}

// Slots that come and go on two threads: each thread's value is its own, in a slot of its own.
struct SlotUser {
  std::atomic<DWORD>* other_slot;
  std::atomic<DWORD> slot{TIV_INVALID_DWORD};
};

DWORD UseSlots(void* argument) {
  auto* user = static_cast<SlotUser*>(argument);
  for (int turn = 0; turn < 3; ++turn) {
    const DWORD slot = tivTlsAlloc();
    EXPECT_NE(slot, TIV_INVALID_DWORD);
    user->slot = slot;
    EXPECT_NE(slot, user->other_slot->load()) << "one slot for two";
    EXPECT_EQ(tivTlsGetValue(slot), nullptr) << "a new slot has no value";
    EXPECT_EQ(tivTlsSetValue(slot, user), TRUE);
    EXPECT_EQ(tivTlsGetValue(slot), user);
    user->slot = TIV_INVALID_DWORD;
    EXPECT_EQ(tivTlsFree(slot), TRUE);
  }
  return 0;
}

void* UseSlotsOnPlainThread(void* argument) {
  UseSlots(argument);
  return nullptr;
}

TEST(ThreadSchedules, SlotsAllocatedAtOnceAreDifferent) {
  RunSchedules(300, [] {
    SlotUser users[2];
    users[0].other_slot = &users[1].slot;
    users[1].other_slot = &users[0].slot;
    // A thread of the library's would free every slot at its end.
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, UseSlotsOnPlainThread, &users[1]), 0);
    UseSlots(&users[0]);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
  });
}

void* FreeSlot(void* argument) {
  auto* slot = static_cast<std::atomic<DWORD>*>(argument);
  return reinterpret_cast<void*>(uintptr_t{tivTlsFree(slot->load()) == TRUE});
}

TEST(ThreadSchedules, OfTwoFreesOfOneSlotOneSucceeds) {
  RunSchedules(300, [] {
    std::atomic<DWORD> slot{tivTlsAlloc()};
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, FreeSlot, &slot), 0);
    const BOOL freed_here = tivTlsFree(slot);
    void* freed_there = nullptr;
    ASSERT_EQ(pthread_join(thread, &freed_there), 0);
    EXPECT_NE(freed_here == TRUE, freed_there != nullptr);
  });
}

}  // namespace
