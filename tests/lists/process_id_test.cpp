// The process id that exclusive grants record: right after a fork, and asked for once a process.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <string>

#include "tests/lists/attached.h"
#include "tests/support/fresh_process.h"
#include "zebcomn/lists/se_lock.h"

namespace {

std::atomic<int> questions{0};

pid_t RealId() {
  return static_cast<pid_t>(syscall(SYS_getpid));
}

}  // namespace

extern "C" pid_t getpid() noexcept {
  ++questions;
  return RealId();
}

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::OwnLock;

class ProcessIdOfGrants : public AttachedTest {
 protected:
  void TakeAndRelease() {
    EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
    EXPECT_EQ(lock_->pid, RealId());
    tiSO_SELockRelease(lock_);
  }

  OwnLock lock_;
};

TEST_F(ProcessIdOfGrants, IsAskedForOnceAProcess) {
  TakeAndRelease();
  EXPECT_GT(questions.load(), 0) << "the library's question did not come here";
  questions = 0;
  for (int turn = 0; turn < 100; ++turn) {
    TakeAndRelease();
    EXPECT_EQ(tiSO_SELockExclusiveNotify(lock_, nullptr, 0, 0), 1);
    tiSO_SELockRelease(lock_);
  }
  zebcomn_test::Worker waiter;
  questions = 0;
  EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
  StartAndQueue(waiter, lock_, [this] { return tiSO_SELockExclusive(lock_, 1); });
  lock_->pid = 0;
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(waiter.Finish(), 1);
  EXPECT_EQ(lock_->pid, RealId());
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(questions.load(), 0);
}

TEST_F(ProcessIdOfGrants, IsTheChildsOwnAfterAFork) {
  TakeAndRelease();
  const std::string told = zebcomn_test::RunInFreshProcess([this] {
    if (tiSO_SELockExclusive(lock_, 1) != 1) return std::string("refused");
    return std::to_string(lock_->pid - RealId()) + " " + std::to_string(lock_->pid);
  });
  EXPECT_EQ(told.substr(0, 2), "0 ");
  EXPECT_NE(told, "0 " + std::to_string(RealId()));
  TakeAndRelease();
}

}  // namespace
