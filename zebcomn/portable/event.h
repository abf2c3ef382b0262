#ifndef ZEBCOMN_PORTABLE_EVENT_H_
#define ZEBCOMN_PORTABLE_EVENT_H_

/// \file
/// Manual-reset events. C11 and C++17. The rules of all handles stand in handle.h.
///
/// \par Example
/// \include events_and_waits.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Creates an event that belongs to the caller until tivCloseHandle().
///
/// \param lpEventAttributes ignored.
/// \param bManualReset must be exactly 1: there are no auto-reset events.
/// \param bInitialState 1 = signalled; every other value, also one that is not 0, = not signalled.
/// \param lpName must be null or empty: there are no named events.
/// \return the handle; null with `nErrno` 22 (another `bManualReset`, or a name), 12 (no memory) or
///   16 (the new event could not be set), and null with `nErrno` as it was when a pthread object
///   cannot be initialised.
ZEBCOMN_EXPORT HANDLE tivCreateEvent(void* lpEventAttributes, BOOL bManualReset, BOOL bInitialState,
                                     const char* lpName);

/// Makes the handle signalled and wakes all its waiters. Null and all-ones give FALSE with
/// `nErrno` 22. The type is not looked at: a thread or mutex handle is made signalled just the
/// same.
///
/// \param hEvent an event, or any other live handle.
/// \return TRUE, or FALSE when a pthread call fails.
ZEBCOMN_EXPORT BOOL tivSetEvent(HANDLE hEvent);

/// Makes the handle not signalled; nobody is woken. Null gives FALSE with `nErrno` 22; all-ones is
/// not screened. The type is not looked at.
///
/// \param hEvent an event, or any other live handle.
/// \return TRUE, or FALSE when a pthread call fails.
ZEBCOMN_EXPORT BOOL tivResetEvent(HANDLE hEvent);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_EVENT_H_
