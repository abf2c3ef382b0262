// Events, mutexes, threads, thread-local storage and interlocked counters.
#include <sched.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "tests/portable/owned_handle.h"
#include "tests/reliability/sweep.h"
#include "tests/support/expected_leak.h"
#include "zebcomn/portable/interlocked.h"
#include "zebcomn/portable/tls.h"

namespace {

using zebcomn_test::ExpectedLeak;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::Poll;
using zebcomn_test::RecordOf;
using zebcomn_test::Trial;
using zebcomn_test::WaitForEver;

// What a call that allocates leaves in `nErrno`.
void ExpectOnlyMemoryErrorSlot(const Trial& trial) {
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedInAllocation() ? ENOMEM : kErrorLeftAlone);
}

ZEBCOMN_USE(EventFailures, CreationNotSignalled, "tivCreateEvent") {
  HANDLE event = nullptr;
  trial.Call([&] { event = tivCreateEvent(nullptr, TRUE, FALSE, nullptr); });
  EXPECT_EQ(event == nullptr, trial.Failed());
  ExpectOnlyMemoryErrorSlot(trial);
  if (event != nullptr) {
    EXPECT_EQ(Poll(event), TIV_WAIT_TIMEOUT);
  }
  tivCloseHandle(event);
}

ZEBCOMN_USE(EventFailures, CreationSignalled, "tivCreateEvent") {
  HANDLE event = nullptr;
  trial.Call([&] { event = tivCreateEvent(nullptr, TRUE, TRUE, nullptr); });
  EXPECT_EQ(event == nullptr, trial.Failed());
  if (trial.FailedIn("pthread_mutex_lock") || trial.FailedIn("pthread_cond_broadcast") ||
      trial.FailedIn("pthread_mutex_unlock")) {
    EXPECT_EQ(trial.ErrorSlot(), EBUSY);
  } else {
    ExpectOnlyMemoryErrorSlot(trial);
  }
  if (event != nullptr) {
    EXPECT_EQ(Poll(event), TIV_WAIT_SIGNALLED);
  }
  tivCloseHandle(event);
}

ZEBCOMN_USE(EventFailures, Set, "tivSetEvent") {
  const OwnedHandle event(NewEvent());
  BOOL set = FALSE;
  trial.Call([&] { set = tivSetEvent(event.get()); });
  EXPECT_EQ(set, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(event.record()->bSignalled, trial.FailedIn("pthread_mutex_lock") ? 0 : 1);
  EXPECT_EQ(tivSetEvent(event.get()), TRUE);
}

ZEBCOMN_USE(EventFailures, Reset, "tivResetEvent") {
  const OwnedHandle event(NewEvent(TRUE));
  BOOL reset = FALSE;
  trial.Call([&] { reset = tivResetEvent(event.get()); });
  EXPECT_EQ(reset, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(event.record()->bSignalled, trial.FailedIn("pthread_mutex_lock") ? 1 : 0);
  EXPECT_EQ(tivResetEvent(event.get()), TRUE);
}

ZEBCOMN_USE(MutexFailures, Creation, "tivCreateMutex") {
  const ExpectedLeak ownership_lock;
  HANDLE mutex = nullptr;
  trial.Call([&] { mutex = tivCreateMutex(nullptr, FALSE, nullptr); });
  EXPECT_EQ(mutex == nullptr, trial.Failed());
  ExpectOnlyMemoryErrorSlot(trial);
  if (trial.FailedIn("pthread_cond_init") || trial.FailedIn("pthread_mutex_init", 1)) {
    trial.Leaves({1, 0, 0}, "the ownership lock's memory, when the record's locks cannot be made");
  }
  tivCloseHandle(mutex);
}

ZEBCOMN_USE(MutexFailures, CreationOwned, "tivCreateMutex") {
  const ExpectedLeak ownership_lock;
  HANDLE mutex = nullptr;
  trial.Call([&] { mutex = tivCreateMutex(nullptr, TRUE, nullptr); });
  EXPECT_EQ(mutex == nullptr, trial.Failed());
  ExpectOnlyMemoryErrorSlot(trial);
  if (trial.FailedIn("pthread_cond_init") || trial.FailedIn("pthread_mutex_init", 1)) {
    trial.Leaves({1, 0, 0}, "the ownership lock's memory, when the record's locks cannot be made");
  }
  if (mutex == nullptr) return;
  trial.Leaves({0, 0, 1}, "the mutex is owned");
  EXPECT_EQ(tivReleaseMutex(mutex), TRUE);
  tivCloseHandle(mutex);
}

ZEBCOMN_USE(MutexFailures, Release, "tivReleaseMutex") {
  const OwnedHandle mutex(tivCreateMutex(nullptr, TRUE, nullptr));
  BOOL released = FALSE;
  trial.Call([&] { released = tivReleaseMutex(mutex.get()); });
  EXPECT_EQ(released, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  const bool kept = trial.FailedIn("pthread_mutex_lock");
  trial.Leaves({0, 0, kept ? 0 : -1}, "the release of the set-up's ownership");
  const bool signalled = !kept && !trial.FailedIn("pthread_mutex_unlock", 1);
  EXPECT_EQ(mutex.record()->bSignalled, signalled ? 1 : 0);
  if (kept) {
    EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
  }
}

ZEBCOMN_USE(CloseFailures, Event, "tivCloseHandle") {
  HANDLE event = NewEvent();
  BOOL closed = FALSE;
  trial.Call([&] { closed = tivCloseHandle(event); });
  EXPECT_EQ(closed, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  if (trial.FailedIn("pthread_mutex_lock")) {
    EXPECT_EQ(tivCloseHandle(event), TRUE);
  } else if (trial.FailedIn("pthread_mutex_unlock")) {
    EXPECT_EQ(tivCloseHandle(event), TRUE) << "which frees nothing any more";
    std::free(event);
  }
}

ZEBCOMN_USE(CloseFailures, Mutex, "tivCloseHandle") {
  HANDLE mutex = tivCreateMutex(nullptr, FALSE, nullptr);
  BOOL closed = FALSE;
  trial.Call([&] { closed = tivCloseHandle(mutex); });
  EXPECT_EQ(closed, trial.Failed() ? FALSE : TRUE);
  if (trial.FailedIn("pthread_mutex_lock")) {
    EXPECT_EQ(tivCloseHandle(mutex), TRUE);
  } else if (trial.FailedIn("pthread_mutex_unlock")) {
    std::free(RecordOf(mutex)->pObject);
    std::free(mutex);
  }
}

DWORD DoNothing(void* /*parameter*/) {
  return 0;
}

// Waits until the thread has done with its record: until then the end would free it after a close.
void AwaitEnd(HANDLE thread) {
  EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
  while (__atomic_load_n(&RecordOf(thread)->ppThreadSignalled, __ATOMIC_ACQUIRE) != nullptr) {
    sched_yield();
  }
}

// Whether the close gave up at the handle's own lock.
bool IsCloseRefused(const Trial& trial) {
  return trial.FailedIn("pthread_mutex_lock", 1) || trial.FailedIn("pthread_mutex_unlock", 1);
}

ZEBCOMN_USE(CloseFailures, EndedThread, "tivCloseHandle") {
  HANDLE thread = NewThread(DoNothing, nullptr);
  AwaitEnd(thread);
  BOOL closed = FALSE;
  trial.Call([&] { closed = tivCloseHandle(thread); });
  const bool refused = IsCloseRefused(trial);
  EXPECT_EQ(closed, refused ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  if (trial.FailedIn("pthread_mutex_lock", 1)) {
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
  } else if (refused) {
    std::free(RecordOf(thread)->pObject);
    std::free(thread);
  }
}

// The close leaves the thread, which comes to its end without the handle.
ZEBCOMN_USE(CloseFailures, RunningThread, "tivCloseHandle") {
  const OwnedHandle gate(NewEvent());
  HANDLE thread = NewThread([](void* event) -> DWORD { return WaitForEver(event); }, gate.get());
  __atomic_store_n(&bDummyThreadSignalled, 0, __ATOMIC_RELAXED);
  BOOL closed = FALSE;
  trial.Call([&] { closed = tivCloseHandle(thread); });
  const bool refused = IsCloseRefused(trial);
  EXPECT_EQ(closed, refused ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tivSetEvent(gate.get()), TRUE);
  if (!refused) {
    while (__atomic_load_n(&bDummyThreadSignalled, __ATOMIC_ACQUIRE) == 0) sched_yield();
    return;
  }
  AwaitEnd(thread);
  EXPECT_EQ(bDummyThreadSignalled, 0) << "the handle is still there";
  if (trial.FailedIn("pthread_mutex_lock", 1)) {
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
  } else {
    std::free(RecordOf(thread)->pObject);
    std::free(thread);
  }
}

template <typename Start>
void StartAndClose(Trial& trial, HANDLE failure, const Start& start) {
  DWORD id = 1;
  HANDLE thread = nullptr;
  trial.Call([&] { thread = start(&id); });
  // The library's own lock is asked for again.
  const bool fails = trial.Failed() && !trial.FailedIn("pthread_mutex_lock") &&
                     !trial.FailedIn("pthread_mutex_unlock");
  EXPECT_EQ(thread == failure, fails);
  const bool without_block = trial.FailedIn("malloc", 3);
  EXPECT_EQ(trial.ErrorSlot(),
            trial.FailedIn("malloc") && !without_block ? ENOMEM : kErrorLeftAlone);
  EXPECT_EQ(id, fails ? 1U : 0U);
  if (fails) return;
  EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivCloseHandle(thread), TRUE);
}

ZEBCOMN_USE(ThreadFailures, Creation, "tivCreateThread") {
  StartAndClose(trial, nullptr,
                [](DWORD* id) { return tivCreateThread(nullptr, 0, DoNothing, nullptr, 0, id); });
}

ZEBCOMN_USE(ThreadFailures, Begin, "tivBeginThread") {
  StartAndClose(trial, TIV_INVALID_HANDLE,
                [](DWORD* id) { return tivBeginThread(nullptr, 0, DoNothing, nullptr, 0, id); });
}

// A start block over the record of an event, as a starting thread is given.
TivThreadStartBlock* NewStartBlock(_tivHandleObject_t* record) {
  auto* block = static_cast<TivThreadStartBlock*>(std::malloc(sizeof(TivThreadStartBlock)));
  *block = {&record->mutex, &record->cond, &record->bSignalled, DoNothing, nullptr};
  return block;
}

ZEBCOMN_USE(ThreadFailures, RunAndEnd, "tivThreadJuggle") {
  const OwnedHandle event(NewEvent());
  TivThreadStartBlock* block = NewStartBlock(event.record());
  trial.Call([&] { EXPECT_EQ(tivThreadJuggle(block), nullptr); });
  EXPECT_EQ(event.record()->bSignalled, 1) << "whatever has failed";
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ThreadFailures, EndWithASlot, "tivCleanupThread") {
  const OwnedHandle event(NewEvent());
  const DWORD slot = tivTlsAlloc();
  TivThreadStartBlock* block = NewStartBlock(event.record());
  trial.Call([&] { tivCleanupThread(block); });
  EXPECT_EQ(event.record()->bSignalled, 1) << "whatever has failed";
  EXPECT_EQ(pTlsKeyTable[slot], nullptr);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ThreadFailures, EndAfterTheClose, "tivCleanupThread") {
  const OwnedHandle event(NewEvent());
  TivThreadStartBlock* block = NewStartBlock(event.record());
  block->pbSignalled = &bDummyThreadSignalled;
  bDummyThreadSignalled = 0;
  trial.Call([&] { tivCleanupThread(block); });
  EXPECT_EQ(bDummyThreadSignalled, 1) << "whatever has failed";
  EXPECT_EQ(event.record()->bSignalled, 0);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(ThreadFailures, Scheduling, "set_pthread_sched_param") {
  trial.Call([] { set_pthread_sched_param(nullptr); });
}

ZEBCOMN_USE(TlsFailures, Allocation, "tivTlsAlloc") {
  DWORD slot = 0;
  trial.Call([&] { slot = tivTlsAlloc(); });
  const bool fails = trial.FailedIn("malloc") || trial.FailedIn("pthread_key_create");
  EXPECT_EQ(slot == TIV_INVALID_DWORD, fails);
  ExpectOnlyMemoryErrorSlot(trial);
  if (!fails) {
    EXPECT_EQ(tivTlsFree(slot), TRUE);
  }
}

ZEBCOMN_USE(TlsFailures, Free, "tivTlsFree") {
  const DWORD slot = tivTlsAlloc();
  BOOL freed = FALSE;
  trial.Call([&] { freed = tivTlsFree(slot); });
  EXPECT_EQ(freed, trial.FailedIn("pthread_key_delete") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(pTlsKeyTable[slot], nullptr) << "the slot is free all the same";
}

ZEBCOMN_USE(TlsFailures, SetAndGet, "tivTlsSetValue", "tivTlsGetValue") {
  const DWORD slot = tivTlsAlloc();
  int object = 0;
  BOOL set = FALSE;
  void* value = nullptr;
  trial.Call([&] { set = tivTlsSetValue(slot, &object); });
  trial.Call([&] { value = tivTlsGetValue(slot); });
  EXPECT_EQ(set, trial.FailedIn("pthread_setspecific") ? FALSE : TRUE);
  EXPECT_EQ(value, set == TRUE ? &object : nullptr);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tivTlsFree(slot), TRUE);
}

ZEBCOMN_USE(TlsFailures, ValueReplaced, "tivTlsSetValue", "tivTlsGetValue") {
  const DWORD slot = tivTlsAlloc();
  int first = 0;
  int second = 0;
  BOOL set = FALSE;
  void* value = nullptr;
  EXPECT_EQ(tivTlsSetValue(slot, &first), TRUE);
  trial.Call([&] { set = tivTlsSetValue(slot, &second); });
  trial.Call([&] { value = tivTlsGetValue(slot); });
  EXPECT_EQ(set, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(value, set == TRUE ? &second : &first) << "what could not be replaced stays";
  EXPECT_EQ(tivTlsFree(slot), TRUE);
}

// A slot beyond the low ones, whose values a thread has at hand.
ZEBCOMN_USE(TlsFailures, ValueInAHighSlot, "tivTlsSetValue", "tivTlsGetValue") {
  std::array<DWORD, 40> slots{};
  for (DWORD& slot : slots) slot = tivTlsAlloc();
  const DWORD slot = slots.back();
  int object = 0;
  BOOL set = FALSE;
  void* value = nullptr;
  trial.Call([&] { set = tivTlsSetValue(slot, &object); });
  trial.Call([&] { value = tivTlsGetValue(slot); });
  EXPECT_EQ(set, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(value, set == TRUE ? &object : nullptr);
  for (const DWORD taken : slots) EXPECT_EQ(tivTlsFree(taken), TRUE);
}

// A lock that cannot be had is gone without: the counter counts all the same.
ZEBCOMN_USE(InterlockedFailures, Counters, "tivInterlockedIncrement", "tivInterlockedDecrement") {
  LONG counter = 5;
  LONG up = 0;
  LONG down = 0;
  trial.Call([&] { up = tivInterlockedIncrement(&counter); });
  trial.Call([&] { down = tivInterlockedDecrement(&counter); });
  EXPECT_EQ(up, 6);
  EXPECT_EQ(down, 5);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(InterlockedFailures, Exchange, "tivInterlockedExchange") {
  LONG word = 5;
  LONG previous = 0;
  trial.Call([&] { previous = tivInterlockedExchange(&word, 7); });
  EXPECT_EQ(previous, 5);
  EXPECT_EQ(word, 7);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(HandleFailures, OpenMutexAndLastError, "tivOpenMutex",
                          "tivGetLastError") {
  HANDLE mutex = &trial;
  DWORD error = 0;
  trial.Call([&] {
    mutex = tivOpenMutex(0, FALSE, "name");
    errno = EACCES;
    error = tivGetLastError();
  });
  EXPECT_EQ(mutex, nullptr);
  EXPECT_EQ(error, 5U);
}

}  // namespace
