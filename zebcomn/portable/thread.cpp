#include "zebcomn/portable/thread.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/thread_end_internal.h"

namespace {

static_assert(offsetof(TivThreadStartBlock, pMutex) == 0 &&
                  offsetof(TivThreadStartBlock, pCond) == sizeof(void*) &&
                  offsetof(TivThreadStartBlock, pbSignalled) == 2 * sizeof(void*) &&
                  offsetof(TivThreadStartBlock, pfnStart) == 3 * sizeof(void*) &&
                  offsetof(TivThreadStartBlock, pParam) == 4 * sizeof(void*) &&
                  sizeof(TivThreadStartBlock) == 5 * sizeof(void*),
              "The fields stand in this order on every target.");

// A zeroed record with its zeroed `pthread_t` cell; null without memory.
_tivHandleObject_t* AllocateThreadRecord() {
  _tivHandleObject_t* record = zebcomn::AllocateRecord();
  if (record == nullptr) return nullptr;
  std::memset(record, 0, sizeof(*record));
  auto* cell = static_cast<pthread_t*>(std::malloc(sizeof(pthread_t)));
  if (cell == nullptr) {
    std::free(record);
    return nullptr;
  }
  *cell = 0;
  record->pObject = cell;
  return record;
}

// Starts a detached thread on `block`: 0, or the error of the pthread call that failed.
int StartDetached(pthread_t* cell, TivThreadStartBlock* block) {
  pthread_attr_t attributes;
  int error = pthread_attr_init(&attributes);
  if (error != 0) return error;
  error = pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  if (error == 0) error = pthread_create(cell, &attributes, tivThreadJuggle, block);
  pthread_attr_destroy(&attributes);
  return error;
}

// Runs a thread that signals its end to `record`, whose locks are initialised. False when it could
// not be started: nothing of it is left.
bool RunThread(_tivHandleObject_t* record, TivThreadRoutine routine, void* parameter) {
  TivThreadStartBlock* block = zebcomn::NewStartBlock(record, routine, parameter);
  if (block == nullptr) return false;
  if (StartDetached(static_cast<pthread_t*>(record->pObject), block) == 0) return true;
  zebcomn::DiscardStartBlock(block);
  return false;
}

}  // namespace

HANDLE tivBeginThread(void* /*lpThreadAttributes*/, DWORD /*dwStackSize*/,
                      TivThreadRoutine lpStartAddress, void* lpParameter, DWORD /*dwCreationFlags*/,
                      DWORD* lpThreadId) {
  if (lpStartAddress == nullptr) {
    zebcomn::StoreError(EINVAL);
    return TIV_INVALID_HANDLE;
  }
  _tivHandleObject_t* record = AllocateThreadRecord();
  if (record == nullptr) {
    zebcomn::StoreError(ENOMEM);
    return TIV_INVALID_HANDLE;
  }
  record->nType = TIV_HANDLE_THREAD;
  record->nRefCount = 1;
  if (!zebcomn::InitRecordLocks(record)) {
    zebcomn::FreeRecord(record);
    return TIV_INVALID_HANDLE;
  }
  if (!RunThread(record, lpStartAddress, lpParameter)) {
    zebcomn::DestroyRecordLocks(record);
    zebcomn::FreeRecord(record);
    return TIV_INVALID_HANDLE;
  }
  // Kept: the id is always 0; it is the start's result, and callers do not use it as an id.
  if (lpThreadId != nullptr) *lpThreadId = 0;
  set_pthread_sched_param(record);
  return record;
}

HANDLE tivCreateThread(void* lpThreadAttributes, DWORD dwStackSize, TivThreadRoutine lpStartAddress,
                       void* lpParameter, DWORD dwCreationFlags, DWORD* lpThreadId) {
  HANDLE thread = tivBeginThread(lpThreadAttributes, dwStackSize, lpStartAddress, lpParameter,
                                 dwCreationFlags, lpThreadId);
  return thread == TIV_INVALID_HANDLE ? nullptr : thread;
}

void set_pthread_sched_param(HANDLE /*hThread*/) {}
