#ifndef ZEBCOMN_PORTABLE_HELD_MUTEX_INTERNAL_H_
#define ZEBCOMN_PORTABLE_HELD_MUTEX_INTERNAL_H_

#include <pthread.h>

namespace zebcomn {

/// Owns one locked `pthread_mutex_t` for as long as it lives. The mutex is also given back when the
/// holder's thread is cancelled, since cancellation unwinds the stack.
class HeldMutex {
 public:
  /// Locks `mutex`; a failure shows in held().
  explicit HeldMutex(pthread_mutex_t& mutex)
      : mutex_(pthread_mutex_lock(&mutex) == 0 ? &mutex : nullptr) {}
  /// Says that the mutex is the library's own: neither its lock nor its unlock can fail, and
  /// nothing could go on safely if one did. A system that reports a failure is asked again.
  struct Insist {};
  HeldMutex(pthread_mutex_t& mutex, Insist) : mutex_(&mutex), insists_(true) {
    while (pthread_mutex_lock(&mutex) != 0) {
    }
  }
  ~HeldMutex() {
    if (mutex_ == nullptr) return;
    while (pthread_mutex_unlock(mutex_) != 0 && insists_) {
    }
  }
  HeldMutex(const HeldMutex&) = delete;
  HeldMutex& operator=(const HeldMutex&) = delete;

  /// Whether the mutex is locked by this object.
  bool held() const { return mutex_ != nullptr; }

  /// Unlocks now; whether pthread_mutex_unlock() succeeded. The object owns nothing afterwards.
  /// REQUIRES: held().
  bool Unlock() { return pthread_mutex_unlock(Release()) == 0; }

  /// Hands the locked mutex over: nothing unlocks it any more.
  pthread_mutex_t* Release() {
    pthread_mutex_t* mutex = mutex_;
    mutex_ = nullptr;
    return mutex;
  }

 private:
  pthread_mutex_t* mutex_;
  const bool insists_ = false;
};

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_HELD_MUTEX_INTERNAL_H_
