#ifndef ZEBCOMN_UTIL_PLATFORM_MATCH_H_
#define ZEBCOMN_UTIL_PLATFORM_MATCH_H_

/// \file
/// Whether this machine's platform is among those that a package supports. C11 and C++17.
///
/// A version is three decimal numbers a:b:c, each a signed 32-bit number with optional sign; a
/// larger one counts as the nearest that fits. It compares as the 64-bit number
/// a * 2^32 + b * 2^16 + c, so a part above 65535 carries into the one before it.
///
/// Of each text at most 259 characters count, after every blank has been taken out.
///
/// \par Example
/// \include identity_and_versions.c

#include <stdint.h>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Judges the local platform against a list.
///
/// \param platform       The local name, and optionally ":" and the version, as in "WRLX:4:6:0".
///                       Numbers that are missing are 0.
/// \param supportedList  Entries with "|" between them, the first match wins; empty ones are passed
///                       over. An entry is a name, and optionally ":" and a range: a low version,
///                       or a low and a high version with "-" between them, both inclusive, as in
///                       "WRLX:4:0:0-4:9:9".
///                       - The name matches wherever it occurs in `platform`, its version included;
///                         the case counts. An empty name matches everything.
///                       - A name without ":" supports every version.
///                       - A number that a range leaves out is the one that an earlier entry with a
///                         matching name gave, and the widest bound when none did.
/// \retval 0           An entry matches, name and version.
/// \retval 1           A name matches, but no range holds the version.
/// \retval 0x80000008  No name matches, or an argument is null.
///
/// `nErrno` is left alone. Any number of threads may call.
ZEBCOMN_EXPORT uint32_t tivmcomn_IsPlatformMatch(const char* platform, const char* supportedList);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_PLATFORM_MATCH_H_
