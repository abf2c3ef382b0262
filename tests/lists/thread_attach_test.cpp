// The identity slot, attaching and detaching of threads.
#include "zebcomn/lists/thread_attach.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/lists/attached.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/tls.h"
#include "zebcomn/portable/wait.h"

namespace {

using zebcomn_test::OwnLock;

constexpr int32_t kInvalidArgument = 22;

const DWORD index_at_start = tiSO_tls_index;

HANDLE HandleOf(uintptr_t identity) {
  return reinterpret_cast<HANDLE>(identity);
}

void Detach() {
  EXPECT_EQ(tiSO_ThreadDetach(), 1);
  EXPECT_EQ(tiSO_ProcessDetach(), 1);
}

TEST(ThreadAttach, TheSlotIndexIsAllOnesBeforeAndAfter) {
  EXPECT_EQ(index_at_start, 0xFFFFFFFFU);
  EXPECT_EQ(tiSO_tls_index, 0xFFFFFFFFU);
  const DWORD slot = tiSO_ProcessAttach();
  EXPECT_NE(slot, 0xFFFFFFFFU);
  EXPECT_EQ(tiSO_tls_index, slot);
  EXPECT_EQ(tiSO_ProcessDetach(), 1);
  EXPECT_EQ(tiSO_tls_index, 0xFFFFFFFFU);
}

TEST(ThreadAttach, ProcessDetachWithoutASlotFails) {
  nErrno = 0;
  EXPECT_EQ(tiSO_ProcessDetach(), 0);
  EXPECT_EQ(nErrno, kInvalidArgument);
  EXPECT_EQ(tiSO_tls_index, 0xFFFFFFFFU);
}

TEST(ThreadAttach, EverythingFailsQuietlyWithoutASlot) {
  nErrno = 0;
  EXPECT_EQ(tiSO_ThreadAttach(), 0U);
  EXPECT_EQ(nErrno, kInvalidArgument);
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_DbgGetThread(), 0U);
  EXPECT_EQ(tiSO_ThreadAttachX(), 0);
  EXPECT_EQ(tiSO_ThreadDetach(), 0);
}

TEST(ThreadAttach, AThreadThatNeverAttachedHasNoIdentity) {
  tiSO_ProcessAttach();
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_DbgGetThread(), 0U);
  EXPECT_EQ(tiSO_ProcessDetach(), 1);
}

TEST(ThreadAttach, AttachReturnsOneAndThenTheIdentity) {
  tiSO_ProcessAttach();
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
  const uintptr_t identity = tiSO_GetThread();
  EXPECT_NE(identity, TISO_NO_THREAD);
  EXPECT_EQ(tiSO_ThreadAttach(), identity);
  EXPECT_EQ(tiSO_DbgGetThread(), identity);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(tivTlsGetValue(tiSO_tls_index)), identity);
  Detach();
}

TEST(ThreadAttach, TheIdentityIsAManualResetEventThatIsNotSignalled) {
  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  const HANDLE event = HandleOf(tiSO_GetThread());
  EXPECT_EQ(static_cast<_tivHandleObject_t*>(event)->nType, TIV_HANDLE_EVENT);
  EXPECT_EQ(tivWaitForSingleObject(event, 0), 3U);
  EXPECT_EQ(tivSetEvent(event), 1);
  EXPECT_EQ(tivWaitForSingleObject(event, 0), 2U);
  EXPECT_EQ(tivWaitForSingleObject(event, 0), 2U);
  Detach();
}

TEST(ThreadAttach, AThreadThatHasWaitedForALockLeavesItsEventNotSignalled) {
  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  {
    OwnLock lock;
    zebcomn_test::Worker waiter;
    for (int turn = 0; turn < 20; ++turn) {
      EXPECT_EQ(tiSO_SELockExclusive(lock, 1), 1);
      StartAndQueue(waiter, lock, [&lock] { return tiSO_SELockExclusive(lock, 1); });
      tiSO_SELockRelease(lock);
      EXPECT_EQ(waiter.Finish(), 1);
      EXPECT_EQ(tivWaitForSingleObject(HandleOf(waiter.identity()), 0), 3U) << turn;
      tiSO_SELockRelease(lock);
    }
  }
  Detach();
}

TEST(ThreadAttach, DetachLeavesAllOnesInTheSlot) {
  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  EXPECT_EQ(tiSO_ThreadDetach(), 1);
  EXPECT_EQ(tiSO_DbgGetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_ThreadDetach(), 1) << "a second detach closes nothing and stores again";
  EXPECT_EQ(tiSO_ThreadAttach(), 1U) << "a detached thread can attach again";
  Detach();
}

TEST(ThreadAttach, AttachXMarksTheThreadAsNotAttachedAndClosesNothing) {
  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  const HANDLE event = HandleOf(tiSO_GetThread());
  EXPECT_EQ(tiSO_ThreadAttachX(), 1);
  EXPECT_EQ(tiSO_DbgGetThread(), TISO_NO_THREAD);
  tiSO_ThreadDetachX();
  EXPECT_EQ(tiSO_DbgGetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tivCloseHandle(event), 1);
  EXPECT_EQ(tiSO_ProcessDetach(), 1);
}

TEST(ThreadAttach, DetachXLeavesTheIdentity) {
  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  const uintptr_t identity = tiSO_GetThread();
  tiSO_ThreadDetachX();
  EXPECT_EQ(tiSO_GetThread(), identity);
  Detach();
}

TEST(ThreadAttach, EachThreadHasItsOwnIdentity) {
  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  {
    zebcomn_test::Worker first;
    zebcomn_test::Worker second;
    EXPECT_NE(first.identity(), second.identity());
    EXPECT_NE(first.identity(), tiSO_GetThread());
  }
  Detach();
}

TEST(ThreadAttach, ASecondProcessAttachTakesAnotherSlotAndNobodyIsAttached) {
  const DWORD first = tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  const HANDLE event = HandleOf(tiSO_GetThread());
  const DWORD second = tiSO_ProcessAttach();
  EXPECT_NE(second, first);
  EXPECT_EQ(tiSO_tls_index, second);
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_DbgGetThread(), 0U);
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
  Detach();
  EXPECT_EQ(tivTlsGetValue(first), event) << "the first slot stays as it was";
  EXPECT_EQ(tivCloseHandle(event), 1);
  EXPECT_EQ(tivTlsFree(first), 1);
}

TEST(ThreadAttach, AFullSlotTableGivesAllOnes) {
  std::vector<DWORD> slots;
  for (DWORD slot = tivTlsAlloc(); slot != TIV_INVALID_DWORD; slot = tivTlsAlloc()) {
    slots.push_back(slot);
  }
  EXPECT_EQ(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
  EXPECT_EQ(tiSO_ThreadAttach(), 0U);
  for (DWORD slot : slots) tivTlsFree(slot);
}

DWORD EndAtOnce(void*) {
  return 0;
}

// Starts a thread of the library and waits for its end, which frees every slot of the process.
void EndALibraryThread() {
  const HANDLE thread = tivCreateThread(nullptr, 0, EndAtOnce, nullptr, 0, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(tivWaitForSingleObject(thread, TIV_INVALID_DWORD), 2U);
  tivCloseHandle(thread);
}

TEST(ThreadAttach, AnEndingLibraryThreadGivesTheIdentitySlotBack) {
  const DWORD slot = tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  const HANDLE event = HandleOf(tiSO_GetThread());
  EndALibraryThread();
  EXPECT_EQ(tiSO_tls_index, slot) << "the index keeps its old value";
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_ThreadAttach(), 0U);
  OwnLock lock;
  EXPECT_EQ(tiSO_SELockExclusive(lock, 1), 1);
  EXPECT_EQ(lock->owner, TISO_NO_THREAD) << "no thread is attached any more";
  tiSO_SELockRelease(lock);
  tivCloseHandle(event);
  EXPECT_EQ(tiSO_ProcessDetach(), 0);
}

// The stale index used to be looked up like any other: somebody else's value was then taken for an
// identity, slept on and closed.
TEST(ThreadAttach, ASlotThatSomebodyElseWasGivenIsLeftAlone) {
  const DWORD slot = tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  const HANDLE event = HandleOf(tiSO_GetThread());
  EndALibraryThread();
  ASSERT_EQ(tivTlsAlloc(), slot);
  int others = 0;
  EXPECT_EQ(tivTlsSetValue(slot, &others), 1);
  EXPECT_EQ(tiSO_tls_index, slot) << "the index keeps its old value";
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_DbgGetThread(), 0U);
  nErrno = 0;
  EXPECT_EQ(tiSO_ThreadAttach(), 0U);
  EXPECT_EQ(nErrno, kInvalidArgument);
  EXPECT_EQ(tiSO_ThreadAttachX(), 0);
  EXPECT_EQ(tiSO_ThreadDetach(), 0);
  EXPECT_EQ(tiSO_ProcessDetach(), 0);
  EXPECT_EQ(tiSO_tls_index, 0xFFFFFFFFU);
  EXPECT_EQ(tivTlsGetValue(slot), &others);
  tivCloseHandle(event);

  EXPECT_NE(tiSO_ProcessAttach(), slot);
  EXPECT_EQ(tiSO_ThreadAttach(), 1U) << "attaching anew begins again";
  Detach();
  EXPECT_EQ(tivTlsFree(slot), 1);
}

}  // namespace
