#include "tests/reliability/schedule.h"

#include <sched.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "tests/portable/interposed_calls.h"
#include "tests/reliability/quarantine.h"
#include "tests/support/rounds.h"

// A step hook runs on threads that a sanitizer does not know yet, or no longer.
#define ZEBCOMN_UNSANITIZED __attribute__((no_sanitize("thread"), no_sanitize("address")))

namespace zebcomn_test {
namespace {

// A schedule that takes so long stands still.
constexpr unsigned kHangSeconds = 60;

// How often a thread sleeps in one schedule: a long scenario must not sleep the time away.
constexpr int kNaps = 12;

// What a thread does at its steps.
struct Course {
  bool takes_part;
  uint64_t random;
  uint64_t children;    // Another sequence, so that the steps do not decide the children's courses.
  unsigned yield_of_8;  // How many of 8 steps yield.
  unsigned nap_every;   // One step in so many sleeps.
  long longest_nap;     // In nanoseconds.
  int naps_left;
};
thread_local Course t_course;

std::atomic<unsigned> g_steps{0};
std::atomic<unsigned> g_seed{0};
std::array<char, 160> g_report{};

// What this run of the program has done; printed at its end.
struct Figures {
  int scenarios = 0;
  long schedules = 0;
};
Figures g_figures;

class Summary : public testing::Environment {
 public:
  void TearDown() override {
    std::printf("schedules: %ld over %d scenarios\n", g_figures.schedules, g_figures.scenarios);
  }
};
[[maybe_unused]] const auto* const g_summary = testing::AddGlobalTestEnvironment(new Summary);

// Numbers that are far apart for neighbouring seeds.
ZEBCOMN_UNSANITIZED uint64_t Next(uint64_t* state) {
  *state += 0x9E3779B97F4A7C15ULL;
  uint64_t number = *state;
  number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9ULL;
  number = (number ^ (number >> 27)) * 0x94D049BB133111EBULL;
  return number ^ (number >> 31);
}

// Gives the calling thread the course of a seed. Threads differ, so that one may sleep at each step
// while another runs through.
ZEBCOMN_UNSANITIZED void TakeCourse(uint64_t seed) {
  constexpr std::array<unsigned, 4> kNapEvery = {3, 8, 32, 128};
  constexpr std::array<long, 4> kLongestNap = {1'000, 10'000, 50'000, 200'000};
  Course course{true, seed, 0, 0, 0, 0, kNaps};
  course.yield_of_8 = static_cast<unsigned>(Next(&course.random) % 6);
  course.nap_every = kNapEvery[static_cast<size_t>(Next(&course.random) % kNapEvery.size())];
  course.longest_nap = kLongestNap[static_cast<size_t>(Next(&course.random) % kLongestNap.size())];
  course.children = Next(&course.random);
  t_course = course;
}

uint32_t DrawChildSeed() {
  return t_course.takes_part ? static_cast<uint32_t>(Next(&t_course.children) | 1) : 0;
}

ZEBCOMN_UNSANITIZED void StartAsChild(uint32_t seed) {
  if (seed != 0) TakeCourse(seed);
}

ZEBCOMN_UNSANITIZED void TakeStep(Call call, bool before, void* object) {
  if (!t_course.takes_part) return;
  if (before) WatchUse(call, object);
  g_steps.fetch_add(1, std::memory_order_relaxed);
  const uint64_t number = Next(&t_course.random);
  if (number % t_course.nap_every == 0 && t_course.naps_left > 0) {
    --t_course.naps_left;
    const timespec nap{0, static_cast<long>((number >> 16) % 4096) * t_course.longest_nap / 4096};
    clock_nanosleep(CLOCK_MONOTONIC, 0, &nap, nullptr);
  } else if ((number >> 8) % 8 < t_course.yield_of_8) {
    sched_yield();
  }
}

unsigned NumberFrom(const char* variable, unsigned otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr || *text == '\0' ? otherwise
                                          : static_cast<unsigned>(std::strtoul(text, nullptr, 10));
}

const char* Report() {
  std::snprintf(g_report.data(), g_report.size(),
                "\nthe schedule of seed %u failed; repeat it with ZEBCOMN_SCHEDULE_SEED=%u "
                "ZEBCOMN_SCHEDULES=1\n",
                g_seed.load(), g_seed.load());
  return g_report.data();
}

// The report of a schedule that ends the process, or that hangs, comes before the signal's default.
void ReportAndDie(int signo) {
  const char* report = g_report.data();
  size_t length = 0;
  while (report[length] != '\0') ++length;
  if (write(STDERR_FILENO, report, length) < 0) _exit(3);
  signal(signo, SIG_DFL);
  raise(signo);
}

constexpr int kDeadlySignals[] = {SIGABRT, SIGALRM, SIGSEGV, SIGBUS};

}  // namespace

#ifdef ZEBCOMN_SANITIZED
// Sanitizers end the process without a signal.
extern "C" void __sanitizer_set_death_callback(void (*callback)());

void WatchDeath() {
  __sanitizer_set_death_callback([] { std::fputs(g_report.data(), stderr); });
}
#else
void WatchDeath() {}
#endif

Schedules::Schedules(int short_count)
    : seed_(NumberFrom("ZEBCOMN_SCHEDULE_SEED", 1)),
      left_(static_cast<int>(
          NumberFrom("ZEBCOMN_SCHEDULES", static_cast<unsigned>(Rounds(short_count))))) {
  g_steps = 0;
  ++g_figures.scenarios;
  for (const int signo : kDeadlySignals) signal(signo, ReportAndDie);
  WatchDeath();
  WatchFreedMemory(true);
  SetThreadHooks({DrawChildSeed, StartAsChild});
  SetStepHook(TakeStep);
}

bool Schedules::Next() {
  if (begun_ && testing::Test::HasFailure()) {
    ReportFailure();
    left_ = 0;
  }
  if (left_ <= 0) return false;
  --left_;
  ++g_figures.schedules;
  begun_ = true;
  g_seed = seed_;
  Report();
  TakeCourse(seed_++);
  alarm(kHangSeconds);
  return true;
}

void Schedules::ReportFailure() const {
  std::fputs(Report(), stderr);
}

Schedules::~Schedules() {
  alarm(0);
  t_course.takes_part = false;
  SetStepHook(nullptr);
  SetThreadHooks({nullptr, nullptr});
  WatchFreedMemory(false);
  for (const int signo : kDeadlySignals) signal(signo, SIG_DFL);
  EXPECT_GT(g_steps.load(), 0U) << "the library's calls do not come by";
}

}  // namespace zebcomn_test
