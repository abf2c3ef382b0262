#ifndef ZEBCOMN_PORTABLE_WAIT_H_
#define ZEBCOMN_PORTABLE_WAIT_H_

/// \file
/// Waits on event, thread and mutex handles. C11 and C++17. The rules of all handles stand in
/// handle.h. A wait blocks its own thread only, changes no signal mask and, where it sleeps, is a
/// cancellation point; a cancelled wait leaves the handle usable.
///
/// \par Example
/// \include events_and_waits.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

// The results of a wait.
#define TIV_WAIT_FAILED ((DWORD)0)     ///< A refused argument or a failing pthread call.
#define TIV_WAIT_RESERVED ((DWORD)1)   ///< Never given by a single wait.
#define TIV_WAIT_SIGNALLED ((DWORD)2)  ///< Signalled; of several handles: 2 + the handle's index.
#define TIV_WAIT_TIMEOUT ((DWORD)3)    ///< The time-out passed.

/// The time-out of a single wait without limit.
#define TIV_WAIT_INFINITE TIV_INVALID_DWORD

/// Waits until a handle is signalled: an event that is set, a thread that has ended, a mutex that
/// is free. A wait on an event or a thread changes nothing; a wait on a mutex takes ownership.
/// Whoever is let through by an ended thread sees everything that the thread wrote.
///
/// The deadline is a time of the wall clock, so setting the clock moves it. The handle is waited
/// for once: any wake-up counts as signalled, and the state is not looked at again.
///
/// WARNING: the milliseconds are added to the clock's nanoseconds without a carry into the seconds.
/// When the sum reaches a full second, the wait fails with TIV_WAIT_FAILED at once. 1500 ms at a
/// moment past the half of a second is such a wait; multiples of 1000 ms never are.
///
/// \param hHandle an event, a thread or a mutex.
/// \param dwMilliseconds the time-out in milliseconds; 0 asks without waiting; TIV_WAIT_INFINITE
///   waits without limit.
/// \return TIV_WAIT_SIGNALLED, TIV_WAIT_TIMEOUT or TIV_WAIT_FAILED. A null handle, a file
///   handle and a record of unknown type give TIV_WAIT_FAILED with `nErrno` 22; all-ones is not
///   screened. When the clock cannot be read the record's lock stays locked.
ZEBCOMN_EXPORT DWORD tivWaitForSingleObject(HANDLE hHandle, DWORD dwMilliseconds);

/// Waits until one of several handles is signalled, by waiting 10 ms for one after the other,
/// beginning with the first. The first one found signalled wins.
///
/// Each of these waits counts 10 ms, however long it took. A time-out of 0 therefore looks at no
/// handle, and 0xFFFFFFFF is a count like any other which the count of elapsed time never reaches.
/// Any single wait may fail as told above, in the last 10 ms of a second.
///
/// \param nCount the number of handles; with 0 the first handle is looked at all the same.
/// \param lpHandles the handles; at least one.
/// \param bWaitAll must be 0: waiting for all of them is not supported.
/// \param dwMilliseconds the time-out in milliseconds.
/// \return 2 + the index of the signalled handle, so that the second handle gives the same
///   number as the time-out does; TIV_WAIT_TIMEOUT; TIV_WAIT_FAILED for a `bWaitAll` that is not 0
///   (`nErrno` as it was), for null `lpHandles` (`nErrno` 22), and as soon as one single wait
///   fails.
ZEBCOMN_EXPORT DWORD tivWaitForMultipleObjects(DWORD nCount, const HANDLE* lpHandles, BOOL bWaitAll,
                                               DWORD dwMilliseconds);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_WAIT_H_
