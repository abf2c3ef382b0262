#ifndef ZEBCOMN_PORTABLE_INTERLOCKED_H_
#define ZEBCOMN_PORTABLE_INTERLOCKED_H_

/// \file
/// Counters under process-wide locks. C11 and C++17. Any thread may make any call.
///
/// Increments and decrements are serialised by one lock, exchanges by another: an exchange and an
/// increment of the same variable may take place at the same time, and one of the two may then be
/// lost. A null variable gives 0 with `nErrno` 22.
///
/// \par Example
/// \include threads_and_tls.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Adds 1, wrapping. The result is read after the lock has been given back, so it may already hold
/// another thread's change.
/// \param lpAddend the variable.
/// \return the variable's new value; 0 for null.
ZEBCOMN_EXPORT LONG tivInterlockedIncrement(LONG* lpAddend);

/// Subtracts 1, wrapping. The result is read as that of tivInterlockedIncrement().
/// \param lpAddend the variable.
/// \return the variable's new value; 0 for null.
ZEBCOMN_EXPORT LONG tivInterlockedDecrement(LONG* lpAddend);

/// Stores `lValue` and returns the value that it replaced.
/// \param lpTarget the variable.
/// \param lValue the new value.
/// \return the old value; 0 for null.
ZEBCOMN_EXPORT LONG tivInterlockedExchange(LONG* lpTarget, LONG lValue);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_INTERLOCKED_H_
