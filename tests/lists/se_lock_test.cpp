// The lock's grant rules, its hand-over and its record, one rule a test.
#include "zebcomn/lists/se_lock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "tests/lists/attached.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::LockView;
using zebcomn_test::OwnLock;
using zebcomn_test::StartAndQueue;
using zebcomn_test::ViewOf;
using zebcomn_test::Worker;

constexpr BOOL kNoWait = 0;
constexpr BOOL kWait = 1;

class SeLock : public AttachedTest {
 protected:
  /// Calls of another thread, without waiting.
  BOOL ExclusiveBy(Worker& worker) {
    return worker.Call([this] { return tiSO_SELockExclusive(lock_, kNoWait); });
  }
  BOOL StarvingBy(Worker& worker) {
    return worker.Call([this] { return tiSO_SELockSharedStarveExclusive(lock_, kNoWait); });
  }
  BOOL PoliteBy(Worker& worker) {
    return worker.Call([this] { return tiSO_SELockSharedWaitForExclusive(lock_, kNoWait); });
  }
  void QueueExclusive(Worker& worker) {
    StartAndQueue(worker, lock_, [this] { return tiSO_SELockExclusive(lock_, kWait); });
  }
  void QueueShared(Worker& worker) {
    StartAndQueue(worker, lock_,
                  [this] { return tiSO_SELockSharedWaitForExclusive(lock_, kWait); });
  }
  void QueueStarving(Worker& worker) {
    StartAndQueue(worker, lock_, [this] { return tiSO_SELockSharedStarveExclusive(lock_, kWait); });
  }
  void ExpectHeld(uintptr_t owner, uint32_t count) {
    const LockView view = ViewOf(lock_);
    EXPECT_EQ(view.owner, owner);
    EXPECT_EQ(view.count, count);
  }
  void ExpectFree() { ExpectHeld(TISO_NO_THREAD, 0); }

  const uintptr_t self_ = tiSO_GetThread();
  OwnLock lock_;
  Worker a_;
  Worker b_;
  Worker c_;
};

TEST_F(SeLock, CreateMakesAFreeLockInStateOne) {
  EXPECT_EQ(lock_->spin_word, 0);
  EXPECT_EQ(lock_->pid, 0);
  EXPECT_EQ(lock_->state, 1);
  EXPECT_EQ(lock_->shared_waiters.next, nullptr);
  EXPECT_EQ(lock_->exclusive_waiters.next, nullptr);
  EXPECT_EQ(lock_->notify_list.next, nullptr);
  ExpectFree();
}

TEST_F(SeLock, NullLocksGiveZeroOrNothing) {
  nErrno = 0;
  EXPECT_EQ(tiSO_SELockCreate(nullptr), 0x80000008U);
  EXPECT_EQ(tiSO_SELockExclusive(nullptr, kWait), 0);
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(nullptr, kWait), 0);
  EXPECT_EQ(tiSO_SELockSharedWaitForExclusive(nullptr, kWait), 0);
  EXPECT_EQ(tiSO_SELock(nullptr, 1, kWait), 0);
  EXPECT_EQ(tiSO_SELock(nullptr, 0, kWait), 0);
  tiSO_SELockExclusiveToShared(nullptr);
  tiSO_SELockRelease(nullptr);
  EXPECT_EQ(tiSO_SELockExclusiveNotify(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(tiSO_SELockExclusiveUnnotify(nullptr, nullptr, 0, 0), 0);
  tiSO_Release(nullptr);
  EXPECT_EQ(nErrno, 0);
}

// Grants of the exclusive request.

TEST_F(SeLock, ExclusiveOnAFreeLockRecordsOwnerStateAndPid) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kNoWait), 1);
  ExpectHeld(self_, 1);
  EXPECT_EQ(lock_->state, 2);
  EXPECT_EQ(lock_->pid, getpid());
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, ExclusiveTwiceByOneThreadCountsAndNeedsTwoReleases) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  ExpectHeld(self_, 2);
  tiSO_SELockRelease(lock_);
  ExpectHeld(self_, 1);
  EXPECT_EQ(lock_->state, 2);
  EXPECT_EQ(ExclusiveBy(a_), 0);
  tiSO_SELockRelease(lock_);
  ExpectFree();
  EXPECT_EQ(lock_->state, 4);
}

TEST_F(SeLock, ExclusiveIsRefusedWhileAnotherThreadOwnsTheLock) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  EXPECT_EQ(ExclusiveBy(a_), 0);
  ExpectHeld(self_, 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, ExclusiveIsRefusedWhileTheLockIsHeldShared) {
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock_, kWait), 1);
  EXPECT_EQ(ExclusiveBy(a_), 0);
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kNoWait), 0) << "also to a reader itself";
  ExpectHeld(TISO_NO_THREAD, 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, AReaderThatWaitsForExclusiveWaitsForItself) {
  EXPECT_EQ(a_.Call([this] { return tiSO_SELockSharedStarveExclusive(lock_, kWait); }), 1);
  QueueExclusive(a_);
  EXPECT_FALSE(a_.finished());
  // Only somebody else's release gets it out.
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  ExpectHeld(a_.identity(), 1);
  tiSO_SELockRelease(lock_);
}

// Grants of the two shared requests.

TEST_F(SeLock, SharedGrantsHaveNoOwnerAndLeaveTheState) {
  EXPECT_EQ(PoliteBy(a_), 1);
  EXPECT_EQ(StarvingBy(b_), 1);
  EXPECT_EQ(PoliteBy(c_), 1);
  ExpectHeld(TISO_NO_THREAD, 3);
  EXPECT_EQ(lock_->state, 1);
  EXPECT_EQ(lock_->pid, 0);
  for (int grant = 0; grant < 3; ++grant) tiSO_SELockRelease(lock_);
  ExpectFree();
}

TEST_F(SeLock, BothSharedRequestsAreRefusedWhileAnotherThreadOwnsTheLock) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  EXPECT_EQ(PoliteBy(a_), 0);
  EXPECT_EQ(StarvingBy(a_), 0);
  ExpectHeld(self_, 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, TheOwnerGetsSharedGrantsAndKeepsOwning) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock_, kNoWait), 1);
  EXPECT_EQ(tiSO_SELockSharedWaitForExclusive(lock_, kNoWait), 1);
  ExpectHeld(self_, 3);
  tiSO_SELockRelease(lock_);
  tiSO_SELockRelease(lock_);
  ExpectHeld(self_, 1);
  EXPECT_EQ(PoliteBy(a_), 0) << "the exclusive grant is still there";
  tiSO_SELockRelease(lock_);
  ExpectFree();
}

TEST_F(SeLock, TheOwnerGetsASharedGrantPastQueuedWriters) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueExclusive(a_);
  EXPECT_EQ(tiSO_SELockSharedWaitForExclusive(lock_, kNoWait), 1);
  tiSO_SELockRelease(lock_);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, AQueuedWriterStopsPoliteReadersAndNotStarvingOnes) {
  EXPECT_EQ(tiSO_SELockSharedWaitForExclusive(lock_, kNoWait), 1);
  QueueExclusive(a_);
  EXPECT_EQ(PoliteBy(b_), 0);
  EXPECT_EQ(StarvingBy(b_), 1);
  ExpectHeld(TISO_NO_THREAD, 2);
  tiSO_SELockRelease(lock_);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, StarvingReadersThatOverlapKeepAWriterOut) {
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock_, kWait), 1);
  QueueExclusive(a_);
  for (int turn = 0; turn < 100; ++turn) {
    ASSERT_EQ(StarvingBy(b_), 1);
    tiSO_SELockRelease(lock_);  // The elder of the two readers goes.
    ASSERT_FALSE(a_.finished());
  }
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, WritersThatOverlapKeepPoliteReadersOut) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueShared(c_);
  Worker* waiting = &a_;
  Worker* next = &b_;
  QueueExclusive(*waiting);
  for (int turn = 0; turn < 100; ++turn) {
    tiSO_SELockRelease(lock_);
    ASSERT_EQ(waiting->Finish(), 1);
    ASSERT_FALSE(c_.finished());
    std::swap(waiting, next);
    QueueExclusive(*waiting);
  }
  tiSO_SELockRelease(lock_);
  ASSERT_EQ(waiting->Finish(), 1);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(c_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, TheFlagCallChoosesTheRequest) {
  EXPECT_EQ(tiSO_SELock(lock_, 2, kNoWait), 1) << "any flag but 0 is exclusive";
  ExpectHeld(self_, 1);
  EXPECT_EQ(a_.Call([this] { return tiSO_SELock(lock_, 0, kNoWait); }), 0);
  EXPECT_EQ(a_.Call([this] { return tiSO_SELock(lock_, 1, kNoWait); }), 0);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(tiSO_SELock(lock_, 0, kNoWait), 1);
  ExpectHeld(TISO_NO_THREAD, 1);
  QueueExclusive(a_);
  EXPECT_EQ(b_.Call([this] { return tiSO_SELock(lock_, 0, kNoWait); }), 0)
      << "it waits for writers";
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

// Waiting and hand-over.

TEST_F(SeLock, AnyWaitFlagButZeroWaits) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  StartAndQueue(a_, lock_, [this] { return tiSO_SELockExclusive(lock_, -7); });
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, RequestsQueueInTheirOwnListsNewestFirst) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueShared(a_);
  QueueStarving(b_);
  QueueExclusive(c_);
  const LockView view = ViewOf(lock_);
  EXPECT_EQ(view.shared, (std::vector<uintptr_t>{b_.identity(), a_.identity()}));
  EXPECT_EQ(view.exclusive, (std::vector<uintptr_t>{c_.identity()}));
  EXPECT_EQ(view.count, 1U);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(c_.Finish(), 1);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  EXPECT_EQ(b_.Finish(), 1);
  tiSO_SELockRelease(lock_);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, ReleaseServesTheNewestWriterFirst) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueExclusive(a_);
  QueueExclusive(b_);
  lock_->pid = 0;
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(b_.Finish(), 1);
  ExpectHeld(b_.identity(), 1);
  EXPECT_EQ(lock_->state, 5);
  EXPECT_EQ(lock_->pid, getpid());
  EXPECT_FALSE(a_.finished());
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  ExpectHeld(a_.identity(), 1);
  tiSO_SELockRelease(lock_);
  ExpectFree();
}

TEST_F(SeLock, ReleaseServesAllReadersAtOnceWhenNoWriterWaits) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueShared(a_);
  QueueStarving(b_);
  QueueShared(c_);
  tiSO_SELockRelease(lock_);
  for (Worker* reader : {&a_, &b_, &c_}) EXPECT_EQ(reader->Finish(), 1);
  ExpectHeld(TISO_NO_THREAD, 3);
  EXPECT_EQ(lock_->state, 4);
  for (int grant = 0; grant < 3; ++grant) tiSO_SELockRelease(lock_);
  ExpectFree();
}

TEST_F(SeLock, ReleaseServesAWriterBeforeReaders) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueExclusive(a_);
  QueueShared(b_);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  EXPECT_FALSE(b_.finished());
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(b_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, AnEarlierReleaseServesNobody) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueExclusive(a_);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(ViewOf(lock_).exclusive.size(), 1U);
  ExpectHeld(self_, 1);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, AGrantCanBeGivenBackByAnotherThread) {
  EXPECT_EQ(ExclusiveBy(a_), 1);
  tiSO_SELockRelease(lock_);
  ExpectFree();
}

TEST_F(SeLock, AReleaseOfAFreeLockTakesTheCountBelowZero) {
  tiSO_SELockRelease(lock_);
  ExpectHeld(TISO_NO_THREAD, 0xFFFFFFFFU);
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kNoWait), 0);
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock_, kNoWait), 1);
  ExpectFree();
}

// Exclusive to shared.

TEST_F(SeLock, ExclusiveToSharedKeepsTheGrantAndAdmitsAllReaders) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueShared(a_);
  QueueStarving(b_);
  tiSO_SELockExclusiveToShared(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  EXPECT_EQ(b_.Finish(), 1);
  ExpectHeld(TISO_NO_THREAD, 3);
  EXPECT_EQ(lock_->state, 3);
  for (int grant = 0; grant < 3; ++grant) tiSO_SELockRelease(lock_);
  ExpectFree();
}

TEST_F(SeLock, ExclusiveToSharedAdmitsReadersAlthoughAWriterWaits) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  QueueExclusive(a_);
  QueueShared(b_);
  tiSO_SELockExclusiveToShared(lock_);
  EXPECT_EQ(b_.Finish(), 1);
  EXPECT_FALSE(a_.finished());
  tiSO_SELockRelease(lock_);
  EXPECT_FALSE(a_.finished());
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(a_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLock, ExclusiveToSharedTurnsEveryLevelOfTheOwner) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  tiSO_SELockExclusiveToShared(lock_);
  ExpectHeld(TISO_NO_THREAD, 2);
  EXPECT_EQ(PoliteBy(a_), 1);
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kNoWait), 0) << "the former owner is one reader of several";
  for (int grant = 0; grant < 3; ++grant) tiSO_SELockRelease(lock_);
}

// Threads that are not attached.

class SeLockNotAttached : public SeLock {
 protected:
  Worker stranger_{Worker::Kind::kNotAttached};
};

TEST_F(SeLockNotAttached, ExclusiveGrantLeavesNoOwner) {
  EXPECT_EQ(ExclusiveBy(stranger_), 1);
  ExpectHeld(TISO_NO_THREAD, 1);
  EXPECT_EQ(lock_->state, 2);
  EXPECT_EQ(PoliteBy(a_), 1) << "to others the lock looks held shared";
  tiSO_SELockRelease(lock_);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLockNotAttached, CountsAsOwnerOfALockThatNobodyOwns) {
  EXPECT_EQ(PoliteBy(a_), 1);
  QueueExclusive(b_);
  EXPECT_EQ(PoliteBy(stranger_), 1) << "past the queued writer";
  EXPECT_EQ(ExclusiveBy(stranger_), 1) << "beside the readers";
  ExpectHeld(TISO_NO_THREAD, 3);
  for (int grant = 0; grant < 3; ++grant) tiSO_SELockRelease(lock_);
  EXPECT_EQ(b_.Finish(), 1);
  tiSO_SELockRelease(lock_);
}

TEST_F(SeLockNotAttached, IsRefusedWhereItWouldHaveToWait) {
  EXPECT_EQ(tiSO_SELockExclusive(lock_, kWait), 1);
  EXPECT_EQ(stranger_.Call([this] { return tiSO_SELockExclusive(lock_, kWait); }), 0);
  EXPECT_EQ(stranger_.Call([this] { return tiSO_SELockSharedStarveExclusive(lock_, kWait); }), 0);
  EXPECT_EQ(stranger_.Call([this] { return tiSO_SELockSharedWaitForExclusive(lock_, kWait); }), 0);
  const LockView view = ViewOf(lock_);
  EXPECT_TRUE(view.shared.empty());
  EXPECT_TRUE(view.exclusive.empty());
  tiSO_SELockRelease(lock_);
  ExpectFree();
}

}  // namespace
