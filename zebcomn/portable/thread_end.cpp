#include <cstddef>

#include "zebcomn/portable/cancellation_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/thread_end_internal.h"

namespace zebcomn {

namespace {

// Guards every start block's `pbSignalled` and every thread record's `ppThreadSignalled`. It is not
// held while an end works on the record's own mutex: a record that somebody has left locked must
// hold up its own thread only.
pthread_mutex_t g_end_mutex = PTHREAD_MUTEX_INITIALIZER;
pthread_cond_t g_end_over = PTHREAD_COND_INITIALIZER;

// `ppThreadSignalled` of a record whose thread is just ending. After the end it is null.
int32_t* g_ending_mark = nullptr;

// The record that a start block points into; null for a block that a caller put together from
// objects of its own.
_tivHandleObject_t* RecordOfBlock(const TivThreadStartBlock* block) {
  const auto flag = reinterpret_cast<uintptr_t>(block->pbSignalled);
  const auto base = flag - offsetof(_tivHandleObject_t, bSignalled);
  const auto cond = reinterpret_cast<uintptr_t>(block->pCond);
  const auto mutex = reinterpret_cast<uintptr_t>(block->pMutex);
  if (cond != base + offsetof(_tivHandleObject_t, cond) ||
      mutex != base + offsetof(_tivHandleObject_t, mutex)) {
    return nullptr;
  }
  return reinterpret_cast<_tivHandleObject_t*>(base);
}

// Tells the record's waiters. The flag is set first: a waiter that does not take the lock any more
// sees it, and one that does is woken.
void SignalRecord(const TivThreadStartBlock* block) {
  StoreRelease(block->pbSignalled, 1);
  HeldMutex lock(*block->pMutex);
  pthread_cond_broadcast(block->pCond);
}

// Marks the block's record as ending. False when the handle is closed: there is no record.
bool EnterEnd(const TivThreadStartBlock* block) {
  HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
  const bool detached = block->pbSignalled == &bDummyThreadSignalled;
  if (detached) {
    StoreRelease(&bDummyThreadSignalled, 1);
  } else if (_tivHandleObject_t* record = RecordOfBlock(block)) {
    record->ppThreadSignalled = &g_ending_mark;
  }
  return !detached;
}

void LeaveEnd(const TivThreadStartBlock* block) {
  HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
  if (_tivHandleObject_t* record = RecordOfBlock(block)) record->ppThreadSignalled = nullptr;
  // A close that waits for this end would wait for ever.
  while (pthread_cond_broadcast(&g_end_over) != 0) {
  }
}

// Waits until the end under way is over. The wait must not be a cancellation point: the record of
// a close that does not come back would be lost.
void AwaitEnd(const _tivHandleObject_t* record) {
  const CancellationHeldOff no_cancellation;
  while (record->ppThreadSignalled == &g_ending_mark) pthread_cond_wait(&g_end_over, &g_end_mutex);
}

}  // namespace

void SignalThreadEnd(TivThreadStartBlock* block) {
  if (!EnterEnd(block)) return;
  SignalRecord(block);
  LeaveEnd(block);
}

void DetachThread(_tivHandleObject_t* record) {
  HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
  if (record->ppThreadSignalled == &g_ending_mark) AwaitEnd(record);
  if (record->ppThreadSignalled != nullptr) *record->ppThreadSignalled = &bDummyThreadSignalled;
}

}  // namespace zebcomn
