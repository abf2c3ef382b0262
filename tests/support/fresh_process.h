#ifndef ZEBCOMN_TESTS_SUPPORT_FRESH_PROCESS_H_
#define ZEBCOMN_TESTS_SUPPORT_FRESH_PROCESS_H_

#include <functional>
#include <stdexcept>
#include <string>

namespace zebcomn_test {

/// What RunInFreshProcess() throws when the child does not come to its end.
class ChildDied : public std::runtime_error {
 public:
  /// `status` is that of waitpid().
  explicit ChildDied(int status);
  /// The signal that ended the child; 0 when it called exit() itself.
  int signal() const { return signal_; }

 private:
  int signal_;
};

/// Runs `body` in a child process and returns the text that it returned, so that what the body does
/// to the process's state (statics of the library, environment, locale, name spaces) ends with it.
/// A body that throws, crashes or exits makes this call throw with the reason, so a test that uses
/// it cannot pass by accident. `body` must not use gtest assertions; what it finds, it returns.
/// REQUIRES: the calling process has one thread.
std::string RunInFreshProcess(const std::function<std::string()>& body);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_FRESH_PROCESS_H_
