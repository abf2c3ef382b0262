#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/thread_end_internal.h"

namespace zebcomn {

namespace {

// A start block as NewStartBlock() makes it: its address is that of the block proper.
struct OwnBlock {
  TivThreadStartBlock block;
  _tivHandleObject_t* record;
  OwnBlock* next;  // In its place of g_own_blocks.
};

// Guards every start block's `pbSignalled`, every thread record's `ppThreadSignalled` and
// g_own_blocks. It is not held while an end works on the record's own mutex: a record that somebody
// has left locked must hold up its own thread only.
pthread_mutex_t g_end_mutex = PTHREAD_MUTEX_INITIALIZER;

// `ppThreadSignalled` of a record whose thread is just ending, and of one that has been closed
// meanwhile. After the end it is null.
int32_t* g_ending_mark = nullptr;
int32_t* g_closed_mark = nullptr;

// The blocks whose threads have not come to their end, in lists by their addresses. A block that a
// caller put together may point at anything, so that nothing in it tells it from one of these.
constexpr size_t kPlaces = 256;
OwnBlock* g_own_blocks[kPlaces];

OwnBlock** PlaceOf(const TivThreadStartBlock* block) {
  return &g_own_blocks[reinterpret_cast<uintptr_t>(block) / sizeof(OwnBlock) % kPlaces];
}

// The record of a block from NewStartBlock(), which is told only once; null for any other block.
// REQUIRES: g_end_mutex is held.
_tivHandleObject_t* TakeRecord(const TivThreadStartBlock* block) {
  OwnBlock** link = PlaceOf(block);
  while (*link != nullptr && &(*link)->block != block) link = &(*link)->next;
  if (*link == nullptr) return nullptr;
  _tivHandleObject_t* record = (*link)->record;
  *link = (*link)->next;
  return record;
}

// Tells the record's waiters. The flag is set first: a waiter that does not take the lock any more
// sees it, and one that does is woken.
void SignalRecord(const TivThreadStartBlock* block) {
  StoreRelease(block->pbSignalled, 1);
  HeldMutex lock(*block->pMutex);
  pthread_cond_broadcast(block->pCond);
}

// Begins the end of the block's thread: `record` is its record, marked as ending, or null. False
// when the handle is closed: there is nobody left to tell.
bool EnterEnd(const TivThreadStartBlock* block, _tivHandleObject_t*& record) {
  HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
  record = TakeRecord(block);
  if (block->pbSignalled == &bDummyThreadSignalled) {
    StoreRelease(&bDummyThreadSignalled, 1);
    return false;
  }
  if (record != nullptr) record->ppThreadSignalled = &g_ending_mark;
  return true;
}

// Marks the record as ended. A close that has come during the end leaves the record to it.
void LeaveEnd(_tivHandleObject_t* record) {
  bool closed = false;
  {
    HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
    closed = record->ppThreadSignalled == &g_closed_mark;
    record->ppThreadSignalled = nullptr;
  }
  if (closed) FreeRecord(record);
}

}  // namespace

TivThreadStartBlock* NewStartBlock(_tivHandleObject_t* record, TivThreadRoutine routine,
                                   void* parameter) {
  auto* own = static_cast<OwnBlock*>(std::malloc(sizeof(OwnBlock)));
  if (own == nullptr) return nullptr;
  own->block = {&record->mutex, &record->cond, &record->bSignalled, routine, parameter};
  own->record = record;
  record->ppThreadSignalled = &own->block.pbSignalled;
  OwnBlock** place = PlaceOf(&own->block);
  HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
  own->next = *place;
  *place = own;
  return &own->block;
}

void DiscardStartBlock(TivThreadStartBlock* block) {
  {
    HeldMutex lock(g_end_mutex, HeldMutex::Insist{});
    TakeRecord(block);
  }
  std::free(block);
}

void SignalThreadEnd(TivThreadStartBlock* block) {
  _tivHandleObject_t* record = nullptr;
  if (!EnterEnd(block, record)) return;
  SignalRecord(block);
  if (record != nullptr) LeaveEnd(record);
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
