#ifndef BENCH_SUPPORT_OWN_PROCESSOR_H_
#define BENCH_SUPPORT_OWN_PROCESSOR_H_

#include <pthread.h>
#include <sched.h>

#include <cstddef>

namespace bench {

/// Keeps the calling thread on one processor for as long as it lives: the threads of a benchmark,
/// told apart by their index, are shared out evenly among the processors that the process may use.
/// Without that the system now and then puts two threads that contend on one processor, where they
/// take turns by the time slice and hardly meet.
class OwnProcessor {
 public:
  explicit OwnProcessor(int index) {
    if (sched_getaffinity(0, sizeof before_, &before_) != 0) return;
    int left = index % CPU_COUNT(&before_);
    std::size_t processor = 0;
    while (!CPU_ISSET(processor, &before_) || left-- > 0) ++processor;
    cpu_set_t own;
    CPU_ZERO(&own);
    CPU_SET(processor, &own);
    is_pinned_ = pthread_setaffinity_np(pthread_self(), sizeof own, &own) == 0;
  }
  ~OwnProcessor() {
    if (is_pinned_) pthread_setaffinity_np(pthread_self(), sizeof before_, &before_);
  }
  OwnProcessor(const OwnProcessor&) = delete;
  OwnProcessor& operator=(const OwnProcessor&) = delete;

 private:
  cpu_set_t before_{};
  bool is_pinned_ = false;
};

}  // namespace bench

#endif  // BENCH_SUPPORT_OWN_PROCESSOR_H_
