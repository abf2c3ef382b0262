#ifndef ZEBCOMN_PORTABLE_HANDLE_H_
#define ZEBCOMN_PORTABLE_HANDLE_H_

/// \file
/// The record behind every handle, and the end of a handle. C11 and C++17.
///
/// Rules of all calls on handles:
///  - A handle is the address of one `_tivHandleObject_t`. Null and all-ones (TIV_INVALID_HANDLE)
///    are the invalid values; all-ones is screened only where the call says so, and any other value
///    that is not a live handle is undefined.
///  - A handle belongs to its creator until tivCloseHandle(). Nothing else takes a reference.
///  - Any thread may make any call on any live handle.
///  - A failing pthread call gives the failure result and leaves `nErrno` alone.
///
/// \par Example
/// \include events_and_waits.c

#include <pthread.h>

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// The values of `_tivHandleObject_t::nType`.
enum { TIV_HANDLE_FILE = 0, TIV_HANDLE_EVENT = 1, TIV_HANDLE_THREAD = 2, TIV_HANDLE_MUTEX = 3 };

/// One handle record, taken with malloc() and given back with free() by tivCloseHandle(). Callers
/// may look at it; only the library changes it.
typedef struct _tivHandleObject_t {
  /// File: the file record. Event: null. Thread: a cell with its `pthread_t`. Mutex: the ownership
  /// lock, a `pthread_mutex_t` that stays locked while somebody owns the handle.
  void* pObject;
  int32_t nType;       ///< One of TIV_HANDLE_*.
  uint32_t nRefCount;  ///< 1 at creation; guarded by `mutex`.
  /// 1 = signalled, 0 = not. Event: set or reset. Thread: 1 when its routine has ended. Mutex: 1 =
  /// free, 0 = owned. Files do not use it. Changed under `mutex`, except that an ending thread
  /// stores its 1 just before it takes `mutex`; read it atomically outside the lock.
  int32_t bSignalled;
  pthread_cond_t cond;    ///< Broadcast when `bSignalled` becomes 1.
  pthread_mutex_t mutex;  ///< The record's own lock.
  /// Threads only: the `pbSignalled` field of the running thread's start block, through which a
  /// close detaches the thread from this record. Unset for events and mutexes.
  int32_t** ppThreadSignalled;
} _tivHandleObject_t;

/// What a thread stores 1 in when it ends after its handle was closed; initially 0.
extern ZEBCOMN_EXPORT int32_t bDummyThreadSignalled;

/// Gives up one reference; the last one (the first close, since nothing takes another) ends the
/// handle. All-ones and null are screened: they give TRUE and do nothing.
///
/// The last close of a
///  - file closes its descriptor and, when it was opened so, removes its path;
///  - thread lets the thread run on by itself; if it has not ended yet, its end sets only
///    `bDummyThreadSignalled`;
///  - event or mutex frees it. A mutex may be owned; nobody may be waiting.
///
/// \param hObject the handle.
/// \return TRUE; FALSE when a lock, an unlock, the close() or the remove() fails, or when the
///   record has an unknown type. After FALSE nothing has been freed; when the lock was not what
///   failed, the count has gone down all the same, so that another close gives TRUE and frees
///   nothing.
/// `nErrno` is left alone.
ZEBCOMN_EXPORT BOOL tivCloseHandle(HANDLE hObject);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_HANDLE_H_
