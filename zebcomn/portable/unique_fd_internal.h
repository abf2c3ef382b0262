#ifndef ZEBCOMN_PORTABLE_UNIQUE_FD_INTERNAL_H_
#define ZEBCOMN_PORTABLE_UNIQUE_FD_INTERNAL_H_

#include <unistd.h>

#include <utility>

#include "zebcomn/portable/cancellation_internal.h"

namespace zebcomn {

/// Owns one file descriptor. A negative number is none. Its end is no cancellation point: a thread
/// that is cancelled in a destructor ends the process.
class UniqueFd {
 public:
  explicit UniqueFd(int fd = -1) : fd_(fd) {}
  ~UniqueFd() { Reset(); }
  UniqueFd(UniqueFd&& other) noexcept : fd_(other.Release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    Reset(other.Release());
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;

  bool IsOpen() const { return fd_ >= 0; }
  int get() const { return fd_; }
  /// Hands ownership to the caller.
  int Release() { return std::exchange(fd_, -1); }
  void Reset(int fd = -1) {
    const int old = std::exchange(fd_, fd);
    if (old < 0) return;
    const CancellationHeldOff no_cancellation;
    close(old);
  }

 private:
  int fd_;
};

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_UNIQUE_FD_INTERNAL_H_
