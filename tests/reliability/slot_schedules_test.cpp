// Thread-local slots that several threads allocate and free. No thread of the library's takes part:
// its end would free every slot (thread_schedules_test.cpp has those).
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <cstdint>

#include "tests/reliability/schedule.h"
#include "zebcomn/portable/tls.h"

namespace {

using zebcomn_test::RunSchedules;

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

TEST(SlotSchedules, SlotsAllocatedAtOnceAreDifferent) {
  RunSchedules(300, [] {
    SlotUser users[2];
    users[0].other_slot = &users[1].slot;
    users[1].other_slot = &users[0].slot;
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

TEST(SlotSchedules, OfTwoFreesOfOneSlotOneSucceeds) {
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

struct Reuse {
  DWORD slot;
  std::atomic<DWORD> next{TIV_INVALID_DWORD};
};

void* SetWhileFreed(void* argument) {
  auto* reuse = static_cast<Reuse*>(argument);
  const BOOL set = tivTlsSetValue(reuse->slot, reuse);
  while (reuse->next == TIV_INVALID_DWORD) sched_yield();
  void* const value = tivTlsGetValue(reuse->next);
  // A set that begins late finds the slot allocated again.
  EXPECT_TRUE(value == nullptr || (set == TRUE && value == reuse));
  return nullptr;
}

TEST(SlotSchedules, ARefusedValueIsNotInTheNextAllocation) {
  RunSchedules(300, [] {
    Reuse reuse{tivTlsAlloc()};
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, SetWhileFreed, &reuse), 0);
    EXPECT_EQ(tivTlsFree(reuse.slot), TRUE);
    reuse.next = tivTlsAlloc();
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    EXPECT_EQ(tivTlsFree(reuse.next), TRUE);
  });
}

}  // namespace
