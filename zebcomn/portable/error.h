#ifndef ZEBCOMN_PORTABLE_ERROR_H_
#define ZEBCOMN_PORTABLE_ERROR_H_

/// \file
/// The error slot of the portability layer and the Windows-style last error. C11 and C++17.
///
/// \par Example
/// \include events_and_waits.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// The process-wide error slot, initially 0. A call of the portability layer that fails for a known
/// reason stores a C `errno` number here: 22 (a refused argument), 12 (no memory), 16 (a lock or an
/// event that could not be had), 11 (a full table). Success leaves it alone.
///
/// It is one slot for all threads: a concurrent failure overwrites it. The library accesses it
/// atomically; a caller that reads it while other threads use the library should do so too.
extern ZEBCOMN_EXPORT int32_t nErrno;

/// The calling thread's C `errno`, mapped to a Windows-style code. `nErrno` is not looked at.
///
/// | `errno`                       | result     |
/// |-------------------------------|------------|
/// | 0                             | 0          |
/// | 2, 5, 6, 37, 61               | 38         |
/// | 3, 4, 9, 19                   | 126        |
/// | 7, 12, 23, 24, 27, 28, 31     | 259        |
/// | 11, 16, 26, 35                | 997        |
/// | 13                            | 5          |
/// | 22, 25                        | 1010       |
/// | 30                            | 19         |
/// | anything else                 | 0x80000008 |
///
/// The codes are the agent's own: several of them mean something else on Windows.
/// \return the code from the table.
ZEBCOMN_EXPORT DWORD tivGetLastError(void);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_ERROR_H_
