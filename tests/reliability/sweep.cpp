#include "tests/reliability/sweep.h"

#include <dlfcn.h>
#include <gtest/gtest-spi.h>
#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <new>
#include <sstream>
#include <utility>

#include "tests/support/descriptors.h"
#include "tests/support/fresh_process.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace zebcomn_test {
namespace {

// A use that makes more calls than this does not come to its end.
constexpr long kMostCalls = 100000;

struct Figures {
  int uses = 0;
  int uses_without_calls = 0;
  long failures = 0;
};
Figures figures;

// The uses are made before main(), in any order of the files.
std::vector<const Use*>& Uses() {
  static std::vector<const Use*> uses;
  return uses;
}

// Prints what this run of the program has swept.
class Summary : public testing::Environment {
 public:
  void TearDown() override {
    std::printf("sweep: %d uses, %ld failures injected, %d uses without a call that can fail\n",
                figures.uses, figures.failures, figures.uses_without_calls);
  }
};
[[maybe_unused]] const auto* const summary = testing::AddGlobalTestEnvironment(new Summary);

// The name without what tells a form for large files or late times apart.
std::string_view WithoutSizeSuffix(std::string_view name) {
  for (const std::string_view suffix : {"_time64", "64"}) {
    if (name.size() > suffix.size() && name.substr(name.size() - suffix.size()) == suffix) {
      name.remove_suffix(suffix.size());
    }
  }
  return name;
}

// What tells the checks of a run: which call fails, and where.
std::string Describe(const CallPlan& plan) {
  if (plan.failing_call == 0) return "without a failure";
  std::string text = "call " + std::to_string(plan.failing_call);
  if (plan.function == nullptr) return text + " does not come";
  return text + ", " + plan.function + " for the " + std::to_string(plan.nth) +
         ". time, fails with " + std::to_string(plan.error);
}

// A plan that a child process can tell its parent about.
class SharedPlan {
 public:
  SharedPlan(long failing_call, int error_choice)
      : page_(mmap(nullptr, sizeof(CallPlan), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                   -1, 0)) {
    if (page_ == MAP_FAILED) throw std::bad_alloc();
    get() = CallPlan{};
    get().failing_call = failing_call;
    get().error_choice = error_choice;
  }
  ~SharedPlan() { munmap(page_, sizeof(CallPlan)); }
  SharedPlan(const SharedPlan&) = delete;
  SharedPlan& operator=(const SharedPlan&) = delete;

  CallPlan& get() const { return *static_cast<CallPlan*>(page_); }

 private:
  void* page_;
};

// Whether the memory that the process takes comes from the wrappers: valgrind puts its own
// functions in front of them, and looks for leaks itself.
bool BlocksAreCounted() {
  const long before = LiveBlocks();
  void* volatile block = std::malloc(1);  // Not optimised away.
  const bool counted = LiveBlocks() != before;
  std::free(block);
  return counted;
}

// The blocks that the process has more than before. A thread that has ended may still be giving
// some back, so it is waited for: only a moment where the run can be made again, but as long as a
// busy machine may take where this is the last word.
long BlocksMoreThan(long before, long expected, bool is_last_word) {
  if (!BlocksAreCounted()) return expected;
  constexpr int kLooks = 20000;
  constexpr timespec kPause{0, 500'000};
  long more = LiveBlocks() - before;
  for (int look = 0; look < kLooks && more > expected; ++look) {
    if (is_last_word) {
      nanosleep(&kPause, nullptr);
    } else {
      sched_yield();
    }
    more = LiveBlocks() - before;
  }
  return more;
}

bool CancellationIsEnabled() {
  int state = PTHREAD_CANCEL_DISABLE;
  pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &state);
  return state == PTHREAD_CANCEL_ENABLE;
}

// The sanitizer's own opinion of what the use has left.
void ExpectNoLeak() {
#ifdef __SANITIZE_ADDRESS__
  // It cannot be asked where a private host covers "/proc"; the blocks are counted there as well.
  if (access("/proc/self/task", R_OK) != 0) return;
  EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
#endif
}

// How often a run is made that loses memory each time: what the process, or the loader, sets up and
// keeps is lost in the first few of equal runs only.
constexpr int kRunsOfALoss = 4;

// The loader keeps its last text until it is used again; a run begins and ends without one.
void ForgetLoaderText() {
  while (dlerror() != nullptr) {
  }
  dlerror();
}

void RunAndCheck(Use::Body body, CallPlan* plan, int runs = kRunsOfALoss) {
  const CallPlan fresh_plan = *plan;
  for (;;) {
    *plan = fresh_plan;
    ForgetLoaderText();
    const int descriptors = OpenDescriptorCount();
    const long blocks = LiveBlocks();
    Trial trial(plan);
    body(trial);
    ForgetLoaderText();
    const long more = BlocksMoreThan(blocks, trial.left().blocks, runs == 1);
    if (more != trial.left().blocks && --runs > 0) continue;
    EXPECT_TRUE(trial.was_armed()) << "the use has no armed call";
    EXPECT_EQ(more, trial.left().blocks) << "blocks of memory";
    EXPECT_EQ(OpenDescriptorCount() - descriptors, trial.left().descriptors) << "descriptors";
    EXPECT_EQ(plan->locks_held, trial.left().locks) << "locks";
    EXPECT_EQ(trial.inherited(), 0) << "descriptors that stay open over exec()";
    EXPECT_EQ(trial.unasked_error_slot(), kErrorLeftAlone) << "nErrno";
    EXPECT_TRUE(CancellationIsEnabled());
    return;
  }
}

// What the expectations of `run` said that did not hold.
std::string FaultsOf(const std::function<void()>& run) {
  testing::TestPartResultArray results;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &results);
    try {
      run();
    } catch (const std::exception& error) {
      ADD_FAILURE() << "thrown: " << error.what();
    }
  }
  std::ostringstream text;
  for (int i = 0; i < results.size(); ++i) text << results.GetTestPartResult(i) << "\n";
  return text.str();
}

// How one run is made: it gives what did not hold.
using Runner = std::function<std::string(CallPlan* plan)>;

// A thread of the process may start a program at any time, which must not get the library's files.
void NoteInherited(CallPlan* plan) {
  plan->inherited = std::max(plan->inherited, InheritedDescriptorCount());
}

// What a whole sweep gives, and what it found.
struct Report {
  long failures = 0;
  std::string faults;
};

// Runs with the given call failing, and then without a failure.
std::string RunOnce(const Runner& run, CallPlan* plan) {
  std::string faults = run(plan);
  if (!faults.empty()) return Describe(*plan) + ":\n" + faults;
  if (plan->function == nullptr) return "";
  const SharedPlan undisturbed(0, 0);
  faults = run(&undisturbed.get());
  return faults.empty() ? "" : "after " + Describe(*plan) + ":\n" + faults;
}

Report SweepCalls(const Runner& run) {
  Report report;
  const SharedPlan first(0, 0);
  first.get().before = NoteInherited;
  report.faults = RunOnce(run, &first.get());
  for (long call = 1; report.faults.empty() && call < kMostCalls; ++call) {
    int choices = 1;
    for (int choice = 0; choice < choices; ++choice) {
      const SharedPlan plan(call, choice);
      report.faults = RunOnce(run, &plan.get());
      if (!report.faults.empty()) return report;
      if (plan.get().function == nullptr) {
        if (choice == 0) return report;
        break;  // A run that took another way; the next call may come all the same.
      }
      ++report.failures;
      choices = plan.get().error_choices;
    }
  }
  if (report.faults.empty()) report.faults = "the use does not come to its end";
  return report;
}

void Tell(const std::string& name, const Report& report) {
  ++figures.uses;
  figures.failures += report.failures;
  if (!report.faults.empty()) ADD_FAILURE() << name << ": " << report.faults;
}

bool IsNamed(const CallPlan& plan, std::string_view function) {
  return plan.function != nullptr && function == plan.function;
}

}  // namespace

bool Trial::FailedIn(std::string_view function) const {
  return Failed() && WithoutSizeSuffix(plan_->function) == function;
}

bool Trial::FailedIn(std::string_view function, int nth) const {
  return FailedIn(function) && plan_->nth == nth;
}

bool Trial::FailedInAllocation() const {
  return FailedIn("malloc") || FailedIn("calloc") || FailedIn("operator new") ||
         FailedIn("operator new (nothrow)");
}

int Trial::ErrorSlot() const {
  slot_is_asked_ = true;
  return error_slot_;
}

void Trial::Leaves(const Remains& remains, const std::string& why) {
  EXPECT_NE(why, "");
  left_ = remains;
}

Trial::Armed::Armed(Trial* trial) : trial_(trial) {
  trial_->was_armed_ = true;
  if (trial_->slot_is_asked_) trial_->error_slot_ = kErrorLeftAlone;
  trial_->slot_is_asked_ = false;
  ClearErrorSlot();
  if (trial_->plan_->before != nullptr) {
    inherited_before_ = trial_->plan_->inherited = InheritedDescriptorCount();
  }
  ArmCalls(trial_->plan_);
}

Trial::Armed::~Armed() {
  DisarmCalls();
  const int inherited = trial_->plan_->inherited - inherited_before_;
  trial_->inherited_ = std::max(trial_->inherited_, inherited);
  if (nErrno != kErrorLeftAlone) trial_->error_slot_ = nErrno;
}

Use::Use(std::string name, std::vector<std::string> covered, Body body)
    : name_(std::move(name)), covered_(std::move(covered)), body_(body) {
  Uses().push_back(this);
}

const std::vector<const Use*>& AllUses() {
  return Uses();
}

void Use::Sweep() const {
  Tell(name_,
       SweepCalls([this](CallPlan* plan) { return FaultsOf([&] { RunAndCheck(body_, plan); }); }));
  ExpectNoLeak();
}

void Use::SweepInChildren(std::string_view ends_in) const {
  Tell(name_, SweepCalls([&](CallPlan* plan) -> std::string {
         try {
           const std::string faults =
               RunInFreshProcess([&] { return FaultsOf([&] { RunAndCheck(body_, plan, 1); }); });
           return IsNamed(*plan, ends_in) ? "the process goes on" : faults;
         } catch (const ChildDied& death) {
           return IsNamed(*plan, ends_in) && death.signal() == SIGABRT ? "" : death.what();
         }
       }));
}

void Use::SweepInHost(Preparation prepare) const {
  if (const std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string answer = RunInPrivateHost([&](PrivateHost& host) {
    prepare(host);
    const Report report =
        SweepCalls([this](CallPlan* plan) { return FaultsOf([&] { RunAndCheck(body_, plan); }); });
    const std::string leaks = FaultsOf(ExpectNoLeak);
    return std::to_string(report.failures) + "\n" + report.faults + leaks;
  });
  const size_t end_of_figure = answer.find('\n');
  Tell(name_, {std::stol(answer.substr(0, end_of_figure)), answer.substr(end_of_figure + 1)});
}

void Use::ExpectNoCalls() const {
  ++figures.uses_without_calls;
  CallPlan plan{};
  RunAndCheck(body_, &plan);
  EXPECT_EQ(plan.calls, 0) << name_;
}

}  // namespace zebcomn_test
