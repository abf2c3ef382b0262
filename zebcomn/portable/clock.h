#ifndef ZEBCOMN_PORTABLE_CLOCK_H_
#define ZEBCOMN_PORTABLE_CLOCK_H_

/// \file
/// The tick count and the wall clock. C11 and C++17. Any number of threads may call; `nErrno` is
/// left alone.
///
/// \par Example
/// \include numbers_guids_clocks.c

#include <stdint.h>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// A moment of local time. The field order is fixed.
typedef struct TivSystemTime {
  uint16_t wYear;          ///< All four digits; from 65536 on it wraps.
  uint16_t wMonth;         ///< 1 to 12.
  uint16_t wDayOfWeek;     ///< 0 is Sunday.
  uint16_t wDay;           ///< 1 to 31.
  uint16_t wHour;          ///< 0 to 23.
  uint16_t wMinute;        ///< 0 to 59.
  uint16_t wSecond;        ///< 0 to 60.
  uint16_t wMilliseconds;  ///< Always 0.
} TivSystemTime;

/// Milliseconds since an arbitrary start, at the pace of the kernel's clock ticks. Computed in
/// signed 32-bit arithmetic whose product wraps: between two wraps differences hold, across one
/// they do not. 0 when the length of a tick cannot be learnt.
/// \return the milliseconds.
ZEBCOMN_EXPORT uint32_t tivGetTickCount(void);

/// Fills `*time` with the current *local* time, despite its name. A null record is left alone; a
/// moment that cannot be broken down gives a record of zeros. No lock is taken: `zebcomn_timegm` in
/// another thread can make the time come out in UTC.
/// \param[out] time Receives the time; may be null.
ZEBCOMN_EXPORT void tivGetSystemTime(TivSystemTime* time);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_CLOCK_H_
