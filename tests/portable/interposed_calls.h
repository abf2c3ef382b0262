#ifndef ZEBCOMN_TESTS_PORTABLE_INTERPOSED_CALLS_H_
#define ZEBCOMN_TESTS_PORTABLE_INTERPOSED_CALLS_H_

/// \file
/// Stands between the library and the C library's thread, clock and file calls: a chosen call fails
/// without having done anything, and a hook runs before and after each call. A test that includes
/// this header names tests/portable/interposed_calls.cpp among its sources and is marked
/// INTERPOSES.

#include <sys/time.h>

#include <cstdint>

namespace zebcomn_test {

enum class Call {
  kMutexInit,
  kMutexDestroy,
  kMutexLock,
  kMutexUnlock,
  kCondInit,
  kCondDestroy,
  kCondBroadcast,
  kCondWait,
  kCondTimedwait,
  kAttrInit,
  kAttrSetdetachstate,
  kAttrDestroy,
  kThreadCreate,
  kKeyCreate,
  kKeyDelete,
  kSetspecific,
  kGetspecific,
  kGettimeofday,
  kClose,
  kRemove,
  kMalloc,
  kFree,
  kOther,  ///< One of those in interposed_waits.cpp: it has a step and nothing else.
  kCount,
};

/// Whether malloc() and free() are among the interposed calls: not under a sanitizer that owns
/// them.
extern const bool kAllocationIsInterposed;

/// Counts the calling thread's calls for as long as it lives, and lets at most one of them fail.
class CallWatch {
 public:
  CallWatch();
  /// From here on the `nth` `call` (1 = the next) fails with `error`.
  CallWatch(Call call, int nth, int error);
  ~CallWatch();
  CallWatch(const CallWatch&) = delete;
  CallWatch& operator=(const CallWatch&) = delete;

  int Count(Call call) const;
  /// Whether the chosen call has failed.
  bool Failed() const;
  /// malloc() calls that gave a block, less free() calls of a block.
  int UnfreedBlocks() const;
};

/// What gettimeofday() gives to every thread while the object lives.
class FixedClock {
 public:
  explicit FixedClock(const timeval& now);
  ~FixedClock();
  FixedClock(const FixedClock&) = delete;
  FixedClock& operator=(const FixedClock&) = delete;
};

/// Called before and after each interposed call, on every thread, with the object that the call
/// works on (a mutex, a condition, a block; else null), but for those that the hook itself makes.
/// Under a sanitizer the thread attributes and the uses of a key have no step. Null for no hook.
using StepHook = void (*)(Call call, bool before, void* object);
void SetStepHook(StepHook hook);

/// What happens around the start of a thread: `at_create` runs on the creating thread, and what it
/// gives is handed to `at_start`, the first thing that the new thread runs. Nulls for nothing.
struct ThreadHooks {
  uint32_t (*at_create)();
  void (*at_start)(uint32_t mark);
};
void SetThreadHooks(ThreadHooks hooks);

/// What free() does on every thread while set, in place of giving the block back. Null for none.
using FreeHook = void (*)(void* block);
void SetFreeHook(FreeHook hook);

/// The next numbers that pthread_key_create() gives to the calling thread are `first` and up, and
/// nothing is asked of the C library for them; pthread_key_delete() forgets them.
class MadeUpKeys {
 public:
  explicit MadeUpKeys(unsigned first);
  ~MadeUpKeys();
  MadeUpKeys(const MadeUpKeys&) = delete;
  MadeUpKeys& operator=(const MadeUpKeys&) = delete;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_INTERPOSED_CALLS_H_
