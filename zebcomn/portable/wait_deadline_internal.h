#ifndef ZEBCOMN_PORTABLE_WAIT_DEADLINE_INTERNAL_H_
#define ZEBCOMN_PORTABLE_WAIT_DEADLINE_INTERNAL_H_

#include <sys/time.h>

#include <ctime>
#include <limits>

#include "zebcomn/portable/types.h"

namespace zebcomn {

/// The moment `milliseconds` after `now`, as pthread_cond_timedwait() takes it. A second that the
/// clock cannot express becomes its last one.
inline timespec MakeWaitDeadline(const timeval& now, DWORD milliseconds) {
  constexpr DWORD kMillisecondsPerSecond = 1000;
  constexpr long kNanosecondsPerMicrosecond = 1000;
  constexpr long kNanosecondsPerMillisecond = 1000000;
  timespec deadline{};
  const auto whole_seconds = static_cast<time_t>(milliseconds / kMillisecondsPerSecond);
  if (__builtin_add_overflow(now.tv_sec, whole_seconds, &deadline.tv_sec)) {
    deadline.tv_sec = std::numeric_limits<time_t>::max();
  }
  // Kept: no carry into the seconds. A sum of a second or more makes the wait fail with EINVAL;
  // callers see 0.
  deadline.tv_nsec =
      static_cast<long>(now.tv_usec) * kNanosecondsPerMicrosecond +
      static_cast<long>(milliseconds % kMillisecondsPerSecond) * kNanosecondsPerMillisecond;
  return deadline;
}

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_WAIT_DEADLINE_INTERNAL_H_
