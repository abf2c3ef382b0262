#include "zebcomn/portable/event.h"

#include <cstdlib>

#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/signal_internal.h"

namespace {

BOOL SetRecord(_tivHandleObject_t* record) {
  zebcomn::HeldMutex lock(record->mutex);
  if (!lock.held() || !zebcomn::Signal(record)) return FALSE;
  return lock.Unlock() ? TRUE : FALSE;
}

}  // namespace

HANDLE tivCreateEvent(void* /*lpEventAttributes*/, BOOL bManualReset, BOOL bInitialState,
                      const char* lpName) {
  // Kept: auto-reset and named events are refused; callers fall back on what there is.
  if (bManualReset != 1 || (lpName != nullptr && *lpName != '\0')) {
    zebcomn::StoreError(EINVAL);
    return nullptr;
  }
  _tivHandleObject_t* record = zebcomn::AllocateRecord();
  if (record == nullptr) {
    zebcomn::StoreError(ENOMEM);
    return nullptr;
  }
  record->pObject = nullptr;
  if (!zebcomn::InitRecordLocks(record)) {
    std::free(record);
    return nullptr;
  }
  record->nType = TIV_HANDLE_EVENT;
  record->nRefCount = 1;
  record->bSignalled = 0;
  // Kept: only 1 asks for a signalled event; callers pass other non-zero values for "not".
  if (bInitialState == 1 && SetRecord(record) != TRUE) {
    zebcomn::StoreError(EBUSY);
    // Nobody else has the handle, so it ends without its lock, which may be what has failed.
    std::free(record);
    return nullptr;
  }
  return record;
}

BOOL tivSetEvent(HANDLE hEvent) {
  if (hEvent == nullptr || hEvent == TIV_INVALID_HANDLE) {
    zebcomn::StoreError(EINVAL);
    return FALSE;
  }
  return SetRecord(zebcomn::RecordOf(hEvent));
}

BOOL tivResetEvent(HANDLE hEvent) {
  if (hEvent == nullptr) {
    zebcomn::StoreError(EINVAL);
    return FALSE;
  }
  _tivHandleObject_t* record = zebcomn::RecordOf(hEvent);
  zebcomn::HeldMutex lock(record->mutex);
  if (!lock.held()) return FALSE;
  zebcomn::StoreRelaxed(&record->bSignalled, 0);
  return lock.Unlock() ? TRUE : FALSE;
}
