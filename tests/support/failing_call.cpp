#include "tests/support/failing_call.h"

#include <cstring>
#include <utility>

namespace zebcomn_test {
namespace {

// Plain thread-local data: an interposer of malloc must not allocate.
thread_local const char* failing_function = nullptr;
thread_local int calls_to_go = 0;
thread_local int failing_errno = 0;
thread_local const std::function<void()>* action_before = nullptr;

}  // namespace

FailingCall::FailingCall(const char* function, int nth, int error) {
  calls_to_go = nth;
  failing_errno = error;
  failing_function = function;
}

FailingCall::FailingCall(const char* function, int nth, std::function<void()> action)
    : FailingCall(function, nth) {
  action_ = std::move(action);
  action_before = &action_;
}

FailingCall::~FailingCall() {
  failing_function = nullptr;
  action_before = nullptr;
}

bool FailingCall::Happened() const {
  return calls_to_go == 0;
}

ZEBCOMN_TESTS_NOT_SANITIZED bool IsToFail(const char* function) {
  if (failing_function == nullptr || calls_to_go == 0) return false;
  if (std::strcmp(failing_function, function) != 0 || --calls_to_go != 0) return false;
  if (action_before != nullptr) {
    (*action_before)();
    return false;
  }
  errno = failing_errno;
  return true;
}

}  // namespace zebcomn_test
