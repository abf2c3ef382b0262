// The shared/exclusive lock between threads: requests that wait, and grants that wake them.
#include <sched.h>

#include "tests/lists/attached.h"
#include "tests/reliability/attached_lock.h"
#include "tests/reliability/sweep.h"

namespace {

using zebcomn_test::AttachedLock;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::StartAndQueue;
using zebcomn_test::Trial;
using zebcomn_test::Worker;

// Looks without the spin word, so that the thread under test finds it free.
bool HasRequests(const tiSO_SELock_t& lock) {
  return __atomic_load_n(&lock.exclusive_waiters.next, __ATOMIC_ACQUIRE) != nullptr ||
         __atomic_load_n(&lock.shared_waiters.next, __ATOMIC_ACQUIRE) != nullptr;
}

// Waits for the lock that another thread holds and gives back once the request is queued. No
// failure of the sleep ends the wait before the grant.
void CheckWait(Trial& trial, BOOL exclusive) {
  const AttachedLock lock;
  Worker holder;
  EXPECT_EQ(holder.Call([&] { return tiSO_SELockExclusive(lock.get(), FALSE); }), TRUE);
  holder.Start([&] {
    while (!HasRequests(*lock.get())) sched_yield();
    tiSO_SELockRelease(lock.get());
    return TRUE;
  });
  BOOL granted = FALSE;
  trial.Call([&] { granted = tiSO_SELock(lock.get(), exclusive, TRUE); });
  EXPECT_EQ(granted, TRUE);
  EXPECT_EQ(holder.Finish(), TRUE);
  EXPECT_EQ(lock.get()->count, 1U);
  EXPECT_EQ(lock.get()->owner, exclusive == TRUE ? tiSO_GetThread() : TISO_NO_THREAD);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  tiSO_SELockRelease(lock.get());
}

ZEBCOMN_USE(ContendedLockFailures, WriterWaits, "tiSO_SELock", "tiSO_SELockExclusive") {
  CheckWait(trial, TRUE);
}

ZEBCOMN_USE(ContendedLockFailures, ReaderWaits, "tiSO_SELock",
            "tiSO_SELockSharedWaitForExclusive") {
  CheckWait(trial, FALSE);
}

void ReleaseBy(Worker& worker, const AttachedLock& lock) {
  worker.Call([&] {
    tiSO_SELockRelease(lock.get());
    return TRUE;
  });
}

// Whatever fails in the waking, nobody is left asleep with a grant.
ZEBCOMN_USE(ContendedLockFailures, WriterIsWoken, "tiSO_SELockRelease") {
  const AttachedLock lock;
  Worker writer;
  EXPECT_EQ(tiSO_SELockExclusive(lock.get(), FALSE), TRUE);
  StartAndQueue(writer, lock.get(), [&] { return tiSO_SELockExclusive(lock.get(), TRUE); });
  trial.Call([&] { tiSO_SELockRelease(lock.get()); });
  EXPECT_EQ(writer.Finish(), TRUE);
  EXPECT_EQ(lock.get()->owner, writer.identity());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  ReleaseBy(writer, lock);
}

ZEBCOMN_USE(ContendedLockFailures, ReadersAreWoken, "tiSO_SELockExclusiveToShared") {
  const AttachedLock lock;
  Worker first;
  Worker second;
  EXPECT_EQ(tiSO_SELockExclusive(lock.get(), FALSE), TRUE);
  for (Worker* reader : {&first, &second}) {
    StartAndQueue(*reader, lock.get(),
                  [&] { return tiSO_SELockSharedStarveExclusive(lock.get(), TRUE); });
  }
  trial.Call([&] { tiSO_SELockExclusiveToShared(lock.get()); });
  EXPECT_EQ(first.Finish(), TRUE);
  EXPECT_EQ(second.Finish(), TRUE);
  EXPECT_EQ(lock.get()->count, 3U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  ReleaseBy(first, lock);
  ReleaseBy(second, lock);
  tiSO_SELockRelease(lock.get());
}

}  // namespace
