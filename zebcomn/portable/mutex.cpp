#include "zebcomn/portable/mutex.h"

#include <cstdlib>

#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/signal_internal.h"

namespace {

pthread_mutex_t* OwnershipLock(const _tivHandleObject_t* record) {
  return static_cast<pthread_mutex_t*>(record->pObject);
}

// Allocates the record and the ownership lock, neither of them initialised.
_tivHandleObject_t* AllocateMutexRecord() {
  _tivHandleObject_t* record = zebcomn::AllocateRecord();
  if (record == nullptr) return nullptr;
  record->pObject = std::malloc(sizeof(pthread_mutex_t));
  if (record->pObject == nullptr) {
    std::free(record);
    return nullptr;
  }
  return record;
}

HANDLE DiscardMutexRecord(_tivHandleObject_t* record) {
  std::free(record->pObject);
  std::free(record);
  return nullptr;
}

}  // namespace

HANDLE tivCreateMutex(void* /*lpMutexAttributes*/, BOOL bInitialOwner, const char* /*lpName*/) {
  _tivHandleObject_t* record = AllocateMutexRecord();
  if (record == nullptr) {
    zebcomn::StoreError(ENOMEM);
    return nullptr;
  }
  record->nType = TIV_HANDLE_MUTEX;
  record->nRefCount = 1;
  if (!zebcomn::InitRecordLocks(record)) {
    // Kept: the ownership lock's memory stays behind, as the interface's contract says.
    std::free(record);
    return nullptr;
  }
  if (pthread_mutex_init(OwnershipLock(record), nullptr) != 0) return DiscardMutexRecord(record);
  if (bInitialOwner == 1 && pthread_mutex_lock(OwnershipLock(record)) != 0) {
    return DiscardMutexRecord(record);
  }
  record->bSignalled = bInitialOwner == 1 ? 0 : 1;
  return record;
}

// Kept: opening by name never succeeds and says nothing in nErrno; callers then create one.
HANDLE tivOpenMutex(DWORD /*dwDesiredAccess*/, BOOL /*bInheritHandle*/, const char* /*lpName*/) {
  return nullptr;
}

BOOL tivReleaseMutex(HANDLE hMutex) {
  // Kept: null leaves nErrno alone here, unlike in the calls on events.
  if (hMutex == nullptr) return FALSE;
  _tivHandleObject_t* record = zebcomn::RecordOf(hMutex);
  if (record->nType != TIV_HANDLE_MUTEX) {
    zebcomn::StoreError(EINVAL);
    return FALSE;
  }
  zebcomn::HeldMutex lock(record->mutex);
  if (!lock.held() || pthread_mutex_unlock(OwnershipLock(record)) != 0) return FALSE;
  if (!zebcomn::Signal(record)) return FALSE;
  return lock.Unlock() ? TRUE : FALSE;
}
