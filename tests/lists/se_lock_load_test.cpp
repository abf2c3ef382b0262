// Mutual exclusion under load: plain data that any meeting of a writer with somebody else spoils.
#include <gtest/gtest.h>
#include <sched.h>

#include <atomic>
#include <random>
#include <thread>
#include <vector>

#include "tests/lists/attached.h"
#include "zebcomn/lists/se_lock.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::OwnLock;
using zebcomn_test::Rounds;

/// Two numbers that are equal whenever no writer is inside, and not atomic, so that the thread
/// sanitizer sees a meeting as well.
struct Guarded {
  uint32_t left = 0;
  uint32_t right = 0;
};

class SeLockLoad : public AttachedTest {
 protected:
  static constexpr int kThreads = 4;

  template <typename Body>
  void RunThreads(Body body) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([body, thread] {
        tiSO_ThreadAttach();
        std::mt19937 random(static_cast<unsigned>(thread));
        for (int turn = 0; turn < kTurns; ++turn) body(random);
        tiSO_ThreadDetach();
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(lock_->count, 0U);
    EXPECT_EQ(lock_->owner, TISO_NO_THREAD);
    EXPECT_EQ(lock_->shared_waiters.next, nullptr);
    EXPECT_EQ(lock_->exclusive_waiters.next, nullptr);
    EXPECT_EQ(guarded_.left, guarded_.right);
    EXPECT_EQ(guarded_.left, writes_.load());
    EXPECT_EQ(broken_.load(), 0);
  }

  void Write() {
    ++guarded_.left;
    if (guarded_.left % 16 == 0) sched_yield();
    ++guarded_.right;
    ++writes_;
  }
  void Read() {
    const uint32_t left = guarded_.left;
    if (left % 16 == 0) sched_yield();
    if (left != guarded_.right) ++broken_;
  }

  static constexpr int kTurns = Rounds(4000);
  OwnLock lock_;
  Guarded guarded_;
  std::atomic<uint32_t> writes_{0};
  std::atomic<int> broken_{0};
};

TEST_F(SeLockLoad, WritersExcludeEachOther) {
  RunThreads([this](std::mt19937&) {
    ASSERT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
    Write();
    tiSO_SELockRelease(lock_);
  });
  EXPECT_EQ(writes_.load(), static_cast<uint32_t>(kThreads) * kTurns);
}

TEST_F(SeLockLoad, WritersExcludeReadersOfBothKinds) {
  RunThreads([this](std::mt19937& random) {
    switch (random() % 4U) {
      case 0:
        ASSERT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
        Write();
        break;
      case 1:
        ASSERT_EQ(tiSO_SELockSharedStarveExclusive(lock_, 1), 1);
        Read();
        break;
      default:
        ASSERT_EQ(tiSO_SELockSharedWaitForExclusive(lock_, 1), 1);
        Read();
    }
    tiSO_SELockRelease(lock_);
  });
}

TEST_F(SeLockLoad, DepthsDowngradesAndTriesKeepTheExclusion) {
  RunThreads([this](std::mt19937& random) {
    const BOOL wait = random() % 2U == 0 ? 1 : 0;
    switch (random() % 3U) {
      case 0:  // Two levels, the second released before the second write.
        if (tiSO_SELockExclusive(lock_, wait) == 0) return;
        ASSERT_EQ(tiSO_SELockExclusive(lock_, wait), 1);
        Write();
        tiSO_SELockRelease(lock_);
        Write();
        break;
      case 1:  // A downgrade: a reader from then on.
        if (tiSO_SELockExclusive(lock_, wait) == 0) return;
        Write();
        tiSO_SELockExclusiveToShared(lock_);
        Read();
        break;
      default:
        if (tiSO_SELock(lock_, 0, wait) == 0) return;
        Read();
    }
    tiSO_SELockRelease(lock_);
  });
}

/// A client that is told without waiting, and asks again until it has the lock.
struct Client {
  std::atomic<bool> told{false};
};

uint32_t Tell(uintptr_t first, uint32_t, uintptr_t, uint32_t) {
  reinterpret_cast<Client*>(first)->told = true;
  return 0;
}

TEST_F(SeLockLoad, ClientsThatAreToldGetTheLockInTheEnd) {
  RunThreads([this](std::mt19937& random) {
    if (random() % 4U != 0) {
      ASSERT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
      Write();
      tiSO_SELockRelease(lock_);
      return;
    }
    Client client;
    while (tiSO_SELockExclusiveNotify(lock_, Tell, reinterpret_cast<uintptr_t>(&client), 0) == 0) {
      while (!client.told) sched_yield();
      client.told = false;
    }
    Write();
    tiSO_SELockRelease(lock_);
  });
}

}  // namespace
