#ifndef ZEBCOMN_TESTS_LISTS_ATTACHED_H_
#define ZEBCOMN_TESTS_LISTS_ATTACHED_H_

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "tests/support/rounds.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/spin_lock.h"
#include "zebcomn/lists/thread_attach.h"

namespace zebcomn_test {

/// Attaches the process and the test's own thread.
class AttachedTest : public testing::Test {
 protected:
  AttachedTest();
  ~AttachedTest() override;
};

/// A thread of its own identity that makes one call at a time and tells its result.
class Worker {
 public:
  enum class Kind { kAttached, kNotAttached };
  explicit Worker(Kind kind = Kind::kAttached);
  /// Waits for the call under way.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  uintptr_t identity() const { return identity_; }
  /// Begins a call. REQUIRES: none is under way.
  void Start(std::function<BOOL()> call);
  /// Whether the call has returned.
  bool finished();
  /// Waits for the call's result.
  BOOL Finish();
  BOOL Call(std::function<BOOL()> call);

 private:
  void Run(Kind kind);
  void SetDone(BOOL result);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::function<BOOL()> call_;
  BOOL result_ = FALSE;
  bool done_ = false;
  bool ending_ = false;
  uintptr_t identity_ = TISO_NO_THREAD;
  std::thread thread_;
};

/// The fields of a lock at one moment, with the queues as identities, the next to be served first.
struct LockView {
  uintptr_t owner;
  uint32_t count;
  int32_t state;
  int32_t pid;
  std::vector<uintptr_t> shared;
  std::vector<uintptr_t> exclusive;
  std::vector<tiSO_NotifyRecord_t*> notify;
};
LockView ViewOf(tiSO_SELock_t* lock);

/// A lock for the length of a test.
class OwnLock {
 public:
  OwnLock() { EXPECT_EQ(tiSO_SELockCreate(&lock_), ZEBCOMN_STATUS_OK); }
  ~OwnLock() { tiSO_Release(lock_); }
  OwnLock(const OwnLock&) = delete;
  OwnLock& operator=(const OwnLock&) = delete;
  operator tiSO_SELock_t*() { return lock_; }
  tiSO_SELock_t* operator->() { return lock_; }

 private:
  tiSO_SELock_t* lock_ = nullptr;
};

/// Begins a request that must be queued, and returns when it is: it is then asleep or about to be.
void StartAndQueue(Worker& worker, tiSO_SELock_t* lock, std::function<BOOL()> call);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_LISTS_ATTACHED_H_
