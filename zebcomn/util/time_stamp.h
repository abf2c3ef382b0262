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
/// take no lock, so a `zebcomn_timegm` in another thread can make a local stamp come out in UTC. A
/// readable stamp without memory throws std::bad_alloc; where the narrow one could be made, its
/// wide form is empty.
///
/// \par Example
/// \include time_stamps.cpp

#include <string>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// The compact stamp into a buffer of `size` bytes, cut to `size` - 1 characters and always
/// terminated. It is *local* time: the narrow "GMT" stamp is the same as the local one. For UTC
/// take the wide form.
/// \param out Receives the stamp.
/// \param size Capacity of `out` in bytes; 15 hold the whole stamp.
ZEBCOMN_EXPORT void tivmcomn_CreateGmtTimeStampA(char* out, unsigned int size);
/// The same as tivmcomn_CreateGmtTimeStampA().
/// \param out Receives the stamp.
/// \param size Capacity of `out` in bytes; 15 hold the whole stamp.
ZEBCOMN_EXPORT void tivmcomn_CreateLocalTimeStampA(char* out, unsigned int size);

/// The compact stamp in UTC into a buffer of `size` wide characters. The rest of the buffer is
/// filled with NULs; a `size` of 14 or less leaves the text *not terminated*.
/// \param out Receives the stamp.
/// \param size Capacity of `out` in wide characters.
ZEBCOMN_EXPORT void tivmcomn_CreateGmtTimeStampW(wchar_t* out, unsigned int size);
/// As tivmcomn_CreateGmtTimeStampW(), in local time.
/// \param out Receives the stamp.
/// \param size Capacity of `out` in wide characters.
ZEBCOMN_EXPORT void tivmcomn_CreateLocalTimeStampW(wchar_t* out, unsigned int size);

ZEBCOMN_END_C

namespace quenty_com::pelu {

/// The readable stamp in local time.
/// \return The stamp.
ZEBCOMN_EXPORT std::string tivmcomn_get_time_stamp_ansi();
/// The readable stamp in local time, in wide characters.
/// \return The stamp.
ZEBCOMN_EXPORT std::wstring tivmcomn_get_time_stamp_wide();

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_TIME_STAMP_H_
