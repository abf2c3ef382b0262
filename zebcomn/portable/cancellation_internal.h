#ifndef ZEBCOMN_PORTABLE_CANCELLATION_INTERNAL_H_
#define ZEBCOMN_PORTABLE_CANCELLATION_INTERNAL_H_

#include <pthread.h>

namespace zebcomn {

/// Keeps the calling thread from being cancelled for as long as it lives; a pending cancellation
/// acts at the next cancellation point after that.
class CancellationHeldOff {
 public:
  CancellationHeldOff() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_); }
  ~CancellationHeldOff() { pthread_setcancelstate(before_, nullptr); }
  CancellationHeldOff(const CancellationHeldOff&) = delete;
  CancellationHeldOff& operator=(const CancellationHeldOff&) = delete;

 private:
  int before_ = PTHREAD_CANCEL_ENABLE;
};

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_CANCELLATION_INTERNAL_H_
