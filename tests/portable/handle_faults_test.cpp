// Each call of the C library that the calls on a handle, and the interlocked counters, make fails
// once, in each place; creation_faults_test.cpp has the creations.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tests/portable/fails_under.h"
#include "tests/portable/interposed_calls.h"
#include "tests/portable/owned_handle.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/portable/file_record_internal.h"
#include "zebcomn/portable/global_mutexes.h"
#include "zebcomn/portable/interlocked.h"
#include "zebcomn/portable/tls.h"

namespace {

using zebcomn_test::Call;
using zebcomn_test::CallWatch;
using zebcomn_test::ClearErrorSlot;
using zebcomn_test::FailsUnder;
using zebcomn_test::kAllocationIsInterposed;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::Poll;
using zebcomn_test::WaitForEver;

DWORD DoNothing(void* /*parameter*/) {
  return 0;
}

bool IsLocked(_tivHandleObject_t* record) {
  if (pthread_mutex_trylock(&record->mutex) != 0) return true;
  pthread_mutex_unlock(&record->mutex);
  return false;
}

TEST(EventFaults, Set) {
  const OwnedHandle event(NewEvent());
  const auto set = [&] { return tivSetEvent(event.get()); };
  EXPECT_TRUE(FailsUnder(Call::kMutexLock, 1, set));
  EXPECT_EQ(event.record()->bSignalled, 0);
  EXPECT_TRUE(FailsUnder(Call::kCondBroadcast, 1, set));
  EXPECT_EQ(event.record()->bSignalled, 1);
  EXPECT_FALSE(IsLocked(event.record()));
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 1, set));
  EXPECT_EQ(pthread_mutex_unlock(&event.record()->mutex), 0);
}

TEST(EventFaults, Reset) {
  const OwnedHandle event(NewEvent(1));
  const auto reset = [&] { return tivResetEvent(event.get()); };
  EXPECT_TRUE(FailsUnder(Call::kMutexLock, 1, reset));
  EXPECT_EQ(event.record()->bSignalled, 1);
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 1, reset));
  EXPECT_EQ(event.record()->bSignalled, 0);
  EXPECT_EQ(pthread_mutex_unlock(&event.record()->mutex), 0);
}

TEST(EventFaults, ResetWakesNobody) {
  const OwnedHandle event(NewEvent(1));
  const CallWatch watch;
  EXPECT_EQ(tivResetEvent(event.get()), TRUE);
  EXPECT_EQ(watch.Count(Call::kMutexLock), 1);
  EXPECT_EQ(watch.Count(Call::kCondBroadcast), 0);
}

TEST(MutexFaults, Release) {
  const OwnedHandle mutex(tivCreateMutex(nullptr, 1, nullptr));
  const auto release = [&] { return tivReleaseMutex(mutex.get()); };
  EXPECT_TRUE(FailsUnder(Call::kMutexLock, 1, release));
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 1, release)) << "the ownership lock";
  EXPECT_EQ(mutex.record()->bSignalled, 0) << "still owned";
  EXPECT_FALSE(IsLocked(mutex.record()));
  EXPECT_TRUE(FailsUnder(Call::kCondBroadcast, 1, release));
  EXPECT_EQ(mutex.record()->bSignalled, 1);
  EXPECT_FALSE(IsLocked(mutex.record()));
  EXPECT_EQ(Poll(mutex.get()), TIV_WAIT_SIGNALLED);
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 2, release)) << "the record's lock";
  EXPECT_EQ(pthread_mutex_unlock(&mutex.record()->mutex), 0);
}

TEST(WaitFaults, Locks) {
  const OwnedHandle event(NewEvent(1));
  const auto wait = [&] { return WaitForEver(event.get()); };
  EXPECT_TRUE(FailsUnder(Call::kMutexLock, 1, wait));
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 1, wait));
  EXPECT_EQ(pthread_mutex_unlock(&event.record()->mutex), 0);
}

TEST(WaitFaults, OwnershipLock) {
  const OwnedHandle mutex(tivCreateMutex(nullptr, 0, nullptr));
  EXPECT_TRUE(FailsUnder(Call::kMutexLock, 2, [&] { return Poll(mutex.get()); }));
  EXPECT_EQ(mutex.record()->bSignalled, 1) << "not taken";
  EXPECT_FALSE(IsLocked(mutex.record()));
}

TEST(WaitFaults, UnreadableClockLeavesTheRecordLocked) {
  const OwnedHandle event(NewEvent());
  EXPECT_TRUE(FailsUnder(Call::kGettimeofday, 1,
                         [&] { return tivWaitForSingleObject(event.get(), 1000); }));
  EXPECT_EQ(pthread_mutex_trylock(&event.record()->mutex), EBUSY);
  EXPECT_EQ(pthread_mutex_unlock(&event.record()->mutex), 0);
}

TEST(WaitFaults, Sleeps) {
  const OwnedHandle event(NewEvent());
  struct Row {
    Call call;
    DWORD timeout;
    int error;
    DWORD result;
  };
  for (const Row& row : {Row{Call::kCondWait, TIV_WAIT_INFINITE, EPERM, TIV_WAIT_FAILED},
                         Row{Call::kCondWait, TIV_WAIT_INFINITE, ETIMEDOUT, TIV_WAIT_TIMEOUT},
                         Row{Call::kCondTimedwait, 1000, EINVAL, TIV_WAIT_FAILED},
                         Row{Call::kCondTimedwait, 1000, EPERM, TIV_WAIT_FAILED},
                         Row{Call::kCondTimedwait, 1000, ETIMEDOUT, TIV_WAIT_TIMEOUT}}) {
    ClearErrorSlot();
    const CallWatch watch(row.call, 1, row.error);
    EXPECT_EQ(tivWaitForSingleObject(event.get(), row.timeout), row.result);
    EXPECT_TRUE(watch.Failed());
    EXPECT_EQ(watch.Count(Call::kGettimeofday), row.timeout == TIV_WAIT_INFINITE ? 0 : 1);
    EXPECT_EQ(nErrno, kErrorLeftAlone);
    EXPECT_FALSE(IsLocked(event.record()));
  }
}

TEST(WaitFaults, TimeOutIsOneWhateverTheUnlockSays) {
  const OwnedHandle event(NewEvent());
  const zebcomn_test::FixedClock clock({1000, 0});
  for (const DWORD timeout : {0u, 1000u}) {
    const CallWatch watch(Call::kMutexUnlock, 1, EPERM);
    EXPECT_EQ(tivWaitForSingleObject(event.get(), timeout), TIV_WAIT_TIMEOUT);
    EXPECT_TRUE(watch.Failed());
    EXPECT_EQ(pthread_mutex_unlock(&event.record()->mutex), 0);
  }
}

TEST(WaitFaults, MutexStaysTakenWhenTheRecordCannotBeUnlocked) {
  const OwnedHandle mutex(tivCreateMutex(nullptr, 0, nullptr));
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 1, [&] { return WaitForEver(mutex.get()); }));
  EXPECT_EQ(pthread_mutex_unlock(&mutex.record()->mutex), 0);
  EXPECT_EQ(mutex.record()->bSignalled, 0);
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
}

TEST(WaitFaults, SeveralHandlesFailWithTheFirstFailure) {
  const OwnedHandle events[] = {OwnedHandle(NewEvent()), OwnedHandle(NewEvent(1))};
  const HANDLE handles[] = {events[0].get(), events[1].get()};
  EXPECT_TRUE(FailsUnder(Call::kMutexLock, 1,
                         [&] { return tivWaitForMultipleObjects(2, handles, 0, 1000); }));
}

TEST(CloseFaults, Locks) {
  HANDLE event = NewEvent();
  _tivHandleObject_t* record = zebcomn_test::RecordOf(event);
  const auto close = [&] { return tivCloseHandle(event); };
  EXPECT_TRUE(FailsUnder(Call::kMutexLock, 1, close));
  EXPECT_EQ(record->nRefCount, 1u);
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 1, close));
  EXPECT_EQ(record->nRefCount, 0u);
  EXPECT_EQ(pthread_mutex_unlock(&record->mutex), 0);
  EXPECT_EQ(tivCloseHandle(event), TRUE) << "the count is unsigned";
  std::free(event);
}

TEST(CloseFaults, UnlockThatFailsIsReportedForAnEarlierReferenceToo) {
  const OwnedHandle event(NewEvent());
  event.record()->nRefCount = 2;
  EXPECT_TRUE(FailsUnder(Call::kMutexUnlock, 1, [&] { return tivCloseHandle(event.get()); }));
  EXPECT_EQ(event.record()->nRefCount, 1u);
  EXPECT_EQ(pthread_mutex_unlock(&event.record()->mutex), 0);
}

TEST(CloseFaults, NothingOfAnEventOrAMutexIsLeft) {
  if (!kAllocationIsInterposed) GTEST_SKIP() << "malloc() belongs to the sanitizer";
  const CallWatch watch;
  tivCloseHandle(NewEvent(1));
  tivCloseHandle(tivCreateMutex(nullptr, 1, nullptr));
  EXPECT_EQ(watch.UnfreedBlocks(), 0);
}

// The error of the record's lock is the caller's to see; the library's own lock is taken anyhow.
TEST(CloseFaults, ThreadIsPartedFromItsRecordWhateverTheLibrarysOwnLockSays) {
  for (const auto& [call, nth] :
       {std::pair{Call::kMutexLock, 2}, std::pair{Call::kMutexUnlock, 2}}) {
    HANDLE thread = NewThread(DoNothing, nullptr);
    WaitForEver(thread);
    const CallWatch watch(call, nth, EAGAIN);
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
    EXPECT_TRUE(watch.Failed());
  }
}

// A file handle as opening makes it.
HANDLE FileHandle(const std::string& path) {
  auto* file = static_cast<zebcomn::FileRecord*>(std::calloc(1, sizeof(zebcomn::FileRecord)));
  file->descriptor = open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
  file->delete_on_close = 1;
  path.copy(file->path, sizeof(file->path) - 1);
  auto* record = static_cast<_tivHandleObject_t*>(std::calloc(1, sizeof(_tivHandleObject_t)));
  record->pObject = file;
  record->nRefCount = 1;
  pthread_cond_init(&record->cond, nullptr);
  pthread_mutex_init(&record->mutex, nullptr);
  return record;
}

TEST(CloseFaults, File) {
  const zebcomn_test::ScratchDir dir;
  HANDLE file = FileHandle(dir / "file");
  const auto close = [&] {
    zebcomn_test::RecordOf(file)->nRefCount = 1;
    return tivCloseHandle(file);
  };
  EXPECT_TRUE(FailsUnder(Call::kClose, 1, close));
  const int descriptor =
      static_cast<zebcomn::FileRecord*>(zebcomn_test::RecordOf(file)->pObject)->descriptor;
  EXPECT_NE(fcntl(descriptor, F_GETFD), -1) << "the descriptor is still open";
  EXPECT_TRUE(FailsUnder(Call::kRemove, 1, close));
  EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
  std::free(zebcomn_test::RecordOf(file)->pObject);
  std::free(file);
}

TEST(CloseFaults, OnlyAFilesLocksAreDestroyed) {
  const zebcomn_test::ScratchDir dir;
  HANDLE file = FileHandle(dir / "file");
  HANDLE thread = NewThread(DoNothing, nullptr);
  WaitForEver(thread);
  const CallWatch watch;
  for (HANDLE handle : {NewEvent(1), tivCreateMutex(nullptr, 1, nullptr), thread}) {
    EXPECT_EQ(tivCloseHandle(handle), TRUE);
  }
  EXPECT_EQ(watch.Count(Call::kCondDestroy), 0);
  EXPECT_EQ(watch.Count(Call::kMutexDestroy), 0);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  EXPECT_EQ(watch.Count(Call::kCondDestroy), 1);
  EXPECT_EQ(watch.Count(Call::kMutexDestroy), 1);
}

// What fails on the ending thread itself.
struct EndFault {
  Call call;
  int nth;
};

DWORD EndUnderFault(void* fault) {
  const auto* chosen = static_cast<EndFault*>(fault);
  // Lives on in the thread until its end.
  alignas(CallWatch) static thread_local char room[sizeof(CallWatch)];
  new (room) CallWatch(chosen->call, chosen->nth, EAGAIN);
  return 0;
}

TEST(ThreadEndFaults, HandleIsSignalledAllTheSame) {
  for (EndFault fault :
       {EndFault{Call::kMutexLock, 1}, EndFault{Call::kMutexLock, 2}, EndFault{Call::kMutexLock, 3},
        EndFault{Call::kCondBroadcast, 1}, EndFault{Call::kCondBroadcast, 2},
        EndFault{Call::kMutexUnlock, 1}, EndFault{Call::kMutexUnlock, 3}}) {
    SCOPED_TRACE(testing::Message()
                 << "call " << static_cast<int>(fault.call) << ", place " << fault.nth);
    HANDLE thread = NewThread(EndUnderFault, &fault);
    const int32_t* flag = &zebcomn_test::RecordOf(thread)->bSignalled;
    while (__atomic_load_n(flag, __ATOMIC_ACQUIRE) != 1) sched_yield();
    EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
  }
}

// A start block over the test's own objects, and what is to be seen right before its mutex is
// locked.
struct EndInView {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t cond = PTHREAD_COND_INITIALIZER;
  int32_t flag = 0;
  DWORD slot = tivTlsAlloc();
  int32_t flag_at_lock = -1;
  bool slot_freed_at_lock = false;
  int cancellation_at_lock = -1;

  TivThreadStartBlock* NewBlock() {
    auto* block = static_cast<TivThreadStartBlock*>(std::malloc(sizeof(TivThreadStartBlock)));
    *block = {&mutex, &cond, &flag, DoNothing, nullptr};
    return block;
  }
};
EndInView* g_end = nullptr;

void LookAtTheEnd(Call call, bool before, void* object) {
  if (call != Call::kMutexLock || !before || object != &g_end->mutex) return;
  g_end->flag_at_lock = g_end->flag;
  g_end->slot_freed_at_lock = pTlsKeyTable[g_end->slot] == nullptr;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &g_end->cancellation_at_lock);
  pthread_setcancelstate(g_end->cancellation_at_lock, nullptr);
}

TEST(ThreadEnd, FreesTheSlotsThenSetsTheFlagThenLocksAndWakesAllUncancelled) {
  EndInView end;
  g_end = &end;
  zebcomn_test::SetStepHook(LookAtTheEnd);
  const CallWatch watch;
  tivThreadJuggle(end.NewBlock());
  zebcomn_test::SetStepHook(nullptr);
  EXPECT_TRUE(end.slot_freed_at_lock);
  EXPECT_EQ(end.flag_at_lock, 1);
  EXPECT_EQ(end.cancellation_at_lock, PTHREAD_CANCEL_DISABLE);
  EXPECT_EQ(watch.Count(Call::kCondBroadcast), 1);
}

// The mutex that was locked last, as the step hook sees it.
void* g_locked = nullptr;

TEST(InterlockedFaults, EachKindOfOperationTakesItsOwnLock) {
  LONG value = 0;
  zebcomn_test::SetStepHook([](Call call, bool before, void* object) {
    if (call == Call::kMutexLock && before) g_locked = object;
  });
  tivInterlockedIncrement(&value);
  EXPECT_EQ(g_locked, &MutexInterlockedLong);
  tivInterlockedExchange(&value, 0);
  EXPECT_EQ(g_locked, &MutexInterlockedExchange);
  tivInterlockedDecrement(&value);
  EXPECT_EQ(g_locked, &MutexInterlockedLong);
  zebcomn_test::SetStepHook(nullptr);
}

// A variable that somebody else changes right after the lock has been given back.
LONG g_shared = 0;

TEST(InterlockedFaults, ResultIsReadAfterTheUnlock) {
  g_shared = 5;
  zebcomn_test::SetStepHook([](Call call, bool before, void* object) {
    if (call == Call::kMutexUnlock && !before && object == &MutexInterlockedLong) g_shared += 100;
  });
  EXPECT_EQ(tivInterlockedIncrement(&g_shared), 106);
  EXPECT_EQ(tivInterlockedDecrement(&g_shared), 205);
  zebcomn_test::SetStepHook(nullptr);
}

TEST(InterlockedFaults, OperationIsDoneWithoutTheLock) {
  LONG value = 5;
  {
    const CallWatch watch(Call::kMutexLock, 1, EAGAIN);
    EXPECT_EQ(tivInterlockedIncrement(&value), 6);
    EXPECT_TRUE(watch.Failed());
    EXPECT_EQ(watch.Count(Call::kMutexUnlock), 0) << "what was not locked is not unlocked";
  }
  const CallWatch watch(Call::kMutexLock, 1, EAGAIN);
  EXPECT_EQ(tivInterlockedExchange(&value, 9), 6);
  EXPECT_EQ(watch.Count(Call::kMutexUnlock), 0);
}

}  // namespace
