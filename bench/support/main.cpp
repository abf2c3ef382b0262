// The main() of every benchmark program. An agent has many threads, so the C library's short cuts
// for a process that has only one must not be measured: a second thread sleeps from start to end.
#include <benchmark/benchmark.h>
#include <pthread.h>

namespace {

void* SleepForEver(void* /*argument*/) {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t cond = PTHREAD_COND_INITIALIZER;
  pthread_mutex_lock(&mutex);
  for (;;) pthread_cond_wait(&cond, &mutex);
}

}  // namespace

int main(int argc, char** argv) {
  pthread_t other;
  if (pthread_create(&other, nullptr, SleepForEver, nullptr) != 0) return 1;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
