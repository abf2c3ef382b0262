#ifndef ZEBCOMN_TESTS_SUPPORT_CHILD_PROGRAM_H_
#define ZEBCOMN_TESTS_SUPPORT_CHILD_PROGRAM_H_

#include <sys/types.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace zebcomn_test {

/// A program that runs beside the test, on the test's own standard streams.
class ChildProgram {
 public:
  /// Starts a program of this machine, searched in PATH. Its standard output is the descriptor
  /// `output`; it takes interrupts also where the test ignores them. Throws when there can be no
  /// new process.
  explicit ChildProgram(const std::vector<std::string>& arguments, int output = STDOUT_FILENO);
  /// Kills the program if it is still running.
  ~ChildProgram();
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  void Send(int signo);
  /// Waits for the end: the exit status, or 128 + the signal that ended it.
  int Wait();

 private:
  pid_t pid_;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_CHILD_PROGRAM_H_
