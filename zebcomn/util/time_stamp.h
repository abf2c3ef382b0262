#ifndef ZEBCOMN_UTIL_TIME_STAMP_H_
#define ZEBCOMN_UTIL_TIME_STAMP_H_

/// \file
/// Text forms of the current time, to the second.
///
/// - The compact form is year, month, day, hour, minute, second without separators, such as
///   "20240131235959": 14 characters, the year padded with zeros to four digits.
/// - The readable form is "2024-01-31 23:59:59": 19 characters, the year padded with blanks.
///
/// A null buffer, or a size of 0, is left alone. A moment that the C library cannot break down
/// gives the empty text. `nErrno` is left alone. Any number of threads may call; the compact stamps
/// take no lock, so a `zebcomn_timegm` in another thread can make a local stamp come out in UTC.

#include <string>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Compact stamps into a buffer of `size` bytes, cut to `size` - 1 characters and always
/// terminated. Both give *local* time: the narrow "GMT" stamp is the same as the local one. For UTC
/// take the wide form.
ZEBCOMN_EXPORT void tivmcomn_CreateGmtTimeStampA(char* out, unsigned int size);
ZEBCOMN_EXPORT void tivmcomn_CreateLocalTimeStampA(char* out, unsigned int size);

/// Compact stamps into a buffer of `size` wide characters, in UTC and in local time. The rest of
/// the buffer is filled with NULs; a `size` of 14 or less leaves the text *not terminated*.
ZEBCOMN_EXPORT void tivmcomn_CreateGmtTimeStampW(wchar_t* out, unsigned int size);
ZEBCOMN_EXPORT void tivmcomn_CreateLocalTimeStampW(wchar_t* out, unsigned int size);

ZEBCOMN_END_C

namespace quenty_com::pelu {

/// The readable stamp in local time.
ZEBCOMN_EXPORT std::string tivmcomn_get_time_stamp_ansi();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_time_stamp_wide();

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_TIME_STAMP_H_
