#ifndef ZEBCOMN_TESTS_RELIABILITY_SWEEP_H_
#define ZEBCOMN_TESTS_RELIABILITY_SWEEP_H_

/// \file
/// Every failure, once. A use is one typical use of one exported call or a few. The sweep runs it
/// again and again: first without a failure, then with the 1st call of the C library failing that
/// the armed part makes, then with the 2nd, and so on until the use passes without having met its
/// failure; each call fails once with each of its errors. After each run the sweep checks that no
/// memory, descriptor or lock is lost, that the thread can still be cancelled, and that the use
/// passes without a failure once more; before each call of the first run, that exec() would leave
/// no descriptor of the library's open. What a use does not ask for is checked too: `nErrno` must
/// be as it was.
///
/// To add a use, write
///
///     ZEBCOMN_USE(EventCreation, NotSignalled, "tivCreateEvent") {
///       HANDLE event = nullptr;                                                     // set-up
///       trial.Call([&] { event = tivCreateEvent(nullptr, TRUE, FALSE, nullptr); });  // armed
///       EXPECT_EQ(event == nullptr, trial.Failed());                                // check
///       EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? ENOMEM : kErrorLeftAlone);
///       tivCloseHandle(event);                                                      // clean-up
///     }
///
/// in tests/reliability/<subsystem>_failures_test.cpp. The strings are the exported functions that
/// the use covers, as abi/exported-names.txt has them, without namespaces and arguments
/// ("ISysProps::GetOSInformation"). The body runs hundreds of times, so it must set up everything
/// that it needs and clean up everything that it made. Make texts and other arguments outside
/// Call(): the failures are meant for the library. What a failed call leaves behind by description
/// is said with trial.Leaves(), and checked as exactly that; the body then also holds an
/// ExpectedLeak, for the sanitizer.
///
/// The other forms:
///  - ZEBCOMN_USE_WITHOUT_CALLS, for functions that make no call that can fail: the use runs once,
///    and the sweep checks that it saw none.
///  - ZEBCOMN_FRESH_USE: each run is in a child process, for what the library does in a process's
///    first call only. Nothing else in the program may make that call.
///  - ZEBCOMN_ENDING_USE(suite, name, function, ...): the same, and a run in which `function` fails
///    must end its process with abort().
///  - ZEBCOMN_HOST_USE(suite, name, prepare, ...): all runs are in one private host, for which
///    `prepare(PrivateHost&)` is called first; skipped where there are none.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/call_plan.h"
#include "tests/support/error_slot.h"
#include "tests/support/private_host.h"
#include "zebcomn/portable/error.h"

namespace zebcomn_test {

/// What a run leaves behind.
struct Remains {
  long blocks = 0;      ///< Blocks of memory.
  int descriptors = 0;  ///< Open file descriptors.
  int locks = 0;        ///< Mutexes that the armed calls locked and did not unlock.
};

/// One run of a use.
class Trial {
 public:
  explicit Trial(CallPlan* plan) : plan_(plan) {}

  /// Runs `call` armed. It may be used several times in a run; the calls are counted on. It runs on
  /// the thread whose calls are to fail, one thread at a time. What `call` throws goes on.
  template <typename Function>
  void Call(Function&& call) {
    const Armed armed(this);
    call();
  }

  /// Whether a call has been made to fail so far; if so, which function (without the "64" of its
  /// name) and with which error.
  bool Failed() const { return plan_->function != nullptr; }
  bool FailedIn(std::string_view function) const;
  /// The same for the `nth` call of the function in this run, counted from 1.
  bool FailedIn(std::string_view function, int nth) const;
  /// The same for any function that takes memory.
  bool FailedInAllocation() const;
  int error() const { return plan_->error; }
  /// What the calls since the last question have stored in `nErrno`, the last of them if several
  /// did; `kErrorLeftAlone` if none has. A run that ends without the question expects none.
  int ErrorSlot() const;

  /// Says that this run leaves something behind by description, and why.
  void Leaves(const Remains& remains, const std::string& why);

  bool was_armed() const { return was_armed_; }
  const Remains& left() const { return left_; }
  /// How many descriptors more exec() would have left open during a call than before it, if the
  /// plan's `before` looks.
  int inherited() const { return inherited_; }
  /// What has been stored in `nErrno` without a question after it.
  int unasked_error_slot() const { return slot_is_asked_ ? kErrorLeftAlone : error_slot_; }

 private:
  class Armed {
   public:
    explicit Armed(Trial* trial);
    ~Armed();
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;

   private:
    Trial* trial_;
    int inherited_before_ = 0;
  };

  CallPlan* plan_;
  int error_slot_ = kErrorLeftAlone;
  mutable bool slot_is_asked_ = false;
  bool was_armed_ = false;
  Remains left_;
  int inherited_ = 0;
};

/// A use in the list of all uses.
class Use {
 public:
  using Body = void (*)(Trial& trial);
  using Preparation = void (*)(PrivateHost& host);

  Use(std::string name, std::vector<std::string> covered, Body body);

  /// Fails every call once. What is found is reported as a failure of the current test.
  void Sweep() const;
  void SweepInChildren(std::string_view ends_in = {}) const;
  void SweepInHost(Preparation prepare) const;
  /// Runs the use once and reports every call that could have failed.
  void ExpectNoCalls() const;

  const std::vector<std::string>& covered() const { return covered_; }

 private:
  std::string name_;
  std::vector<std::string> covered_;
  Body body_;
};

/// Every use of the program.
const std::vector<const Use*>& AllUses();

}  // namespace zebcomn_test

// `sweep` is what the test does with the use.
#define ZEBCOMN_USE_IN_TEST(suite, name, sweep, ...)                               \
  static void suite##name##Body(zebcomn_test::Trial& trial);                       \
  static const zebcomn_test::Use suite##name##Use(#suite "." #name, {__VA_ARGS__}, \
                                                  suite##name##Body);              \
  TEST(suite, name) {                                                              \
    suite##name##Use.sweep;                                                        \
  }                                                                                \
  static void suite##name##Body([[maybe_unused]] zebcomn_test::Trial& trial)

#define ZEBCOMN_USE(suite, name, ...) ZEBCOMN_USE_IN_TEST(suite, name, Sweep(), __VA_ARGS__)
#define ZEBCOMN_USE_WITHOUT_CALLS(suite, name, ...) \
  ZEBCOMN_USE_IN_TEST(suite, name, ExpectNoCalls(), __VA_ARGS__)
#define ZEBCOMN_FRESH_USE(suite, name, ...) \
  ZEBCOMN_USE_IN_TEST(suite, name, SweepInChildren(), __VA_ARGS__)
#define ZEBCOMN_ENDING_USE(suite, name, function, ...) \
  ZEBCOMN_USE_IN_TEST(suite, name, SweepInChildren(function), __VA_ARGS__)
#define ZEBCOMN_HOST_USE(suite, name, prepare, ...) \
  ZEBCOMN_USE_IN_TEST(suite, name, SweepInHost(prepare), __VA_ARGS__)

#endif  // ZEBCOMN_TESTS_RELIABILITY_SWEEP_H_
