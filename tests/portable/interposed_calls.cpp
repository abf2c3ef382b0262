#include "tests/portable/interposed_calls.h"

#include <pthread.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "tests/portable/interposed_step.h"

namespace zebcomn_test {
namespace {

constexpr size_t kCallCount = static_cast<size_t>(Call::kCount);

struct ThreadPlan {
  bool watched;
  bool failed;
  Call failing;
  int countdown;
  int error;
  int unfreed;
  std::array<int, kCallCount> counts;
  bool makes_up_keys;
  unsigned next_key;
};
thread_local ThreadPlan plan;

std::atomic<StepHook> step_hook{nullptr};
thread_local bool in_step_hook;
std::atomic<decltype(ThreadHooks::at_create)> at_thread_create{nullptr};
std::atomic<decltype(ThreadHooks::at_start)> at_thread_start{nullptr};
std::atomic<FreeHook> free_hook{nullptr};
std::atomic<bool> clock_is_fixed{false};
timeval fixed_now;

// Counts a call of a watched thread: the error with which it must fail, or 0.
int ErrorFor(Call call) {
  if (!plan.watched) return 0;
  ++plan.counts[static_cast<size_t>(call)];
  if (plan.failing != call || plan.countdown <= 0 || --plan.countdown != 0) return 0;
  plan.failed = true;
  return plan.error;
}

#ifdef ZEBCOMN_SANITIZED
// A sanitizer makes these calls on a thread that it is not ready for yet, so no hook may run.
bool HasStep(Call call) {
  return call != Call::kSetspecific && call != Call::kGetspecific && call != Call::kAttrInit &&
         call != Call::kAttrDestroy && call != Call::kAttrSetdetachstate;
}
#else
bool HasStep(Call /*call*/) {
  return true;
}
#endif

// Passes a call that returns its error on, unless it is the one to fail.
template <typename... Arguments>
int Pass(Call call, const void* object, Real* real, Arguments... arguments) {
  const Step step(call, object);
  if (const int error = ErrorFor(call)) return error;
  return real->Call<int>(arguments...);
}

// The same for a call that returns -1 and sets errno.
template <typename... Arguments>
int PassErrno(Call call, Real* real, Arguments... arguments) {
  const Step step(call, nullptr);
  if (const int error = ErrorFor(call)) {
    errno = error;
    return -1;
  }
  return real->Call<int>(arguments...);
}

// What a new thread runs while there are hooks for threads.
struct ThreadStart {
  void* (*routine)(void*);
  void* argument;
  void (*at_start)(uint32_t);
  uint32_t mark;
};

void* RunMarkedThread(void* argument) {
  const ThreadStart start = *static_cast<ThreadStart*>(argument);
  std::free(argument);
  start.at_start(start.mark);
  return start.routine(start.argument);
}

}  // namespace

void Step::Run(bool before) const {
  const StepHook hook = step_hook.load(std::memory_order_relaxed);
  if (hook == nullptr || in_step_hook || !HasStep(call_)) return;
  in_step_hook = true;
  hook(call_, before, object_);
  in_step_hook = false;
}

#ifdef ZEBCOMN_SANITIZED
const bool kAllocationIsInterposed = false;
#else
const bool kAllocationIsInterposed = true;
#endif

CallWatch::CallWatch() : CallWatch(Call::kCount, 0, 0) {}

CallWatch::CallWatch(Call call, int nth, int error) {
  plan.counts.fill(0);
  plan.failing = call;
  plan.countdown = nth;
  plan.error = error;
  plan.failed = false;
  plan.unfreed = 0;
  plan.watched = true;
}

CallWatch::~CallWatch() {
  plan.watched = false;
}

int CallWatch::Count(Call call) const {
  return plan.counts[static_cast<size_t>(call)];
}

bool CallWatch::Failed() const {
  return plan.failed;
}

int CallWatch::UnfreedBlocks() const {
  return plan.unfreed;
}

FixedClock::FixedClock(const timeval& now) {
  fixed_now = now;
  clock_is_fixed = true;
}

FixedClock::~FixedClock() {
  clock_is_fixed = false;
}

void SetStepHook(StepHook hook) {
  step_hook = hook;
}

void SetThreadHooks(ThreadHooks hooks) {
  at_thread_start = hooks.at_start;
  at_thread_create = hooks.at_create;
}

void SetFreeHook(FreeHook hook) {
  free_hook = hook;
}

MadeUpKeys::MadeUpKeys(unsigned first) {
  plan.next_key = first;
  plan.makes_up_keys = true;
}

MadeUpKeys::~MadeUpKeys() {
  plan.makes_up_keys = false;
}

}  // namespace zebcomn_test

extern "C" {
// The thread sanitizer's, where there is one.
void __tsan_func_entry(void* caller) __attribute__((weak));
void __tsan_func_exit() __attribute__((weak));
}

namespace zebcomn_test {
namespace {

// By the time that the program's own statics are made, the sanitizer is ready.
std::atomic<bool> sanitizer_is_ready{false};
const bool made_ready = (sanitizer_is_ready = true);

// Shows the thread sanitizer the function that an interposed call was made from.
class CallerFrame {
 public:
  explicit CallerFrame(void* caller)
      : shown_(__tsan_func_entry != nullptr && sanitizer_is_ready.load()) {
    if (shown_) __tsan_func_entry(caller);
  }
  ~CallerFrame() {
    if (shown_) __tsan_func_exit();
  }
  CallerFrame(const CallerFrame&) = delete;
  CallerFrame& operator=(const CallerFrame&) = delete;

 private:
  const bool shown_;
};

}  // namespace
}  // namespace zebcomn_test

using zebcomn_test::Call;
using zebcomn_test::CallerFrame;
using zebcomn_test::ErrorFor;
using zebcomn_test::Pass;
using zebcomn_test::PassErrno;
using zebcomn_test::Real;
using zebcomn_test::Step;
using zebcomn_test::ThreadStart;

#pragma GCC visibility push(default)
extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) noexcept {
  static Real real("pthread_mutex_init");
  return Pass(Call::kMutexInit, mutex, &real, mutex, attributes);
}

int pthread_mutex_destroy(pthread_mutex_t* mutex) noexcept {
  static Real real("pthread_mutex_destroy");
  return Pass(Call::kMutexDestroy, mutex, &real, mutex);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  static Real real("pthread_mutex_lock");
  // This file is not instrumented: without a word the sanitizer would not see who locks, and could
  // not tell one lock order that is kept from all others.
  const CallerFrame caller(__builtin_return_address(0));
  return Pass(Call::kMutexLock, mutex, &real, mutex);
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
  static Real real("pthread_mutex_unlock");
  return Pass(Call::kMutexUnlock, mutex, &real, mutex);
}

int pthread_cond_init(pthread_cond_t* cond, const pthread_condattr_t* attributes) noexcept {
  static Real real("pthread_cond_init");
  return Pass(Call::kCondInit, cond, &real, cond, attributes);
}

int pthread_cond_destroy(pthread_cond_t* cond) noexcept {
  static Real real("pthread_cond_destroy");
  return Pass(Call::kCondDestroy, cond, &real, cond);
}

int pthread_cond_broadcast(pthread_cond_t* cond) noexcept {
  static Real real("pthread_cond_broadcast");
  return Pass(Call::kCondBroadcast, cond, &real, cond);
}

int pthread_cond_wait(pthread_cond_t* cond, pthread_mutex_t* mutex) {
  static Real real("pthread_cond_wait");
  return Pass(Call::kCondWait, cond, &real, cond, mutex);
}

int pthread_cond_timedwait(pthread_cond_t* cond, pthread_mutex_t* mutex, const timespec* deadline) {
  static Real real("pthread_cond_timedwait");
  return Pass(Call::kCondTimedwait, cond, &real, cond, mutex, deadline);
}

int pthread_attr_init(pthread_attr_t* attributes) noexcept {
  static Real real("pthread_attr_init");
  return Pass(Call::kAttrInit, nullptr, &real, attributes);
}

int pthread_attr_setdetachstate(pthread_attr_t* attributes, int state) noexcept {
  static Real real("pthread_attr_setdetachstate");
  return Pass(Call::kAttrSetdetachstate, nullptr, &real, attributes, state);
}

int pthread_attr_destroy(pthread_attr_t* attributes) noexcept {
  static Real real("pthread_attr_destroy");
  return Pass(Call::kAttrDestroy, nullptr, &real, attributes);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                   void* argument) noexcept {
  static Real real("pthread_create");
  const auto at_create = zebcomn_test::at_thread_create.load();
  if (at_create == nullptr) {
    return Pass(Call::kThreadCreate, nullptr, &real, thread, attributes, routine, argument);
  }
  void* const block = std::malloc(sizeof(ThreadStart));
  if (block == nullptr) return EAGAIN;
  auto* const start =
      new (block) ThreadStart{routine, argument, zebcomn_test::at_thread_start, at_create()};
  const int error = Pass(Call::kThreadCreate, nullptr, &real, thread, attributes,
                         &zebcomn_test::RunMarkedThread, static_cast<void*>(start));
  if (error != 0) std::free(block);
  return error;
}

int pthread_setspecific(pthread_key_t key, const void* value) noexcept {
  static Real real("pthread_setspecific");
  return Pass(Call::kSetspecific, nullptr, &real, key, value);
}

int close(int descriptor) {
  static Real real("close");
  return PassErrno(Call::kClose, &real, descriptor);
}

int remove(const char* path) noexcept {
  static Real real("remove");
  return PassErrno(Call::kRemove, &real, path);
}

void* pthread_getspecific(pthread_key_t key) noexcept {
  static Real real("pthread_getspecific");
  const Step step(Call::kGetspecific, nullptr);
  ErrorFor(Call::kGetspecific);
  return real.Call<void*>(key);
}

int pthread_key_create(pthread_key_t* key, void (*destructor)(void*)) noexcept {
  static Real real("pthread_key_create");
  const Step step(Call::kKeyCreate, nullptr);
  if (const int error = ErrorFor(Call::kKeyCreate)) return error;
  if (!zebcomn_test::plan.makes_up_keys) return real.Call<int>(key, destructor);
  *key = zebcomn_test::plan.next_key++;
  return 0;
}

int pthread_key_delete(pthread_key_t key) noexcept {
  static Real real("pthread_key_delete");
  const Step step(Call::kKeyDelete, nullptr);
  if (const int error = ErrorFor(Call::kKeyDelete)) return error;
  return zebcomn_test::plan.makes_up_keys ? 0 : real.Call<int>(key);
}

int gettimeofday(timeval* now, void* zone) noexcept {
  static Real real("gettimeofday");
  const Step step(Call::kGettimeofday, nullptr);
  if (const int error = ErrorFor(Call::kGettimeofday)) {
    errno = error;
    return -1;
  }
  if (!zebcomn_test::clock_is_fixed) return real.Call<int>(now, zone);
  *now = zebcomn_test::fixed_now;
  return 0;
}

#ifndef ZEBCOMN_SANITIZED
void* __libc_malloc(size_t size);
void __libc_free(void* block);

void* malloc(size_t size) noexcept {
  const Step step(Call::kMalloc, nullptr);
  if (const int error = ErrorFor(Call::kMalloc)) {
    errno = error;
    return nullptr;
  }
  void* block = __libc_malloc(size);
  if (zebcomn_test::plan.watched && block != nullptr) ++zebcomn_test::plan.unfreed;
  return block;
}

void free(void* block) noexcept {
  if (block == nullptr) return;
  const Step step(Call::kFree, block);
  if (zebcomn_test::plan.watched) --zebcomn_test::plan.unfreed;
  const zebcomn_test::FreeHook hook = zebcomn_test::free_hook.load(std::memory_order_relaxed);
  if (hook != nullptr) return hook(block);
  __libc_free(block);
}
#endif

}  // extern "C"
#pragma GCC visibility pop
