#ifndef BENCH_SUPPORT_OPERATIONS_H_
#define BENCH_SUPPORT_OPERATIONS_H_

/// \file
/// The operations that the library and its peers are measured with. Each is a template over a small
/// adapter class, so that every subject is put through the same loop:
///
///   struct GlibCounter { void Increment() { g_atomic_int_inc(&value); } ... };
///   const bool done = Register("interlocked_increment", "glib", Increment<GlibCounter>);
///
/// An adapter makes its objects in its constructor and ends them in its destructor, outside the
/// measured loop.

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

using Body = void (*)(benchmark::State&);

/// Registers `body` as OPERATION/SUBJECT; the result lets the caller set options.
inline benchmark::internal::Benchmark* Register(const std::string& operation,
                                                const std::string& subject, Body body) {
  return benchmark::RegisterBenchmark((operation + "/" + subject).c_str(), body);
}

template <typename Event>
void SetReset(benchmark::State& state) {
  Event event;
  for (auto _ : state) {
    event.Set();
    event.Reset();
  }
}

template <typename Event>
void WaitSignalled(benchmark::State& state) {
  Event event;
  event.Set();
  for (auto _ : state) benchmark::DoNotOptimize(event.Wait());
}

template <typename Event>
void WaitZeroTimeout(benchmark::State& state) {
  Event event;
  for (auto _ : state) benchmark::DoNotOptimize(event.IsSet());
}

template <typename Event>
void CreateClose(benchmark::State& state) {
  for (auto _ : state) {
    Event event;
    benchmark::DoNotOptimize(event);
  }
}

/// Two threads that wake each other in turn; an iteration is one turn of each.
template <typename Event>
void PingPong(benchmark::State& state) {
  static Event* events = nullptr;
  if (state.thread_index() == 0) events = new Event[2];
  for (auto _ : state) {
    Event& own = events[state.thread_index()];
    Event& other = events[1 - state.thread_index()];
    if (state.thread_index() == 0) other.Set();
    own.Wait();
    own.Reset();
    if (state.thread_index() == 1) other.Set();
  }
  if (state.thread_index() == 0) delete[] events;
}

template <typename Mutex>
void LockUnlock(benchmark::State& state) {
  Mutex mutex;
  for (auto _ : state) {
    mutex.Lock();
    mutex.Unlock();
  }
}

/// `Thread::Live()` starts a thread that does nothing, waits for its end and lets it go.
template <typename Thread>
void ThreadLife(benchmark::State& state) {
  for (auto _ : state) Thread::Live();
}

template <typename Slot>
void SlotGet(benchmark::State& state) {
  Slot slot;
  slot.Set(&slot);
  for (auto _ : state) benchmark::DoNotOptimize(slot.Get());
}

template <typename Slot>
void SlotSet(benchmark::State& state) {
  Slot slot;
  for (auto _ : state) {
    slot.Set(&slot);
    benchmark::ClobberMemory();
  }
}

template <typename Counter>
void Increment(benchmark::State& state) {
  Counter counter;
  for (auto _ : state) benchmark::DoNotOptimize(counter.Increment());
}

template <typename Counter>
void Exchange(benchmark::State& state) {
  Counter counter;
  for (auto _ : state) benchmark::DoNotOptimize(counter.Exchange(1));
}

/// Measures a plain call.
template <auto kCall>
void Call(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(kCall());
}

/// The operations on an event, of an adapter that has Set(), Reset(), Wait() and IsSet().
template <typename Event>
bool RegisterEvent(const std::string& subject) {
  Register("event_set_reset", subject, SetReset<Event>);
  Register("wait_signalled", subject, WaitSignalled<Event>);
  Register("wait_zero_timeout", subject, WaitZeroTimeout<Event>);
  Register("event_create_close", subject, CreateClose<Event>);
  Register("ping_pong", subject, PingPong<Event>)->Threads(2)->UseRealTime();
  return true;
}

/// An event put together from a mutex and a condition, as a user of a library without events writes
/// it. `Parts` has Lock(), Unlock(), Broadcast() and WaitOnce().
template <typename Parts>
class HandMadeEvent {
 public:
  void Set() {
    parts_.Lock();
    is_set_ = true;
    parts_.Broadcast();
    parts_.Unlock();
  }
  void Reset() {
    parts_.Lock();
    is_set_ = false;
    parts_.Unlock();
  }
  bool Wait() {
    parts_.Lock();
    while (!is_set_) parts_.WaitOnce();
    parts_.Unlock();
    return true;
  }
  bool IsSet() {
    parts_.Lock();
    const bool is_set = is_set_;
    parts_.Unlock();
    return is_set;
  }

 private:
  Parts parts_;
  bool is_set_ = false;
};

}  // namespace bench

#endif  // BENCH_SUPPORT_OPERATIONS_H_
