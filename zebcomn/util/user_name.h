#ifndef ZEBCOMN_UTIL_USER_NAME_H_
#define ZEBCOMN_UTIL_USER_NAME_H_

/// \file
/// The name of the user that the process runs for. C11 and C++17.
///
/// \par Example
/// \include file_helpers.c

#include <stdint.h>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Copies the login name of the real user id.
///
/// \param[out] buf   Receives the name and its NUL. Untouched on failure.
/// \param[in]  size  Capacity of `buf` in bytes.
/// \return 0, or 0x80000008 when `buf` is null, the user id has no password entry, the name with
///         its NUL is longer than `size`, or there is no memory.
///
/// `nErrno` is left alone. Any number of threads may call.
ZEBCOMN_EXPORT uint32_t tivmcomn_get_user_name(char* buf, unsigned int size);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_USER_NAME_H_
