#ifndef ZEBCOMN_PORTABLE_GUID_H_
#define ZEBCOMN_PORTABLE_GUID_H_

/// \file
/// Time-based GUIDs: version 1, 16 bytes in big-endian order, and their text form. C11 and C++17.
/// `nErrno` is left alone.
///
/// \par Example
/// \include numbers_guids_clocks.c

#include <stdint.h>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Makes a GUID of the current time.
///
/// Only the process's first GUID holds the host's hardware address (the first one that is not all
/// zero; random bytes with the top bit set when there is none). In every later GUID the last six
/// bytes are zero, and two made in the same microsecond are equal: do not rely on uniqueness across
/// hosts or within a microsecond. While the clock stands more than a second before the first call,
/// each call changes the sequence number. Any number of threads may call; they share one state,
/// under one mutex.
///
/// \param[out] guid  Receives 16 bytes.
/// \return `guid`; null for null.
ZEBCOMN_EXPORT uint8_t* tivCoCreateGuid(uint8_t* guid);

/// The text form of a GUID, such as "00010203-0405-0607-0809-0a0b0c0d0e0f".
/// \param[in]  guid    16 bytes, not aligned.
/// \param[out] buffer  Receives 36 characters, lower case, and a NUL: 37 bytes.
/// \return `buffer`; null for a null argument.
ZEBCOMN_EXPORT char* tivUuidToStringA(const uint8_t* guid, char* buffer);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_GUID_H_
