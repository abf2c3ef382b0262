#ifndef BENCH_SUPPORT_LOCK_OPERATIONS_H_
#define BENCH_SUPPORT_LOCK_OPERATIONS_H_

/// \file
/// The operations on shared/exclusive locks and lists that lists_bench measures, as templates over
/// adapters; see operations.h.

#include "bench/support/operations.h"
#include "bench/support/own_processor.h"

namespace bench {

/// `Lock` has Exclusive() and EndExclusive(); all threads use the same object, which is never
/// destroyed.
template <typename Lock>
void ExclusivePair(benchmark::State& state) {
  static auto* lock = new Lock;
  const OwnProcessor pinned(state.thread_index());
  const typename Lock::ForThread thread;
  for (auto _ : state) {
    lock->Exclusive();
    lock->EndExclusive();
  }
}

/// `Lock` has Shared() and EndShared().
template <typename Lock>
void SharedPair(benchmark::State& state) {
  static auto* lock = new Lock;
  const OwnProcessor pinned(state.thread_index());
  const typename Lock::ForThread thread;
  for (auto _ : state) {
    lock->Shared();
    lock->EndShared();
  }
}

/// For adapters whose threads need nothing of their own.
struct NoPreparation {
  // Not trivial, so that a const object of it can be made.
  NoPreparation() {}
};

inline void RegisterPair(const std::string& operation, const std::string& subject, Body body) {
  Register(operation, subject, body)->Threads(1);
  Register(operation, subject, body)->Threads(2)->Threads(4)->UseRealTime();
}

/// The two pairs, for 1, 2 and 4 threads.
template <typename Lock>
bool RegisterLock(const std::string& subject) {
  RegisterPair("lock_exclusive_pair", subject, ExclusivePair<Lock>);
  RegisterPair("lock_shared_pair", subject, SharedPair<Lock>);
  return true;
}

/// `List` has Push() of an element of its own, and Pop().
template <typename List>
void PushPop(benchmark::State& state) {
  List list;
  for (auto _ : state) {
    list.Push();
    benchmark::DoNotOptimize(list.Pop());
  }
}

}  // namespace bench

#endif  // BENCH_SUPPORT_LOCK_OPERATIONS_H_
