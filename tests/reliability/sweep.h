#ifndef ZEBCOMN_TESTS_RELIABILITY_SWEEP_H_
#define ZEBCOMN_TESTS_RELIABILITY_SWEEP_H_

/// \file
/// Every failure, once. A use is one typical use of one exported call or a few. The sweep runs it
/// again and again: first without a failure, then with the 1st call of the C library failing that
/// the armed part makes, then with the 2nd, and so on until the use passes without having met its
/// failure; each call fails once with each of its errors. After each run the sweep checks that no
/// memory, descriptor or lock is lost, that threads can still be cancelled, and that the use passes
/// without a failure once more.
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
/// is said with trial.Leaves(), and checked as exactly that.
///
/// ZEBCOMN_USE_WITHOUT_CALLS is for functions that make no call that can fail: their use runs once,
/// and the sweep checks that it saw none.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/call_plan.h"
#include "tests/support/error_slot.h"
#include "zebcomn/portable/error.h"

namespace zebcomn_test {

/// What a run leaves behind.
struct Remains {
  long blocks = 0;      ///< Blocks of memory, where they can be counted.
  int descriptors = 0;  ///< Open file descriptors.
  int locks = 0;        ///< Mutexes that the armed calls locked and did not unlock.
};

/// One run of a use.
class Trial {
 public:
  /// At most the `failing_call`-th call of the run fails, with the error of this number.
  Trial(long failing_call, int error_choice);

  /// Runs `call` armed. It may be used several times in a run; the calls are counted on. It must
  /// run on the thread whose calls are to fail, with one thread at a time. What `call` throws goes
  /// on.
  template <typename Function>
  void Call(Function&& call) {
    const Armed armed(this);
    call();
  }

  /// Whether a call has been made to fail so far; if so, which function (by the name that the
  /// library called, without "64") and with which error.
  bool Failed() const { return plan_.function != nullptr; }
  bool FailedIn(std::string_view function) const { return function_ == function; }
  /// The same for any function that takes memory.
  bool FailedInAllocation() const;
  std::string_view function() const { return function_; }
  int error() const { return plan_.error; }
  /// `nErrno` after the last Call(); `kErrorLeftAlone` if the library did not store anything.
  int ErrorSlot() const { return error_slot_; }

  /// Says that this run leaves something behind by description, and why.
  void Leaves(const Remains& remains, const std::string& why);

  long calls() const { return plan_.calls; }
  int error_choices() const { return plan_.error_choices; }
  int locks_held() const { return plan_.locks_held; }
  bool was_armed() const { return was_armed_; }
  const Remains& left() const { return left_; }

 private:
  class Armed {
   public:
    explicit Armed(Trial* trial);
    ~Armed();
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;

   private:
    Trial* trial_;
  };

  CallPlan plan_;
  std::string_view function_;
  int error_slot_ = kErrorLeftAlone;
  bool was_armed_ = false;
  Remains left_;
};

/// A use in the list of all uses.
class Use {
 public:
  using Body = void (*)(Trial& trial);
  Use(std::string name, std::vector<std::string> covered, Body body);

  /// Fails every call once. Reports what it finds as failures of the current test.
  void Sweep() const;
  /// Runs the use once and reports every call that could have failed.
  void ExpectNoCalls() const;

  const std::vector<std::string>& covered() const { return covered_; }

 private:
  void SweepCalls() const;
  Trial RunOnce(long failing_call, int error_choice) const;

  std::string name_;
  std::vector<std::string> covered_;
  Body body_;
};

/// Every use of the program.
const std::vector<const Use*>& AllUses();

}  // namespace zebcomn_test

#define ZEBCOMN_USE_IN_TEST(suite, name, how, ...)                                 \
  static void suite##name##Body(zebcomn_test::Trial& trial);                       \
  static const zebcomn_test::Use suite##name##Use(#suite "." #name, {__VA_ARGS__}, \
                                                  suite##name##Body);              \
  TEST(suite, name) {                                                              \
    suite##name##Use.how();                                                        \
  }                                                                                \
  static void suite##name##Body([[maybe_unused]] zebcomn_test::Trial& trial)

#define ZEBCOMN_USE(suite, name, ...) ZEBCOMN_USE_IN_TEST(suite, name, Sweep, __VA_ARGS__)
#define ZEBCOMN_USE_WITHOUT_CALLS(suite, name, ...) \
  ZEBCOMN_USE_IN_TEST(suite, name, ExpectNoCalls, __VA_ARGS__)

#endif  // ZEBCOMN_TESTS_RELIABILITY_SWEEP_H_
