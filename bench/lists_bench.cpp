// What a lock and its release cost: the shared/exclusive lock beside pthread_rwlock_t and
// std::shared_mutex, and beside a floor, the four interlocked exchanges that such a pair is made
// of.
//
// A pair that nobody contends for must stay within 1.3 times the floor; the program prints each
// ratio and ends with 1 when one is higher. It measures in a process that has one thread, where the
// C library's mutexes take a short cut, and then in one that has had several, as an agent has.
#include <benchmark/benchmark.h>
#include <pthread.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <shared_mutex>
#include <string>
#include <thread>
#include <vector>

#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/thread_attach.h"
#include "zebcomn/portable/interlocked.h"

namespace {

constexpr double kHighestRatio = 1.3;

/// How often a case is run, and which of its times counts.
struct Plan {
  double seconds;
  int runs;    ///< In a row.
  int rounds;  ///< Case after case.
  bool best;   ///< The best time, else the median.
};

// Many short runs find a time when nothing else on the machine disturbs.
constexpr Plan kAlone = {0.002, 3, 10, true};
// Threads meet only in a long run, and the best one would be that in which they met least.
constexpr Plan kContended = {0.1, 1, 5, false};

/// Attaches the thread, unless it is attached.
class Attached {
 public:
  Attached() : is_new_(tiSO_ThreadAttach() == 1) {}
  ~Attached() {
    if (is_new_) tiSO_ThreadDetach();
  }
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;

 private:
  const bool is_new_;
};

LONG g_word = 0;

tiSO_SELock_t* NewLock() {
  tiSO_SELock_t* lock = nullptr;
  tiSO_SELockCreate(&lock);
  return lock;
}

tiSO_SELock_t* const g_lock = NewLock();
pthread_rwlock_t g_rwlock = PTHREAD_RWLOCK_INITIALIZER;
std::shared_mutex g_shared_mutex;

void Floor(benchmark::State& state) {
  for (auto _ : state) {
    for (int hold = 0; hold < 2; ++hold) {
      tivInterlockedExchange(&g_word, 1);
      tivInterlockedExchange(&g_word, 0);
    }
  }
}

template <BOOL (*kRequest)(tiSO_SELock_t*, BOOL)>
void SeLock(benchmark::State& state) {
  const Attached attached;
  for (auto _ : state) {
    kRequest(g_lock, 1);
    tiSO_SELockRelease(g_lock);
  }
}

template <int (*kLock)(pthread_rwlock_t*)>
void RwLock(benchmark::State& state) {
  for (auto _ : state) {
    kLock(&g_rwlock);
    pthread_rwlock_unlock(&g_rwlock);
  }
}

void SharedMutexExclusive(benchmark::State& state) {
  for (auto _ : state) {
    g_shared_mutex.lock();
    g_shared_mutex.unlock();
  }
}

void SharedMutexShared(benchmark::State& state) {
  for (auto _ : state) {
    g_shared_mutex.lock_shared();
    g_shared_mutex.unlock_shared();
  }
}

struct Case {
  const char* name;
  void (*body)(benchmark::State&);
  bool is_judged;
};

const Case kCases[] = {
    {"floor: four exchanges", Floor, false},
    {"exclusive", SeLock<tiSO_SELockExclusive>, true},
    {"shared, waits for exclusive", SeLock<tiSO_SELockSharedWaitForExclusive>, true},
    {"shared, starves exclusive", SeLock<tiSO_SELockSharedStarveExclusive>, true},
    {"pthread_rwlock, exclusive", RwLock<pthread_rwlock_wrlock>, false},
    {"pthread_rwlock, shared", RwLock<pthread_rwlock_rdlock>, false},
    {"std::shared_mutex, exclusive", SharedMutexExclusive, false},
    {"std::shared_mutex, shared", SharedMutexShared, false},
};

/// Keeps the times of each case: the processor's for one thread, which never sleeps, so that other
/// programs' work does not count; the clock's for several.
class Times : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      times_[run.run_name.function_name].push_back(run.threads == 1 ? run.GetAdjustedCPUTime()
                                                                    : run.GetAdjustedRealTime());
    }
    ConsoleReporter::ReportRuns(runs);
  }
  /// 0 for a case that has been filtered out.
  double Of(const std::string& name, bool best) {
    std::vector<double>& times = times_[name];
    if (times.empty()) return 0;
    std::sort(times.begin(), times.end());
    return times[best ? 0 : times.size() / 2];
  }

 private:
  std::map<std::string, std::vector<double>> times_;
};

std::string NameOf(const std::string& setting, const Case& one) {
  return setting + "/" + one.name;
}

/// Runs every case and prints how it stands to the floor. \return whether the judged ones pass.
bool Measure(const std::string& setting, int threads, const Plan& plan) {
  benchmark::ClearRegisteredBenchmarks();
  for (const Case& one : kCases) {
    benchmark::RegisterBenchmark(NameOf(setting, one).c_str(), one.body)
        ->Threads(threads)
        ->UseRealTime()
        ->MinTime(plan.seconds)
        ->Repetitions(plan.runs);
  }
  Times times;
  for (int round = 0; round < plan.rounds; ++round) benchmark::RunSpecifiedBenchmarks(&times);
  const double floor = times.Of(NameOf(setting, kCases[0]), plan.best);
  bool passes = true;
  std::printf("\n%s: %s time of a pair, and its ratio to the floor\n", setting.c_str(),
              plan.best ? "best" : "median");
  for (const Case& one : kCases) {
    const double time = times.Of(NameOf(setting, one), plan.best);
    if (time == 0 || floor == 0) continue;
    const bool is_high = threads == 1 && one.is_judged && time > kHighestRatio * floor;
    std::printf("  %-30s %9.1f ns  %6.2f%s\n", one.name, time, time / floor,
                is_high ? "  TOO HIGH" : "");
    passes = passes && !is_high;
  }
  std::printf("\n");
  return passes;
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  tiSO_ProcessAttach();
  bool passes = false;
  {
    const Attached attached;
    passes = Measure("one thread", 1, kAlone);
    std::thread([] {}).join();
    passes = Measure("one thread of several", 1, kAlone) && passes;
    Measure("2 threads contend", 2, kContended);
    Measure("4 threads contend", 4, kContended);
  }
  tiSO_ProcessDetach();
  tiSO_Release(g_lock);
  return passes ? 0 : 1;
}
