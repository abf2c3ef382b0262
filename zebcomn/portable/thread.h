#ifndef ZEBCOMN_PORTABLE_THREAD_H_
#define ZEBCOMN_PORTABLE_THREAD_H_

/// \file
/// Threads behind handles. C11 and C++17. The rules of all handles stand in handle.h.
///
/// A thread is detached and starts running at once. Its handle becomes signalled when its routine
/// has returned, or when it leaves through pthread_exit() or is cancelled. A handle that is closed
/// earlier lets the thread run on by itself.
///
/// WARNING: the end of such a thread frees every slot of tls.h that this process has allocated.
///
/// \par Example
/// \include threads_and_tls.c

#include <pthread.h>

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// A thread's routine. Nobody collects its result.
typedef DWORD (*TivThreadRoutine)(void* lpParameter);

/// What a new thread is given: taken with malloc(), owned and freed by the thread.
typedef struct TivThreadStartBlock {
  pthread_mutex_t* pMutex;  ///< The handle record's `mutex`.
  pthread_cond_t* pCond;    ///< The handle record's `cond`.
  /// The handle record's `bSignalled`; `bDummyThreadSignalled` once the handle has been closed.
  int32_t* pbSignalled;
  TivThreadRoutine pfnStart;  ///< The thread's routine.
  void* pParam;               ///< The argument of `pfnStart`.
} TivThreadStartBlock;

/// Starts a thread. The handle belongs to the caller until tivCloseHandle().
///
/// \param lpThreadAttributes ignored.
/// \param dwStackSize ignored: the stack has the system's default size.
/// \param lpStartAddress the routine.
/// \param lpParameter its argument.
/// \param dwCreationFlags ignored: a thread always starts running.
/// \param lpThreadId may be null; receives 0, never an id.
/// \return the handle; TIV_INVALID_HANDLE with `nErrno` 22 (null `lpStartAddress`) or 12 (no memory
///   for the handle), and with `nErrno` as it was when there is no memory for the start block or a
///   pthread call fails. Nothing is left behind then.
ZEBCOMN_EXPORT HANDLE tivBeginThread(void* lpThreadAttributes, DWORD dwStackSize,
                                     TivThreadRoutine lpStartAddress, void* lpParameter,
                                     DWORD dwCreationFlags, DWORD* lpThreadId);

/// As tivBeginThread(), but a failure gives null.
/// \param lpThreadAttributes ignored.
/// \param dwStackSize ignored.
/// \param lpStartAddress the routine.
/// \param lpParameter its argument.
/// \param dwCreationFlags ignored.
/// \param lpThreadId may be null; receives 0.
/// \return the handle, or null, with `nErrno` as tivBeginThread() leaves it.
ZEBCOMN_EXPORT HANDLE tivCreateThread(void* lpThreadAttributes, DWORD dwStackSize,
                                      TivThreadRoutine lpStartAddress, void* lpParameter,
                                      DWORD dwCreationFlags, DWORD* lpThreadId);

/// The entry routine of every thread: runs the routine of a start block and, however the routine is
/// left, tivCleanupThread() after it. Null does nothing.
///
/// \param pStartBlock a `TivThreadStartBlock`; the call takes it over.
/// \return the routine's result.
ZEBCOMN_EXPORT void* tivThreadJuggle(void* pStartBlock);

/// The end of every thread: frees the process's TLS slots, makes the thread's handle signalled and
/// wakes its waiters (or stores 1 in `bDummyThreadSignalled` when the handle has been closed), and
/// frees the start block. Null does nothing.
///
/// A block that a caller has put together may point at any flag, condition and mutex; nothing else
/// is touched, and they must live until the call is over, whatever its waiters do meanwhile.
///
/// \param pStartBlock a `TivThreadStartBlock`; the call takes it over.
ZEBCOMN_EXPORT void tivCleanupThread(void* pStartBlock);

/// A hook for scheduling, called with each new thread's handle. It does nothing on this platform.
/// \param hThread ignored.
ZEBCOMN_EXPORT void set_pthread_sched_param(HANDLE hThread);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_THREAD_H_
