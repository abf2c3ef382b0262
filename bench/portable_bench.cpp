// The calls of the portability layer beside the bare pthread calls that they cannot do without. The
// last lines of the output are the ratios; a ratio above its limit makes the program fail.
#include <benchmark/benchmark.h>
#include <pthread.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "zebcomn/zebcomn.h"

namespace {

// What a pair of benchmarks has to stay under: the layer's time over the bare calls' time.
struct Pair {
  const char* name;
  double limit;
};

constexpr double kLimit = 1.15;
constexpr double kThreadLimit = 1.3;
constexpr Pair kPairs[] = {
    {"EventSetReset", kLimit},    {"WaitSignalled", kLimit}, {"WaitZeroTimeout", kLimit},
    {"ThreadLife", kThreadLimit}, {"TlsGet", kLimit},        {"InterlockedIncrement", kLimit},
};

// The objects that the bare calls work on, as a record has them.
struct Bare {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t cond = PTHREAD_COND_INITIALIZER;
  int32_t flag = 0;
};
Bare g_bare;
LONG g_counter = 0;

void EventSetReset_Bare(benchmark::State& state) {
  Bare* bare = &g_bare;
  for (auto _ : state) {
    benchmark::DoNotOptimize(bare);
    pthread_mutex_lock(&bare->mutex);
    bare->flag = 1;
    pthread_cond_broadcast(&bare->cond);
    pthread_mutex_unlock(&bare->mutex);
    pthread_mutex_lock(&bare->mutex);
    bare->flag = 0;
    pthread_mutex_unlock(&bare->mutex);
  }
}

void EventSetReset_Layer(benchmark::State& state) {
  HANDLE event = tivCreateEvent(nullptr, 1, 0, nullptr);
  for (auto _ : state) {
    tivSetEvent(event);
    tivResetEvent(event);
  }
  tivCloseHandle(event);
}

// What a wait needs when the state decides: a look at the flag under the lock.
void LookUnderLock(benchmark::State& state) {
  Bare* bare = &g_bare;
  for (auto _ : state) {
    benchmark::DoNotOptimize(bare);
    pthread_mutex_lock(&bare->mutex);
    benchmark::DoNotOptimize(bare->flag);
    pthread_mutex_unlock(&bare->mutex);
  }
}

void WaitOn(benchmark::State& state, BOOL signalled, DWORD milliseconds) {
  HANDLE event = tivCreateEvent(nullptr, 1, signalled, nullptr);
  for (auto _ : state) benchmark::DoNotOptimize(tivWaitForSingleObject(event, milliseconds));
  tivCloseHandle(event);
}

void WaitSignalled_Bare(benchmark::State& state) {
  LookUnderLock(state);
}

void WaitSignalled_Layer(benchmark::State& state) {
  WaitOn(state, 1, TIV_WAIT_INFINITE);
}

void WaitZeroTimeout_Bare(benchmark::State& state) {
  LookUnderLock(state);
}

void WaitZeroTimeout_Layer(benchmark::State& state) {
  WaitOn(state, 0, 0);
}

// Its end is told as a handle's is: a flag under a lock, and a broadcast.
void* TellEnd(void* argument) {
  auto* bare = static_cast<Bare*>(argument);
  pthread_mutex_lock(&bare->mutex);
  bare->flag = 1;
  pthread_cond_broadcast(&bare->cond);
  pthread_mutex_unlock(&bare->mutex);
  return nullptr;
}

void ThreadLife_Bare(benchmark::State& state) {
  for (auto _ : state) {
    Bare bare;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread;
    pthread_create(&thread, &attributes, TellEnd, &bare);
    pthread_attr_destroy(&attributes);
    pthread_mutex_lock(&bare.mutex);
    while (bare.flag == 0) pthread_cond_wait(&bare.cond, &bare.mutex);
    pthread_mutex_unlock(&bare.mutex);
  }
}

DWORD DoNothing(void* /*parameter*/) {
  return 0;
}

void ThreadLife_Layer(benchmark::State& state) {
  for (auto _ : state) {
    HANDLE thread = tivCreateThread(nullptr, 0, DoNothing, nullptr, 0, nullptr);
    tivWaitForSingleObject(thread, TIV_WAIT_INFINITE);
    tivCloseHandle(thread);
  }
}

void TlsGet_Bare(benchmark::State& state) {
  pthread_key_t key;
  pthread_key_create(&key, nullptr);
  pthread_setspecific(key, &g_bare);
  for (auto _ : state) benchmark::DoNotOptimize(pthread_getspecific(key));
  pthread_key_delete(key);
}

void TlsGet_Layer(benchmark::State& state) {
  const DWORD slot = tivTlsAlloc();
  tivTlsSetValue(slot, &g_bare);
  for (auto _ : state) benchmark::DoNotOptimize(tivTlsGetValue(slot));
  tivTlsFree(slot);
}

void InterlockedIncrement_Bare(benchmark::State& state) {
  Bare* bare = &g_bare;
  for (auto _ : state) {
    benchmark::DoNotOptimize(bare);
    pthread_mutex_lock(&bare->mutex);
    ++bare->flag;
    pthread_mutex_unlock(&bare->mutex);
    benchmark::DoNotOptimize(bare->flag);
  }
}

void InterlockedIncrement_Layer(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(tivInterlockedIncrement(&g_counter));
}

// Of many short runs some have the processor for themselves, and the best one counts.
void ManyShortRuns(benchmark::internal::Benchmark* one) {
  one->MinTime(0.01)->Repetitions(40);
}

// Two threads are quick when they happen to share a processor, and slow when they do not: only long
// runs hold the same mixture of both.
void FewLongRuns(benchmark::internal::Benchmark* one) {
  one->MinTime(0.2)->Repetitions(5)->UseRealTime();
}

BENCHMARK(EventSetReset_Bare)->Apply(ManyShortRuns);
BENCHMARK(EventSetReset_Layer)->Apply(ManyShortRuns);
BENCHMARK(WaitSignalled_Bare)->Apply(ManyShortRuns);
BENCHMARK(WaitSignalled_Layer)->Apply(ManyShortRuns);
BENCHMARK(WaitZeroTimeout_Bare)->Apply(ManyShortRuns);
BENCHMARK(WaitZeroTimeout_Layer)->Apply(ManyShortRuns);
BENCHMARK(ThreadLife_Bare)->Apply(FewLongRuns);
BENCHMARK(ThreadLife_Layer)->Apply(FewLongRuns);
BENCHMARK(TlsGet_Bare)->Apply(ManyShortRuns);
BENCHMARK(TlsGet_Layer)->Apply(ManyShortRuns);
BENCHMARK(InterlockedIncrement_Bare)->Apply(ManyShortRuns);
BENCHMARK(InterlockedIncrement_Layer)->Apply(ManyShortRuns);

// Keeps the best time of each benchmark over the repetitions: the others hold what the machine did
// besides.
class BestTimes : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    std::vector<Run> aggregates;
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Aggregate) aggregates.push_back(run);
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const double time = run.GetAdjustedRealTime();
      const auto entry = best_.emplace(run.run_name.function_name, time).first;
      entry->second = std::min(entry->second, time);
    }
    ConsoleReporter::ReportRuns(aggregates);
  }

  // Prints each pair's ratio; whether all of them are within their limits.
  bool PrintRatios() const {
    bool within = true;
    for (const Pair& pair : kPairs) {
      const auto bare = best_.find(std::string(pair.name) + "_Bare");
      const auto layer = best_.find(std::string(pair.name) + "_Layer");
      if (bare == best_.end() || layer == best_.end()) continue;
      const double ratio = layer->second / bare->second;
      std::printf("%-22s %10.1f ns / %10.1f ns = %5.2f (limit %.2f)\n", pair.name, layer->second,
                  bare->second, ratio, pair.limit);
      within = within && ratio <= pair.limit;
    }
    return within;
  }

 private:
  std::map<std::string, double> best_;
};

void* SleepForEver(void* /*argument*/) {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t cond = PTHREAD_COND_INITIALIZER;
  pthread_mutex_lock(&mutex);
  for (;;) pthread_cond_wait(&cond, &mutex);
}

}  // namespace

int main(int argc, char** argv) {
  // An agent has many threads; the C library's short cuts for a single one must not be measured.
  pthread_t other;
  if (pthread_create(&other, nullptr, SleepForEver, nullptr) != 0) return 1;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  BestTimes reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return reporter.PrintRatios() ? 0 : 1;
}
