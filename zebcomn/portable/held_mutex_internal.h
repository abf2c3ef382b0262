#ifndef ZEBCOMN_PORTABLE_HELD_MUTEX_INTERNAL_H_
#define ZEBCOMN_PORTABLE_HELD_MUTEX_INTERNAL_H_

#include <pthread.h>

namespace zebcomn {

/// Holds a POSIX mutex from here to the end of the scope.
class HeldMutex {
 public:
  explicit HeldMutex(pthread_mutex_t& mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
  ~HeldMutex() { pthread_mutex_unlock(&mutex_); }
  HeldMutex(const HeldMutex&) = delete;
  HeldMutex& operator=(const HeldMutex&) = delete;

 private:
  pthread_mutex_t& mutex_;
};

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_HELD_MUTEX_INTERNAL_H_
