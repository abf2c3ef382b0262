#include "tests/reliability/sweep.h"

#include <pthread.h>
#include <sched.h>

#include <array>
#include <cstdio>
#include <utility>

#include "tests/support/descriptors.h"

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

// Prints what the run of the program has swept.
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

// The blocks that the process has more than before. A thread that has ended may still be giving
// some back, so it is waited for.
long BlocksMoreThan(long before, long expected) {
  constexpr int kPatience = 20000;
  long more = LiveBlocks() - before;
  for (int i = 0; i < kPatience && more > expected; ++i) {
    sched_yield();
    more = LiveBlocks() - before;
  }
  return more;
}

// The sanitizer's own opinion: the counted blocks do not tell what is still reachable.
void ExpectNoLeak() {
#ifdef __SANITIZE_ADDRESS__
  EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
#endif
}

bool CancellationIsEnabled() {
  int state = PTHREAD_CANCEL_DISABLE;
  pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &state);
  return state == PTHREAD_CANCEL_ENABLE;
}

}  // namespace

Trial::Trial(long failing_call, int error_choice) : plan_{} {
  plan_.failing_call = failing_call;
  plan_.error_choice = error_choice;
}

bool Trial::FailedInAllocation() const {
  return FailedIn("malloc") || FailedIn("calloc") || FailedIn("operator new") ||
         FailedIn("operator new (nothrow)");
}

void Trial::Leaves(const Remains& remains, const std::string& why) {
  EXPECT_NE(why, "");
  left_ = remains;
}

Trial::Armed::Armed(Trial* trial) : trial_(trial) {
  trial_->was_armed_ = true;
  ClearErrorSlot();
  ArmCalls(&trial_->plan_);
}

Trial::Armed::~Armed() {
  DisarmCalls();
  trial_->error_slot_ = nErrno;
  if (trial_->Failed()) trial_->function_ = WithoutSizeSuffix(trial_->plan_.function);
}

Use::Use(std::string name, std::vector<std::string> covered, Body body)
    : name_(std::move(name)), covered_(std::move(covered)), body_(body) {
  Uses().push_back(this);
}

const std::vector<const Use*>& AllUses() {
  return Uses();
}

Trial Use::RunOnce(long failing_call, int error_choice) const {
  // What the process sets up once and keeps is lost in the first of two equal runs only.
  for (bool again = false;; again = true) {
    const int descriptors = OpenDescriptorCount();
    const long blocks = LiveBlocks();
    Trial trial(failing_call, error_choice);
    body_(trial);
    EXPECT_TRUE(trial.was_armed()) << "the use has no armed call";
    const long expected = trial.left().blocks;
    const long more = BlocksMoreThan(blocks, expected);
    if (more != expected && !again) continue;
    EXPECT_EQ(more, expected) << "blocks of memory";
    EXPECT_EQ(OpenDescriptorCount() - descriptors, trial.left().descriptors) << "descriptors";
    EXPECT_EQ(trial.locks_held(), trial.left().locks) << "locks";
    EXPECT_TRUE(CancellationIsEnabled());
    return trial;
  }
}

void Use::Sweep() const {
  SweepCalls();
  ExpectNoLeak();
}

void Use::SweepCalls() const {
  ++figures.uses;
  {
    SCOPED_TRACE("without a failure, for the first time");
    RunOnce(0, 0);
  }
  for (long call = 1; call < kMostCalls; ++call) {
    int choices = 1;
    for (int choice = 0; choice < choices; ++choice) {
      SCOPED_TRACE(testing::Message() << "call " << call << " fails with error " << choice);
      const Trial trial = RunOnce(call, choice);
      if (!trial.Failed()) return;
      choices = trial.error_choices();
      ++figures.failures;
      SCOPED_TRACE(testing::Message() << "which was " << trial.function() << ", error "
                                      << trial.error() << "; then without a failure");
      RunOnce(0, 0);
      if (testing::Test::HasFailure()) {
        ADD_FAILURE() << name_ << ": the failing call was " << trial.function() << ", error "
                      << trial.error();
        return;
      }
    }
  }
  ADD_FAILURE() << name_ << " does not come to an end";
}

void Use::ExpectNoCalls() const {
  ++figures.uses_without_calls;
  EXPECT_EQ(RunOnce(0, 0).calls(), 0) << name_;
}

}  // namespace zebcomn_test
