// Each call of the C library that a creation makes, of a handle or of a thread-local slot, fails
// once, in each place.
#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

#include "tests/portable/fails_under.h"
#include "tests/portable/interposed_calls.h"
#include "tests/portable/owned_handle.h"
#include "tests/support/expected_leak.h"
#include "zebcomn/portable/tls.h"

namespace {

using zebcomn_test::Call;
using zebcomn_test::CallWatch;
using zebcomn_test::ClearErrorSlot;
using zebcomn_test::ExpectedLeak;
using zebcomn_test::FailsUnder;
using zebcomn_test::kAllocationIsInterposed;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;

// One call that fails in a creation, and what is seen of it.
struct CreationFault {
  Call call;
  int nth;
  int error_slot;   // nErrno afterwards.
  int left_behind;  // Blocks of memory that are never freed.
};

// Expects `create` to give `failure` under each fault, and to leave what the fault says.
template <typename Create, size_t kFaults>
void ExpectFaults(const CreationFault (&faults)[kFaults], HANDLE failure, const Create& create) {
  for (const CreationFault& fault : faults) {
    if (fault.call == Call::kMalloc && !kAllocationIsInterposed) continue;
    SCOPED_TRACE(testing::Message()
                 << "call " << static_cast<int>(fault.call) << ", place " << fault.nth);
    // Some of the faults leave behind what the table says.
    const ExpectedLeak omission;
    ClearErrorSlot();
    HANDLE handle = nullptr;
    int left_behind = 0;
    bool failed = false;
    {
      const CallWatch watch(fault.call, fault.nth, EAGAIN);
      handle = create();
      left_behind = watch.UnfreedBlocks();
      failed = watch.Failed();
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(handle, failure);
    EXPECT_EQ(nErrno, fault.error_slot);
    if (kAllocationIsInterposed) {
      EXPECT_EQ(left_behind, fault.left_behind);
    }
  }
}

TEST(AllocationFaults, AreInterposed) {
  if (!kAllocationIsInterposed) GTEST_SKIP() << "malloc() belongs to the sanitizer";
  const CallWatch watch;
  const OwnedHandle event(NewEvent());
  EXPECT_EQ(watch.Count(Call::kMalloc), 1);
  EXPECT_EQ(watch.UnfreedBlocks(), 1);
}

TEST(CreationFaults, Event) {
  constexpr CreationFault kFaults[] = {
      {Call::kMalloc, 1, ENOMEM, 0},
      {Call::kCondInit, 1, kErrorLeftAlone, 0},
      {Call::kMutexInit, 1, kErrorLeftAlone, 0},
      {Call::kMutexLock, 1, EBUSY, 0},
      {Call::kCondBroadcast, 1, EBUSY, 0},
      {Call::kMutexUnlock, 1, EBUSY, 0},
  };
  ExpectFaults(kFaults, nullptr, [] { return NewEvent(1); });
}

TEST(CreationFaults, EventThatIsNotSignalledTakesNoLock) {
  const CallWatch watch;
  const OwnedHandle event(NewEvent(0));
  EXPECT_EQ(watch.Count(Call::kMutexLock), 0);
}

TEST(CreationFaults, MutexKeepsTheOwnershipLocksMemoryWhenItsRecordCannotBeMade) {
  constexpr CreationFault kFaults[] = {
      {Call::kMalloc, 1, ENOMEM, 0},
      {Call::kMalloc, 2, ENOMEM, 0},
      {Call::kCondInit, 1, kErrorLeftAlone, 1},
      {Call::kMutexInit, 1, kErrorLeftAlone, 1},
      {Call::kMutexInit, 2, kErrorLeftAlone, 0},
      {Call::kMutexLock, 1, kErrorLeftAlone, 0},
  };
  ExpectFaults(kFaults, nullptr, [] { return tivCreateMutex(nullptr, 1, nullptr); });
}

DWORD DoNothing(void* /*parameter*/) {
  return 0;
}

constexpr CreationFault kThreadFaults[] = {
    {Call::kMalloc, 1, ENOMEM, 0},
    {Call::kMalloc, 2, ENOMEM, 0},
    {Call::kMalloc, 3, kErrorLeftAlone, 0},
    {Call::kCondInit, 1, kErrorLeftAlone, 0},
    {Call::kMutexInit, 1, kErrorLeftAlone, 0},
    {Call::kAttrInit, 1, kErrorLeftAlone, 0},
    {Call::kAttrSetdetachstate, 1, kErrorLeftAlone, 0},
    {Call::kThreadCreate, 1, kErrorLeftAlone, 0},
};

TEST(CreationFaults, Thread) {
  ExpectFaults(kThreadFaults, TIV_INVALID_HANDLE, [] {
    DWORD id = 77;
    HANDLE thread = tivBeginThread(nullptr, 0, DoNothing, nullptr, 0, &id);
    EXPECT_EQ(id, DWORD{77});
    return thread;
  });
}

TEST(CreationFaults, ThreadFailureIsNullInTheOtherForm) {
  ExpectFaults(kThreadFaults, nullptr, [] { return NewThread(DoNothing, nullptr); });
}

TEST(CreationFaults, ThreadLocksAreDestroyed) {
  struct Row {
    Call call;
    int conditions;
    int mutexes;
  };
  for (const Row& row : {Row{Call::kCondInit, 0, 0}, Row{Call::kMutexInit, 1, 0},
                         Row{Call::kAttrInit, 1, 1}, Row{Call::kThreadCreate, 1, 1}}) {
    const CallWatch watch(row.call, 1, EAGAIN);
    EXPECT_EQ(NewThread(DoNothing, nullptr), nullptr);
    EXPECT_EQ(watch.Count(Call::kCondDestroy), row.conditions);
    EXPECT_EQ(watch.Count(Call::kMutexDestroy), row.mutexes);
  }
}

TEST(CreationFaults, ThreadAttributesAreDestroyed) {
  for (const auto& [call, destroyed] :
       {std::pair{Call::kAttrInit, 0}, {Call::kAttrSetdetachstate, 1}, {Call::kThreadCreate, 1}}) {
    const CallWatch watch(call, 1, EAGAIN);
    EXPECT_EQ(NewThread(DoNothing, nullptr), nullptr);
    EXPECT_EQ(watch.Count(Call::kAttrDestroy), destroyed);
  }
}

TEST(TlsFaults, Alloc) {
  for (const CreationFault& fault : {CreationFault{Call::kMalloc, 1, ENOMEM, 0},
                                     CreationFault{Call::kKeyCreate, 1, kErrorLeftAlone, 0}}) {
    if (fault.call == Call::kMalloc && !kAllocationIsInterposed) continue;
    ClearErrorSlot();
    const CallWatch watch(fault.call, fault.nth, EAGAIN);
    EXPECT_EQ(tivTlsAlloc(), TIV_INVALID_DWORD);
    EXPECT_TRUE(watch.Failed());
    EXPECT_EQ(nErrno, fault.error_slot);
    if (kAllocationIsInterposed) {
      EXPECT_EQ(watch.UnfreedBlocks(), 0);
    }
    EXPECT_EQ(pTlsKeyTable[0], nullptr);
    EXPECT_EQ(nTlsOwnerTable[0], 0);
  }
}

TEST(TlsFaults, SlotIsClearedEvenWhenItsKeyCannotBeDeleted) {
  const DWORD slot = tivTlsAlloc();
  const pthread_key_t key = *pTlsKeyTable[slot];
  EXPECT_TRUE(FailsUnder(Call::kKeyDelete, 1, [&] { return tivTlsFree(slot); }));
  EXPECT_EQ(pTlsKeyTable[slot], nullptr);
  EXPECT_EQ(nTlsOwnerTable[slot], 0);
  EXPECT_EQ(pthread_key_delete(key), 0);
}

TEST(TlsFaults, ValueThatCannotBeStoredLeavesTheOldOne) {
  const DWORD slot = tivTlsAlloc();
  int values[2];
  EXPECT_EQ(tivTlsSetValue(slot, &values[0]), TRUE);
  EXPECT_TRUE(FailsUnder(Call::kSetspecific, 1, [&] { return tivTlsSetValue(slot, &values[1]); }));
  EXPECT_EQ(tivTlsGetValue(slot), &values[0]);
  EXPECT_EQ(tivTlsFree(slot), TRUE);
}

TEST(TlsFaults, TheLibrarysOwnLockIsTakenAnyhow) {
  for (const Call call : {Call::kMutexLock, Call::kMutexUnlock}) {
    const CallWatch watch(call, 1, EAGAIN);
    const DWORD slot = tivTlsAlloc();
    EXPECT_TRUE(watch.Failed());
    EXPECT_EQ(tivTlsFree(slot), TRUE);
  }
}

}  // namespace
