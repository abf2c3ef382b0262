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
template <typename Request>
void CheckWait(Trial& trial, bool exclusive, const Request& request) {
  const AttachedLock lock;
  Worker holder;
  EXPECT_EQ(holder.Call([&] { return tiSO_SELockExclusive(lock.get(), FALSE); }), TRUE);
  holder.Start([&] {
    while (!HasRequests(*lock.get())) sched_yield();
    tiSO_SELockRelease(lock.get());
    return TRUE;
  });
  BOOL granted = FALSE;
  trial.Call([&] { granted = request(lock.get()); });
  EXPECT_EQ(granted, TRUE);
  EXPECT_EQ(holder.Finish(), TRUE);
  EXPECT_EQ(lock.get()->count, 1U);
  EXPECT_EQ(lock.get()->owner, exclusive ? tiSO_GetThread() : TISO_NO_THREAD);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  tiSO_SELockRelease(lock.get());
}

ZEBCOMN_USE(ContendedLockFailures, WriterWaits, "tiSO_SELock", "tiSO_SELockExclusive") {
  CheckWait(trial, true, [](tiSO_SELock_t* lock) { return tiSO_SELock(lock, TRUE, TRUE); });
}

ZEBCOMN_USE(ContendedLockFailures, ReaderWaits, "tiSO_SELock",
            "tiSO_SELockSharedWaitForExclusive") {
  CheckWait(trial, false, [](tiSO_SELock_t* lock) { return tiSO_SELock(lock, FALSE, TRUE); });
}

ZEBCOMN_USE(ContendedLockFailures, ReaderPastWritersWaits, "tiSO_SELockSharedStarveExclusive") {
  CheckWait(trial, false,
            [](tiSO_SELock_t* lock) { return tiSO_SELockSharedStarveExclusive(lock, TRUE); });
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

// `hand_over` lets both readers in; `grants` are out afterwards.
void CheckReadersAreWoken(Trial& trial, void (*hand_over)(tiSO_SELock_t*), uint32_t grants) {
  const AttachedLock lock;
  Worker first;
  Worker second;
  EXPECT_EQ(tiSO_SELockExclusive(lock.get(), FALSE), TRUE);
  for (Worker* reader : {&first, &second}) {
    StartAndQueue(*reader, lock.get(),
                  [&] { return tiSO_SELockSharedStarveExclusive(lock.get(), TRUE); });
  }
  trial.Call([&] { hand_over(lock.get()); });
  EXPECT_EQ(first.Finish(), TRUE);
  EXPECT_EQ(second.Finish(), TRUE);
  EXPECT_EQ(lock.get()->count, grants);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  ReleaseBy(first, lock);
  ReleaseBy(second, lock);
  if (grants == 3) tiSO_SELockRelease(lock.get());
}

ZEBCOMN_USE(ContendedLockFailures, ReadersAreWoken, "tiSO_SELockExclusiveToShared") {
  CheckReadersAreWoken(trial, tiSO_SELockExclusiveToShared, 3);
}

ZEBCOMN_USE(ContendedLockFailures, ReadersAreWokenByARelease, "tiSO_SELockRelease") {
  CheckReadersAreWoken(trial, tiSO_SELockRelease, 2);
}

}  // namespace
