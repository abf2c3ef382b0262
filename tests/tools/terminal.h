#ifndef ZEBCOMN_TESTS_TOOLS_TERMINAL_H_
#define ZEBCOMN_TESTS_TOOLS_TERMINAL_H_

#include <sys/types.h>

#include <string>
#include <vector>

namespace zebcomn_test {

/// A program of this machine at a terminal of its own, with nobody but the test at the keys. What
/// it shows has plain new lines, and what is typed is not shown.
class Terminal {
 public:
  /// Starts the program, searched in PATH, which takes interrupts also where the test ignores
  /// them. Throws when there can be no terminal or no process.
  explicit Terminal(const std::vector<std::string>& arguments);
  /// Hangs up, and waits for the program's end.
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Reads until what was shown so far ends with this text, or until the program ends; all of it.
  const std::string& ReadUntil(const std::string& end);
  /// Reads until the program ends; all that was shown.
  const std::string& ReadAll();
  void Type(const std::string& keys);
  /// Waits for the end: the exit status, or 128 + the signal that ended it.
  int Wait();

 private:
  bool ReadMore();

  int keyboard_ = -1;
  pid_t pid_ = -1;
  std::string shown_;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_TOOLS_TERMINAL_H_
