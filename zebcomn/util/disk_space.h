#ifndef ZEBCOMN_UTIL_DISK_SPACE_H_
#define ZEBCOMN_UTIL_DISK_SPACE_H_

/// \file
/// The free space of a file system. C11 and C++17.
///
/// \par Example
/// \include file_helpers.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Measures the file system that holds `path`.
///
/// WARNING: the number is neither bytes nor kilobytes: it is the bytes that an ordinary user may
/// still take, times 1000, in 32-bit arithmetic that wraps. Its high 32 bits are always 0. Do not
/// compare it with a size; ask `statvfs` for one.
///
/// \param[in]  path       Any path in the file system, NUL-terminated, only read.
/// \param[out] freeSpace  Receives the number. Untouched on failure.
/// \return 0, or 0x80000008 when the path cannot be measured or an argument is null.
///
/// `nErrno` is left alone. Any number of threads may call.
ZEBCOMN_EXPORT uint32_t tivmcomn_get_disk_free_spaceA(char* path, ULONGLONG* freeSpace);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_DISK_SPACE_H_
