#ifndef ZEBCOMN_LISTS_HELD_SE_LOCK_INTERNAL_H_
#define ZEBCOMN_LISTS_HELD_SE_LOCK_INTERNAL_H_

#include "zebcomn/lists/se_lock.h"

namespace zebcomn {

/// Owns one grant of a lock for as long as it lives, if the lock gave one: it gives none when it is
/// null, and none to a thread that is not attached and would have to wait.
class HeldSeLock {
 public:
  static HeldSeLock Exclusive(tiSO_SELock_t* lock) {
    return HeldSeLock(lock, tiSO_SELockExclusive(lock, TRUE));
  }
  static HeldSeLock Shared(tiSO_SELock_t* lock) {
    return HeldSeLock(lock, tiSO_SELockSharedWaitForExclusive(lock, TRUE));
  }
  ~HeldSeLock() { tiSO_SELockRelease(lock_); }
  HeldSeLock(const HeldSeLock&) = delete;
  HeldSeLock& operator=(const HeldSeLock&) = delete;

  bool held() const { return lock_ != nullptr; }

 private:
  HeldSeLock(tiSO_SELock_t* lock, BOOL granted) : lock_(granted != FALSE ? lock : nullptr) {}

  tiSO_SELock_t* const lock_;
};

}  // namespace zebcomn

#endif  // ZEBCOMN_LISTS_HELD_SE_LOCK_INTERNAL_H_
