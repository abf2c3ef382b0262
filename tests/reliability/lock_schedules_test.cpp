// The hand-over of the shared/exclusive lock, with threads that come, are woken for nothing and go.
#include <gtest/gtest.h>
#include <sched.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/reliability/schedule.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/thread_attach.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/handle.h"

namespace {

using zebcomn_test::RunSchedules;

HANDLE EventOf(uintptr_t identity) {
  return reinterpret_cast<HANDLE>(identity);
}

/// A lock, and plain numbers that a meeting of a writer with anybody spoils.
class Guarded {
 public:
  Guarded() {
    EXPECT_NE(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
    EXPECT_EQ(tiSO_SELockCreate(&lock_), ZEBCOMN_STATUS_OK);
  }
  ~Guarded() {
    EXPECT_EQ(left_, right_);
    EXPECT_EQ(lock_->count, 0U);
    EXPECT_EQ(lock_->owner, TISO_NO_THREAD);
    EXPECT_EQ(lock_->exclusive_waiters.next, nullptr);
    EXPECT_EQ(lock_->shared_waiters.next, nullptr);
    EXPECT_EQ(lock_->spin_word, 0);
    tiSO_Release(lock_);
    EXPECT_EQ(tiSO_ProcessDetach(), TRUE);
  }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  tiSO_SELock_t* lock() { return lock_; }

  void Write() {
    ++left_;
    sched_yield();
    ++right_;
  }
  void Read() const {
    const unsigned left = left_;
    sched_yield();
    EXPECT_EQ(left, right_) << "a reader meets a writer";
  }
  unsigned writes() const { return left_; }

 private:
  tiSO_SELock_t* lock_ = nullptr;
  // Plain, so that the thread sanitizer sees a meeting as well.
  unsigned left_ = 0;
  unsigned right_ = 0;
};

void WriteOnce(Guarded* guarded) {
  EXPECT_EQ(tiSO_SELockExclusive(guarded->lock(), 1), 1);
  guarded->Write();
  tiSO_SELockRelease(guarded->lock());
}

void WriteAndReadOn(Guarded* guarded) {
  EXPECT_EQ(tiSO_SELockExclusive(guarded->lock(), 1), 1);
  guarded->Write();
  tiSO_SELockExclusiveToShared(guarded->lock());
  guarded->Read();
  tiSO_SELockRelease(guarded->lock());
}

void ReadBehindWriters(Guarded* guarded) {
  EXPECT_EQ(tiSO_SELockSharedWaitForExclusive(guarded->lock(), 1), 1);
  guarded->Read();
  tiSO_SELockRelease(guarded->lock());
}

void ReadPastWriters(Guarded* guarded) {
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(guarded->lock(), 1), 1);
  guarded->Read();
  tiSO_SELockRelease(guarded->lock());
}

using Use = void (*)(Guarded*);

/// Each of the threads attaches, uses the lock and detaches, some times over.
void UseOnThreads(Guarded* guarded, const std::vector<Use>& uses, void (*before_use)()) {
  std::vector<std::thread> threads;
  for (const Use use : uses) {
    threads.emplace_back([guarded, use, before_use] {
      for (int turn = 0; turn < 3; ++turn) {
        tiSO_ThreadAttach();
        before_use();
        use(guarded);
        tiSO_ThreadDetach();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(LockSchedules, WritersExcludeEachOther) {
  RunSchedules(200, [] {
    Guarded guarded;
    UseOnThreads(&guarded, {WriteOnce, WriteOnce, WriteOnce}, [] {});
    EXPECT_EQ(guarded.writes(), 9U);
  });
}

TEST(LockSchedules, WritersExcludeReadersOfBothKinds) {
  RunSchedules(200, [] {
    Guarded guarded;
    UseOnThreads(&guarded, {WriteOnce, WriteAndReadOn, ReadBehindWriters, ReadPastWriters}, [] {});
    EXPECT_EQ(guarded.writes(), 6U);
  });
}

// Each request finds its event set, as by a stale wake-up, and so looks early at least once.
TEST(LockSchedules, AnEarlyWakeUpIsNoGrant) {
  RunSchedules(200, [] {
    Guarded guarded;
    UseOnThreads(&guarded, {WriteOnce, WriteAndReadOn, ReadBehindWriters, WriteOnce},
                 [] { tivSetEvent(EventOf(tiSO_GetThread())); });
    EXPECT_EQ(guarded.writes(), 9U);
  });
}

// Clients that are told without waiting, beside threads that wait.
struct Client {
  std::atomic<bool> told{false};
};

uint32_t Tell(uintptr_t first, uint32_t, uintptr_t, uint32_t) {
  reinterpret_cast<Client*>(first)->told = true;
  return 0;
}

void WriteWhenTold(Guarded* guarded) {
  Client client;
  const auto name = reinterpret_cast<uintptr_t>(&client);
  while (tiSO_SELockExclusiveNotify(guarded->lock(), Tell, name, 0) == 0) {
    while (!client.told) sched_yield();
    client.told = false;
  }
  guarded->Write();
  tiSO_SELockRelease(guarded->lock());
}

TEST(LockSchedules, ClientsThatAreToldGetTheLockInTheEnd) {
  RunSchedules(200, [] {
    Guarded guarded;
    UseOnThreads(&guarded, {WriteOnce, WriteWhenTold, WriteWhenTold}, [] {});
    EXPECT_EQ(guarded.writes(), 9U);
  });
}

}  // namespace
