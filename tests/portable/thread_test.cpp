// Threads behind handles.
#include "zebcomn/portable/thread.h"

#include <gtest/gtest.h>
#include <sched.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "tests/portable/owned_handle.h"
#include "tests/support/command.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::Poll;
using zebcomn_test::RecordOf;
using zebcomn_test::WaitForEver;

const int32_t dummy_at_start = bDummyThreadSignalled;

int32_t ReadFlag(const int32_t* flag) {
  return __atomic_load_n(flag, __ATOMIC_ACQUIRE);
}

void ClearDummy() {
  __atomic_store_n(&bDummyThreadSignalled, 0, __ATOMIC_RELAXED);
}

// Until a thread whose handle was closed has ended.
void AwaitDummy() {
  while (ReadFlag(&bDummyThreadSignalled) == 0) sched_yield();
}

DWORD DoNothing(void* /*parameter*/) {
  return 0;
}

DWORD WaitForGate(void* gate) {
  return WaitForEver(gate);
}

TEST(Thread, RunsTheRoutineWithItsParameter) {
  int parameter = 0;
  const OwnedHandle thread(NewThread(
      [](void* argument) -> DWORD {
        *static_cast<int*>(argument) = 5;
        return 9;
      },
      &parameter));
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(parameter, 5);
}

TEST(Thread, RecordIsTiedToTheStartBlock) {
  const OwnedHandle gate(NewEvent());
  const OwnedHandle thread(NewThread(WaitForGate, gate.get()));
  const _tivHandleObject_t* record = thread.record();
  EXPECT_EQ(record->nType, 2);
  EXPECT_EQ(record->nRefCount, 1u);
  EXPECT_EQ(ReadFlag(&record->bSignalled), 0);
  ASSERT_NE(record->ppThreadSignalled, nullptr);
  const void* start = reinterpret_cast<const char*>(record->ppThreadSignalled) -
                      offsetof(TivThreadStartBlock, pbSignalled);
  const auto* block = static_cast<const TivThreadStartBlock*>(start);
  EXPECT_EQ(block->pMutex, &record->mutex);
  EXPECT_EQ(block->pCond, &record->cond);
  EXPECT_EQ(block->pbSignalled, &record->bSignalled);
  EXPECT_EQ(block->pfnStart, WaitForGate);
  EXPECT_EQ(block->pParam, gate.get());
  EXPECT_EQ(Poll(thread.get()), TIV_WAIT_TIMEOUT);
  tivSetEvent(gate.get());
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
}

TEST(Thread, PayloadHoldsThePthread) {
  pthread_t self{};
  const OwnedHandle thread(NewThread(
      [](void* argument) -> DWORD {
        *static_cast<pthread_t*>(argument) = pthread_self();
        return 0;
      },
      &self));
  WaitForEver(thread.get());
  EXPECT_NE(pthread_equal(*static_cast<pthread_t*>(thread.record()->pObject), self), 0);
}

TEST(Thread, IsDetached) {
  int state = -1;
  const OwnedHandle thread(NewThread(
      [](void* argument) -> DWORD {
        pthread_attr_t attributes;
        pthread_getattr_np(pthread_self(), &attributes);
        pthread_attr_getdetachstate(&attributes, static_cast<int*>(argument));
        pthread_attr_destroy(&attributes);
        return 0;
      },
      &state));
  WaitForEver(thread.get());
  EXPECT_EQ(state, PTHREAD_CREATE_DETACHED);
}

TEST(Thread, IdIsAlwaysZero) {
  DWORD id = 77;
  const OwnedHandle created(tivCreateThread(nullptr, 0, DoNothing, nullptr, 0, &id));
  EXPECT_EQ(id, 0u);
  id = 77;
  const OwnedHandle begun(tivBeginThread(nullptr, 0, DoNothing, nullptr, 0, &id));
  EXPECT_EQ(id, 0u);
  WaitForEver(created.get());
  WaitForEver(begun.get());
}

TEST(Thread, AttributesStackSizeAndFlagsAreIgnored) {
  int attributes = 0;
  const OwnedHandle thread(
      tivCreateThread(&attributes, 0xFFFFFFFF, DoNothing, nullptr, 0xFFFFFFFF, nullptr));
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
}

TEST(Thread, NullRoutineIsRefused) {
  nErrno = 0;
  EXPECT_EQ(tivBeginThread(nullptr, 0, nullptr, nullptr, 0, nullptr), TIV_INVALID_HANDLE);
  EXPECT_EQ(nErrno, 22);
  nErrno = 0;
  EXPECT_EQ(tivCreateThread(nullptr, 0, nullptr, nullptr, 0, nullptr), nullptr);
  EXPECT_EQ(nErrno, 22);
}

TEST(Thread, SchedulingHookDoesNothing) {
  nErrno = 77;
  set_pthread_sched_param(nullptr);
  EXPECT_EQ(nErrno, 77);
}

TEST(ThreadEnd, StaysSignalled) {
  const OwnedHandle thread(NewThread(DoNothing, nullptr));
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(Poll(thread.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(ReadFlag(&thread.record()->bSignalled), 1);
}

TEST(ThreadEnd, PthreadExitSignalsToo) {
  const OwnedHandle thread(NewThread(
      [](void*) -> DWORD {
        pthread_exit(nullptr);
        return 0;
      },
      nullptr));
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
}

TEST(ThreadEnd, CancellationSignalsTooAndLeavesTheWaitedHandleUsable) {
#ifdef __powerpc__
  if (zebcomn_test::IsEmulated()) {
    GTEST_SKIP() << "the emulator aborts when a blocked thread is cancelled";
  }
#endif
  const OwnedHandle gate(NewEvent());
  const OwnedHandle thread(NewThread(WaitForGate, gate.get()));
  EXPECT_EQ(pthread_cancel(*static_cast<pthread_t*>(thread.record()->pObject)), 0);
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivSetEvent(gate.get()), TRUE);
  EXPECT_EQ(Poll(gate.get()), TIV_WAIT_SIGNALLED);
}

TEST(ThreadEnd, AfterACloseSetsOnlyTheDummy) {
  ClearDummy();
  const OwnedHandle gate(NewEvent());
  OwnedHandle thread(NewThread(WaitForGate, gate.get()));
  thread.Close();
  EXPECT_EQ(ReadFlag(&bDummyThreadSignalled), 0);
  tivSetEvent(gate.get());
  AwaitDummy();
  EXPECT_EQ(ReadFlag(&bDummyThreadSignalled), 1);
}

TEST(ThreadEnd, DummyIsZeroAtFirst) {
  EXPECT_EQ(dummy_at_start, 0);
}

TEST(ThreadEnd, BeforeACloseLeavesTheDummy) {
  ClearDummy();
  OwnedHandle thread(NewThread(DoNothing, nullptr));
  WaitForEver(thread.get());
  thread.Close();
  EXPECT_EQ(ReadFlag(&bDummyThreadSignalled), 0);
}

TEST(ThreadEnd, FlagSetByHandDoesNotMakeARunningThreadEnded) {
  ClearDummy();
  const OwnedHandle gate(NewEvent());
  OwnedHandle thread(NewThread(WaitForGate, gate.get()));
  EXPECT_EQ(tivSetEvent(thread.get()), TRUE);
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
  thread.Close();
  tivSetEvent(gate.get());
  AwaitDummy();
}

TEST(ThreadEnd, FlagResetByHandAfterTheEndDoesNotMakeItRunning) {
  ClearDummy();
  OwnedHandle thread(NewThread(DoNothing, nullptr));
  WaitForEver(thread.get());
  EXPECT_EQ(tivResetEvent(thread.get()), TRUE);
  thread.Close();
  EXPECT_EQ(ReadFlag(&bDummyThreadSignalled), 0);
}

TEST(ThreadEnd, ThreadMayCloseItsOwnHandle) {
  ClearDummy();
  struct Self {
    HANDLE gate = NewEvent();
    HANDLE thread = nullptr;
  } self;
  self.thread = NewThread(
      [](void* argument) -> DWORD {
        auto* mine = static_cast<Self*>(argument);
        WaitForEver(mine->gate);
        return static_cast<DWORD>(tivCloseHandle(mine->thread));
      },
      &self);
  tivSetEvent(self.gate);
  AwaitDummy();
  tivCloseHandle(self.gate);
}

// A start block over objects that belong to no handle.
struct OwnObjects {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t cond = PTHREAD_COND_INITIALIZER;
  int32_t flag = 0;
  // Where the rest of a handle record would be.
  unsigned char guard[sizeof(_tivHandleObject_t)];

  OwnObjects() { std::memset(guard, 0xA5, sizeof(guard)); }

  TivThreadStartBlock* NewBlock(TivThreadRoutine routine, void* parameter) {
    auto* block = static_cast<TivThreadStartBlock*>(std::malloc(sizeof(TivThreadStartBlock)));
    *block = {&mutex, &cond, &flag, routine, parameter};
    return block;
  }
};

TEST(ThreadEntry, RunsABlockAndGivesTheRoutinesResult) {
  OwnObjects objects;
  int parameter = 5;
  void* result = tivThreadJuggle(objects.NewBlock(
      [](void* argument) -> DWORD { return 0x80000000u + *static_cast<DWORD*>(argument); },
      &parameter));
  EXPECT_EQ(reinterpret_cast<uintptr_t>(result), 0x80000005u);
  EXPECT_EQ(objects.flag, 1);
  for (const unsigned char byte : objects.guard) EXPECT_EQ(byte, 0xA5);
  EXPECT_EQ(pthread_mutex_trylock(&objects.mutex), 0);
  EXPECT_EQ(pthread_mutex_unlock(&objects.mutex), 0);
}

TEST(ThreadEntry, LeavesTheCallersCancellationAlone) {
  OwnObjects objects;
  tivThreadJuggle(objects.NewBlock(DoNothing, nullptr));
  int state = -1;
  pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &state);
  EXPECT_EQ(state, PTHREAD_CANCEL_ENABLE);
}

TEST(ThreadEntry, CleanupSignalsTheObjectsOfItsBlock) {
  OwnObjects objects;
  tivCleanupThread(objects.NewBlock(DoNothing, nullptr));
  EXPECT_EQ(objects.flag, 1);
}

TEST(ThreadEntry, CleanupOfADetachedBlockSetsOnlyTheDummy) {
  ClearDummy();
  OwnObjects objects;
  TivThreadStartBlock* block = objects.NewBlock(DoNothing, nullptr);
  block->pbSignalled = &bDummyThreadSignalled;
  tivCleanupThread(block);
  EXPECT_EQ(ReadFlag(&bDummyThreadSignalled), 1);
  EXPECT_EQ(objects.flag, 0);
}

// Objects of a caller that lie as those of a handle record do used to be taken for one, and what
// stood behind them was overwritten.
TEST(ThreadEntry, ObjectsInTheOrderOfARecordAreNoRecord) {
  struct {
    int32_t before[sizeof(void*) / sizeof(int32_t)] = {};  // Puts the flag where a record has it.
    int32_t flag = 0;
    pthread_cond_t cond = PTHREAD_COND_INITIALIZER;
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    uintptr_t behind[2] = {5, 7};
  } objects;
  ASSERT_EQ(reinterpret_cast<char*>(&objects.mutex) - reinterpret_cast<char*>(&objects.flag),
            static_cast<ptrdiff_t>(offsetof(_tivHandleObject_t, mutex) -
                                   offsetof(_tivHandleObject_t, bSignalled)));
  auto* block = static_cast<TivThreadStartBlock*>(std::malloc(sizeof(TivThreadStartBlock)));
  *block = {&objects.mutex, &objects.cond, &objects.flag, DoNothing, nullptr};
  tivCleanupThread(block);
  EXPECT_EQ(objects.flag, 1);
  EXPECT_EQ(objects.behind[0], 5u);
  EXPECT_EQ(objects.behind[1], 7u);
}

TEST(ThreadEntry, CleanupSignalsAnEventsRecord) {
  const OwnedHandle event(NewEvent());
  auto* block = static_cast<TivThreadStartBlock*>(std::malloc(sizeof(TivThreadStartBlock)));
  *block = {&event.record()->mutex, &event.record()->cond, &event.record()->bSignalled, DoNothing,
            nullptr};
  tivCleanupThread(block);
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_SIGNALLED);
}

TEST(ThreadEntry, NullDoesNothing) {
  EXPECT_EQ(tivThreadJuggle(nullptr), nullptr);
  tivCleanupThread(nullptr);
}

}  // namespace
