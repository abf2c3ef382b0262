// Slots of thread-local storage.
#include "zebcomn/portable/tls.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>
#include <vector>

#include "tests/portable/interposed_calls.h"
#include "tests/portable/owned_handle.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::MadeUpKeys;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::WaitForEver;

// The two ends of the table differ inside: the lowest slots are read without the C library.
constexpr DWORD kManySlots = 40;

// Allocates slots and frees them at the end of the scope.
class Slots {
 public:
  explicit Slots(DWORD count) {
    for (DWORD i = 0; i < count; ++i) slots_.push_back(tivTlsAlloc());
  }
  ~Slots() {
    for (const DWORD slot : slots_) EXPECT_EQ(tivTlsFree(slot), TRUE) << slot;
  }
  Slots(const Slots&) = delete;
  Slots& operator=(const Slots&) = delete;

  DWORD operator[](size_t i) const { return slots_[i]; }
  std::vector<DWORD>::const_iterator begin() const { return slots_.begin(); }
  std::vector<DWORD>::const_iterator end() const { return slots_.end(); }

 private:
  std::vector<DWORD> slots_;
};

// A value that no other slot of the thread has.
void* ValueFor(DWORD slot, uintptr_t thread = 0) {
  return reinterpret_cast<void*>((thread + 1) * 0x10000 + slot + 1);
}

// A thread that the library starts and that has ended when the call returns.
void RunAndEndThread() {
  const OwnedHandle thread(NewThread([](void*) -> DWORD { return 0; }, nullptr));
  ASSERT_NE(thread.get(), nullptr);
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
}

TEST(Tls, AllocatesTheLowestFreeSlot) {
  const Slots slots(3);
  EXPECT_EQ(slots[0], 0u);
  EXPECT_EQ(slots[1], 1u);
  EXPECT_EQ(slots[2], 2u);
  EXPECT_EQ(tivTlsFree(1), TRUE);
  EXPECT_EQ(tivTlsAlloc(), 1u);
}

TEST(Tls, TablesShowKeyAndOwner) {
  {
    const Slots slots(1);
    ASSERT_NE(pTlsKeyTable[slots[0]], nullptr);
    EXPECT_EQ(nTlsOwnerTable[slots[0]], static_cast<int32_t>(getpid()));
    tivTlsSetValue(slots[0], ValueFor(1));
    EXPECT_EQ(pthread_getspecific(*pTlsKeyTable[slots[0]]), ValueFor(1));
  }
  EXPECT_EQ(pTlsKeyTable[0], nullptr);
  EXPECT_EQ(nTlsOwnerTable[0], 0);
}

TEST(Tls, ValueNeverSetIsNullWithoutAnError) {
  const Slots slots(kManySlots);
  nErrno = 77;
  for (const DWORD slot : slots) EXPECT_EQ(tivTlsGetValue(slot), nullptr) << slot;
  EXPECT_EQ(nErrno, 77);
}

TEST(Tls, EachSlotKeepsItsOwnValue) {
  const Slots slots(kManySlots);
  for (const DWORD slot : slots) EXPECT_EQ(tivTlsSetValue(slot, ValueFor(slot)), TRUE);
  for (const DWORD slot : slots) EXPECT_EQ(tivTlsGetValue(slot), ValueFor(slot)) << slot;
  for (const DWORD slot : slots) EXPECT_EQ(tivTlsSetValue(slot, nullptr), TRUE);
  for (const DWORD slot : slots) EXPECT_EQ(tivTlsGetValue(slot), nullptr) << slot;
}

TEST(Tls, LowSlotIsReadWithoutTheCLibrary) {
  const Slots slots(kManySlots);
  for (const DWORD slot : slots) tivTlsSetValue(slot, ValueFor(slot));
  // Looked at right beside the calls: a sanitizer that does something of its own asks, too.
  const auto calls_of_get = [](DWORD slot) {
    const zebcomn_test::CallWatch watch;
    const void* value = tivTlsGetValue(slot);
    const int calls = watch.Count(zebcomn_test::Call::kGetspecific);
    EXPECT_EQ(value, ValueFor(slot));
    return calls;
  };
  EXPECT_EQ(calls_of_get(0), 0);
  EXPECT_EQ(calls_of_get(kManySlots - 1), 1);
}

TEST(Tls, EachThreadHasItsOwnValue) {
  const Slots slots(kManySlots);
  for (const DWORD slot : slots) tivTlsSetValue(slot, ValueFor(slot));
  std::thread([&] {
    for (const DWORD slot : slots) EXPECT_EQ(tivTlsGetValue(slot), nullptr) << slot;
    for (const DWORD slot : slots) tivTlsSetValue(slot, ValueFor(slot, 1));
    for (const DWORD slot : slots) EXPECT_EQ(tivTlsGetValue(slot), ValueFor(slot, 1)) << slot;
  }).join();
  for (const DWORD slot : slots) EXPECT_EQ(tivTlsGetValue(slot), ValueFor(slot)) << slot;
}

TEST(Tls, SlotAllocatedAnewHasNoOldValue) {
  for (int round = 0; round < 3; ++round) {
    const Slots slots(kManySlots);
    for (const DWORD slot : slots) {
      EXPECT_EQ(tivTlsGetValue(slot), nullptr) << slot << " in round " << round;
      tivTlsSetValue(slot, ValueFor(slot));
    }
  }
}

TEST(Tls, ValueSetThroughTheKeyItselfIsRead) {
  const Slots slots(kManySlots);
  for (const DWORD slot : slots) pthread_setspecific(*pTlsKeyTable[slot], ValueFor(slot));
  for (const DWORD slot : slots) EXPECT_EQ(tivTlsGetValue(slot), ValueFor(slot)) << slot;
}

TEST(Tls, RefusesFreeSlotsAndIndexesOutOfRange) {
  for (const DWORD slot : {0u, 15u, 16u, 1023u, 1024u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    nErrno = 0;
    EXPECT_EQ(tivTlsGetValue(slot), nullptr);
    EXPECT_EQ(nErrno, 22) << slot;
    nErrno = 0;
    EXPECT_EQ(tivTlsSetValue(slot, ValueFor(1)), FALSE);
    EXPECT_EQ(nErrno, 22) << slot;
    nErrno = 0;
    EXPECT_EQ(tivTlsFree(slot), FALSE);
    EXPECT_EQ(nErrno, 22) << slot;
  }
}

TEST(Tls, FreedSlotIsRefusedEvenWhereItHasAValue) {
  const DWORD slot = tivTlsAlloc();
  tivTlsSetValue(slot, ValueFor(slot));
  EXPECT_EQ(tivTlsFree(slot), TRUE);
  nErrno = 0;
  EXPECT_EQ(tivTlsGetValue(slot), nullptr);
  EXPECT_EQ(nErrno, 22);
  EXPECT_EQ(tivTlsFree(slot), FALSE);
}

TEST(Tls, Slot1025IsRefused) {
  // The system has fewer keys than the table has slots, and others use them too.
  const MadeUpKeys keys(100000);
  {
    const Slots slots(TIV_TLS_SLOT_COUNT);
    for (DWORD i = 0; i < TIV_TLS_SLOT_COUNT; ++i) ASSERT_EQ(slots[i], i);
    nErrno = 0;
    EXPECT_EQ(tivTlsAlloc(), 0xFFFFFFFFu);
    EXPECT_EQ(nErrno, 11);
    EXPECT_EQ(tivTlsFree(700), TRUE);
    EXPECT_EQ(tivTlsAlloc(), 700u);
  }
  EXPECT_EQ(tivTlsAlloc(), 0u);
  EXPECT_EQ(tivTlsFree(0), TRUE);
}

TEST(Tls, EndOfALibraryThreadFreesEverySlotOfTheProcess) {
  for (DWORD i = 0; i < kManySlots; ++i) {
    EXPECT_EQ(tivTlsSetValue(tivTlsAlloc(), ValueFor(i)), TRUE);
  }
  RunAndEndThread();
  for (DWORD slot = 0; slot < kManySlots; ++slot) {
    nErrno = 0;
    EXPECT_EQ(tivTlsGetValue(slot), nullptr);
    EXPECT_EQ(nErrno, 22) << slot;
  }
  EXPECT_EQ(tivTlsAlloc(), 0u);
  EXPECT_EQ(tivTlsGetValue(0), nullptr);
  EXPECT_EQ(tivTlsFree(0), TRUE);
}

TEST(Tls, EndOfALibraryThreadLeavesAnotherProcessesSlots) {
  const Slots slots(2);
  nTlsOwnerTable[slots[1]] = static_cast<int32_t>(getpid()) + 1;
  RunAndEndThread();
  EXPECT_EQ(pTlsKeyTable[slots[0]], nullptr);
  EXPECT_NE(pTlsKeyTable[slots[1]], nullptr);
  EXPECT_EQ(tivTlsAlloc(), slots[0]);
}

TEST(Tls, EndOfAnotherThreadLeavesTheSlots) {
  const Slots slots(2);
  std::thread([&] { tivTlsSetValue(slots[0], ValueFor(1)); }).join();
  EXPECT_NE(pTlsKeyTable[slots[0]], nullptr);
}

TEST(Tls, ConcurrentAllocationsGetSlotsOfTheirOwn) {
  constexpr int kThreads = 4;
  constexpr int kSlotsEach = 20;
  std::vector<std::vector<DWORD>> slots(kThreads);
  std::vector<std::thread> threads;
  for (auto& mine : slots) {
    threads.emplace_back([&mine] {
      for (int i = 0; i < kSlotsEach; ++i) mine.push_back(tivTlsAlloc());
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<bool> taken(kThreads * kSlotsEach);
  for (const auto& mine : slots) {
    for (const DWORD slot : mine) {
      ASSERT_LT(slot, taken.size());
      EXPECT_FALSE(taken[slot]) << slot;
      taken[slot] = true;
      EXPECT_EQ(tivTlsFree(slot), TRUE);
    }
  }
}

}  // namespace
