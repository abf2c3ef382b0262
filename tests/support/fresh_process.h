#ifndef ZEBCOMN_TESTS_SUPPORT_FRESH_PROCESS_H_
#define ZEBCOMN_TESTS_SUPPORT_FRESH_PROCESS_H_

#include <functional>
#include <string>

namespace zebcomn_test {

/// Runs `body` in a child process and returns the text that it returned, so that what the body does
/// to the process's state (statics of the library, environment, locale, name spaces) ends with it.
/// A body that throws, crashes or exits makes this call throw with the reason, so a test that uses
/// it cannot pass by accident. `body` must not use gtest assertions; what it finds, it returns.
/// REQUIRES: the calling process has one thread.
std::string RunInFreshProcess(const std::function<std::string()>& body);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_FRESH_PROCESS_H_
