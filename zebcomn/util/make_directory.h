#ifndef ZEBCOMN_UTIL_MAKE_DIRECTORY_H_
#define ZEBCOMN_UTIL_MAKE_DIRECTORY_H_

/// \file
/// Making the directories that lead to a path. C11 and C++17.
///
/// \par Example
/// \include file_helpers.c

#include <stdint.h>
#ifndef __cplusplus
#include <wchar.h>
#endif

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Makes, with mode 0700, every directory that is followed by a "/" in `path`: for the path of a
/// file its parent directories, for a path that ends with "/" all of it.
///
/// A "/" among the first four bytes makes nothing, so a first component of up to two bytes, such as
/// "/mn", is taken to exist. The path is followed for as long as it fits a buffer of 260 bytes:
/// nothing is made from its 260th byte on.
///
/// WARNING: the result is 0x80000008 always, whether or not directories were made, and for a null
/// path. Use `tiFolderExists` to learn what is there.
///
/// \param[in] path  NUL-terminated, only read.
/// \return 0x80000008.
///
/// `nErrno` is left alone. Any number of threads may call.
ZEBCOMN_EXPORT uint32_t tivmcomn_MakeRecursiveDirectoryA(char* path);

/// The same for a wide path. Every character is narrowed to its low eight bits, so only ASCII
/// paths are made as they read; a character is a separator only when it is "/" before that.
/// \param[in] path NUL-terminated, only read.
/// \return 0x80000008.
ZEBCOMN_EXPORT uint32_t tivmcomn_MakeRecursiveDirectoryW(wchar_t* path);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_MAKE_DIRECTORY_H_
