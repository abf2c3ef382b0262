#include "zebcomn/portable/handle.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "zebcomn/portable/cancellation_internal.h"
#include "zebcomn/portable/file_record_internal.h"
#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/thread_end_internal.h"

using zebcomn::FileRecord;

int32_t bDummyThreadSignalled = 0;

namespace {

// Not inlined: that keeps what a file needs off the way of the other kinds.
[[gnu::noinline]] BOOL EndFile(_tivHandleObject_t* record) {
  // The last reference is given up: a cancellation here would lose descriptor and record.
  const zebcomn::CancellationHeldOff no_cancellation;
  auto* file = static_cast<FileRecord*>(record->pObject);
  if (close(file->descriptor) != 0) return FALSE;
  if (file->delete_on_close == 1 && std::remove(file->path) != 0) return FALSE;
  std::free(file);
  zebcomn::DestroyRecordLocks(record);
  std::free(record);
  return TRUE;
}

BOOL EndHandle(_tivHandleObject_t* record) {
  switch (record->nType) {
    case TIV_HANDLE_FILE:
      return EndFile(record);
    case TIV_HANDLE_THREAD:
      zebcomn::CloseThreadRecord(record);
      return TRUE;
    case TIV_HANDLE_EVENT:
    case TIV_HANDLE_MUTEX:
      zebcomn::FreeRecord(record);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

BOOL tivCloseHandle(HANDLE hObject) {
  // Kept: closing an invalid handle is a harmless success; callers close without a check.
  if (hObject == nullptr || hObject == TIV_INVALID_HANDLE) return TRUE;
  _tivHandleObject_t* record = zebcomn::RecordOf(hObject);
  zebcomn::HeldMutex lock(record->mutex);
  if (!lock.held()) return FALSE;
  // Kept: the count is unsigned and goes below 0 when a close is retried after its last one failed;
  // the retry then frees nothing.
  const uint32_t references = --record->nRefCount;
  if (!lock.Unlock()) return FALSE;
  return references != 0 ? TRUE : EndHandle(record);
}
