#ifndef ZEBCOMN_UTIL_FILE_COPY_H_
#define ZEBCOMN_UTIL_FILE_COPY_H_

/// \file
/// Copying one file. C11 and C++17.
///
/// \par Example
/// \include file_helpers.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Copies the content of the file `src` to the file `dst`. The directories that lead to `dst` are
/// made as `tivmcomn_MakeRecursiveDirectoryA` makes them. Owner, mode and times are not copied; a
/// new file gets the mode 0666 less the process's file mask.
///
/// \param[in] src        Path of the source, NUL-terminated, only read.
/// \param[in] dst        Path of the destination, NUL-terminated, only read.
/// \param[in] overwrite  0: an existing `dst` is a failure; anything else: it is replaced.
/// \return 1, or 0 for a failure: a null path, a source that cannot be read, a destination that
///         exists and may not be replaced or cannot be written, content that did not reach the
///         destination in full.
///
/// The source is opened first; one that cannot be opened or is a directory leaves the destination
/// as it was, and so does a destination that is the source itself under whatever name. Any other
/// failure can leave part of the content in `dst`.
///
/// Pipes and devices are read and written as they are: a source that is a pipe is waited for until
/// it has had a writer and has none any more, a destination that is a pipe until its reader has
/// made room for all but what the pipe itself holds. Where others can put a pipe in a file's place,
/// look before the call.
///
/// `nErrno` is left alone. Any number of threads may call, with different destinations.
ZEBCOMN_EXPORT BOOL tivmcomn_copy_file(char* src, char* dst, int overwrite);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_FILE_COPY_H_
