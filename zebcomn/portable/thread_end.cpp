#include <cstddef>

#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/thread_end_internal.h"

namespace zebcomn {

namespace {

// Guards every start block's `pbSignalled` and every thread record's `ppThreadSignalled`. It is not
// held while an end works on the record's own mutex: a record that somebody has left locked must
// hold up its own thread only.
pthread_mutex_t g_end_mutex = PTHREAD_MUTEX_INITIALIZER;

// `ppThreadSignalled` of a record whose thread is just ending, and of one that has been closed
// meanwhile. After the end it is null.
int32_t* g_ending_mark = nullptr;
int32_t* g_closed_mark = nullptr;

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

// Marks the block's record as ended. A close that has come during the end leaves the record to it.
void LeaveEnd(const TivThreadStartBlock* block) {
  _tivHandleObject_t* record = RecordOfBlock(block);
  if (record == nullptr) return;
  bool closed = false;
  {
    HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
    closed = record->ppThreadSignalled == &g_closed_mark;
    record->ppThreadSignalled = nullptr;
  }
  if (closed) FreeRecord(record);
}

}  // namespace

void SignalThreadEnd(TivThreadStartBlock* block) {
  if (!EnterEnd(block)) return;
  SignalRecord(block);
  LeaveEnd(block);
}

void CloseThreadRecord(_tivHandleObject_t* record) {
  {
    HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
    if (record->ppThreadSignalled == &g_ending_mark) {
      record->ppThreadSignalled = &g_closed_mark;
      return;
    }
    if (record->ppThreadSignalled != nullptr) *record->ppThreadSignalled = &bDummyThreadSignalled;
  }
  FreeRecord(record);
}

}  // namespace zebcomn
