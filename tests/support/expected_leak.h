#ifndef ZEBCOMN_TESTS_SUPPORT_EXPECTED_LEAK_H_
#define ZEBCOMN_TESTS_SUPPORT_EXPECTED_LEAK_H_

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEBCOMN_TESTS_COUNT_LEAKS
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define ZEBCOMN_TESTS_COUNT_LEAKS
#endif

#ifdef ZEBCOMN_TESTS_COUNT_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

namespace zebcomn_test {

/// While it lives, what this thread allocates may leak without a report: for calls that are known
/// to leave memory behind. Say at each use what that is.
class ExpectedLeak {
 public:
#ifdef ZEBCOMN_TESTS_COUNT_LEAKS
  ExpectedLeak() {
    __lsan_disable();
  }
  ~ExpectedLeak() {
    __lsan_enable();
  }
#else
  ExpectedLeak() {}
  ~ExpectedLeak() {}
#endif
  ExpectedLeak(const ExpectedLeak&) = delete;
  ExpectedLeak& operator=(const ExpectedLeak&) = delete;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_EXPECTED_LEAK_H_
