#ifndef ZEBCOMN_TESTS_SUPPORT_FAILING_CALL_H_
#define ZEBCOMN_TESTS_SUPPORT_FAILING_CALL_H_

#include <cerrno>
#include <functional>

namespace zebcomn_test {

/// Makes one call of a C library function fail, in the thread that made this object and while it
/// lives. A test that includes this header names the files with the interposers that it needs
/// among its sources (tests/support/failing_malloc.cpp, tests/support/failing_system_calls.cpp) and
/// is marked INTERPOSES. At most one object lives in a thread at a time.
class FailingCall {
 public:
  /// The `nth` call of `function` from here on fails with `error` in `errno`.
  explicit FailingCall(const char* function, int nth = 1, int error = EIO);
  ~FailingCall();
  /// The `nth` call does not fail; `action` runs right before it.
  FailingCall(const char* function, int nth, std::function<void()> action);
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;

  /// Whether the call has come.
  bool Happened() const;

 private:
  std::function<void()> action_;
};

/// Marks what runs in a process before its sanitizer is ready, as an interposer of malloc does.
#define ZEBCOMN_TESTS_NOT_SANITIZED __attribute__((no_sanitize("address", "thread", "undefined")))

/// For interposers: whether this call of `function` is the one to fail; `errno` is set then.
bool IsToFail(const char* function);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_FAILING_CALL_H_
