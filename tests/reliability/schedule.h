#ifndef ZEBCOMN_TESTS_RELIABILITY_SCHEDULE_H_
#define ZEBCOMN_TESTS_RELIABILITY_SCHEDULE_H_

/// \file
/// Races provoked: a scenario is run under many schedules. Before and after each call that
/// interposed_calls.h and interposed_waits.cpp tell of, a thread goes on, yields or sleeps, as
/// numbers say that follow from the schedule's seed and from the thread's place in the order of
/// creation. Meanwhile freed memory is watched (quarantine.h).
///
/// A failure, a crash and a hang each print the seed. The environment:
///   ZEBCOMN_SCHEDULES=N       run each scenario under N schedules, not the short form's number;
///   ZEBCOMN_SCHEDULE_SEED=S   begin with the schedule of seed S, not with that of seed 1.
/// A seed repeats every decision of every thread. What it cannot repeat is what the kernel decides
/// between them, so a rare failure may want the same seed several times:
///   ZEBCOMN_SCHEDULE_SEED=S ZEBCOMN_SCHEDULES=1 PROGRAM --gtest_filter=CASE --gtest_repeat=100
///
/// A test that includes this header names ${schedule_sources} and is marked INTERPOSES.

#include <gtest/gtest.h>

namespace zebcomn_test {

/// Runs `scenario` under `short_count` schedules (fewer under a checker or an emulator), or under
/// as many as the environment asks for; stops at the first that fails.
template <typename Scenario>
void RunSchedules(int short_count, Scenario scenario);

/// One run of the schedules, for RunSchedules().
class Schedules {
 public:
  explicit Schedules(int short_count);
  ~Schedules();
  Schedules(const Schedules&) = delete;
  Schedules& operator=(const Schedules&) = delete;

  /// Begins the next schedule; false when there is none, or when the test has failed.
  bool Next();

 private:
  void ReportFailure() const;

  unsigned seed_;
  int left_;
  bool begun_ = false;
};

template <typename Scenario>
void RunSchedules(int short_count, Scenario scenario) {
  Schedules schedules(short_count);
  while (schedules.Next()) scenario();
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_RELIABILITY_SCHEDULE_H_
