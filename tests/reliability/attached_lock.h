#ifndef ZEBCOMN_TESTS_RELIABILITY_ATTACHED_LOCK_H_
#define ZEBCOMN_TESTS_RELIABILITY_ATTACHED_LOCK_H_

/// \file
/// What a use of the shared/exclusive lock or of a synchronised list sets up, and checks in the
/// end.

#include <gtest/gtest.h>

#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/thread_attach.h"

namespace zebcomn_test {

/// The process and the calling thread attached, for the length of a run.
class Attached {
 public:
  Attached() {
    EXPECT_NE(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
    EXPECT_EQ(tiSO_ThreadAttach(), 1U);
  }
  ~Attached() {
    EXPECT_EQ(tiSO_ThreadDetach(), TRUE);
    EXPECT_EQ(tiSO_ProcessDetach(), TRUE);
  }
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;
};

/// A lock that the calling thread can take, for the length of a run.
class AttachedLock {
 public:
  AttachedLock() { EXPECT_EQ(tiSO_SELockCreate(&lock_), ZEBCOMN_STATUS_OK); }
  ~AttachedLock() {
    EXPECT_EQ(lock_->count, 0U) << "all grants are given back";
    EXPECT_EQ(lock_->spin_word, 0);
    tiSO_Release(lock_);
  }
  AttachedLock(const AttachedLock&) = delete;
  AttachedLock& operator=(const AttachedLock&) = delete;
  tiSO_SELock_t* get() const { return lock_; }

 private:
  const Attached attached_;
  tiSO_SELock_t* lock_ = nullptr;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_RELIABILITY_ATTACHED_LOCK_H_
