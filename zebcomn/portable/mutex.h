#ifndef ZEBCOMN_PORTABLE_MUTEX_H_
#define ZEBCOMN_PORTABLE_MUTEX_H_

/// \file
/// Mutex handles. C11 and C++17. The rules of all handles stand in handle.h.
///
/// A successful wait on the handle (wait.h) takes ownership; tivReleaseMutex() gives it back. There
/// is no owner field and no recursion: a second wait by the owner waits for a release like anybody
/// else's. A waiter that wakes while another thread has already taken the mutex blocks with the
/// record locked, and the owner's release then blocks too: threads must not contend for one mutex
/// handle.
///
/// \par Example
/// \include events_and_waits.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Creates a mutex that belongs to the caller until tivCloseHandle().
///
/// \param lpMutexAttributes ignored.
/// \param bInitialOwner 1 = the calling thread owns it; every other value = it is free.
/// \param lpName ignored: a named mutex is an ordinary one.
/// \return the handle; null with `nErrno` 12 (no memory), and null with `nErrno` as it was when a
///   pthread object cannot be made. When the record's own condition or lock is what cannot be made,
///   the memory of the ownership lock stays behind.
ZEBCOMN_EXPORT HANDLE tivCreateMutex(void* lpMutexAttributes, BOOL bInitialOwner,
                                     const char* lpName);

/// Not supported: always null, and `nErrno` is left alone.
/// \param dwDesiredAccess ignored.
/// \param bInheritHandle ignored.
/// \param lpName ignored.
/// \return null.
ZEBCOMN_EXPORT HANDLE tivOpenMutex(DWORD dwDesiredAccess, BOOL bInheritHandle, const char* lpName);

/// Gives up ownership and wakes all waiters. The caller must own the mutex; this is not checked.
///
/// \param hMutex a mutex that a wait, or its creation, has given to the caller.
/// \return TRUE; FALSE for null (`nErrno` as it was), for a handle of another type (`nErrno` 22),
///   and when a pthread call fails.
ZEBCOMN_EXPORT BOOL tivReleaseMutex(HANDLE hMutex);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_MUTEX_H_
