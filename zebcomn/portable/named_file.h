#ifndef ZEBCOMN_PORTABLE_NAMED_FILE_H_
#define ZEBCOMN_PORTABLE_NAMED_FILE_H_

/// \file
/// Windows-style calls on files by name. C11 and C++17. `nErrno` is left alone by all of them; any
/// number of threads may call.
///
/// \par Example
/// \include files_and_search.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Makes a new empty file with a name of its own, which stays on disk.
///
/// \param[in]  lpPathName      The directory, NUL-terminated.
/// \param[in]  lpPrefixString  What the name begins with; may be null.
/// \param[in]  uUnique         Only decides the result; it is no part of the name.
/// \param[out] lpTempFileName  Receives the path: the directory, "/", the prefix and six more
///                             characters. The caller provides at least strlen(directory) +
///                             strlen(prefix) + 8 bytes; the copy is not limited. Untouched on
///                             failure.
/// \return `uUnique`, or 1 when that is 0; 0 for failure: the directory or the buffer is null, the
///   file cannot be made, no memory.
ZEBCOMN_EXPORT UINT tivGetTempFileName(const char* lpPathName, const char* lpPrefixString,
                                       UINT uUnique, char* lpTempFileName);

/// tivmcomn_copy_file() with the opposite flag.
/// \param[in] lpExistingFileName Path of the source.
/// \param[in] lpNewFileName Path of the destination.
/// \param[in] bFailIfExists  0 lets an existing destination be replaced; anything else forbids it.
/// \return TRUE or FALSE, as tivmcomn_copy_file() gives 1 or 0.
ZEBCOMN_EXPORT BOOL tivCopyFile(const char* lpExistingFileName, const char* lpNewFileName,
                                BOOL bFailIfExists);

/// Renames a file or a directory; an existing file of the new name is replaced.
/// \param[in] lpExistingFileName The old path.
/// \param[in] lpNewFileName The new path, in the same file system.
/// \return TRUE; FALSE when that fails (the reason is in the C `errno`) or a name is null.
ZEBCOMN_EXPORT BOOL tivMoveFile(const char* lpExistingFileName, const char* lpNewFileName);

/// Does nothing: there are no such attributes here.
/// \param lpFileName Ignored.
/// \param dwFileAttributes Ignored.
/// \return TRUE, for every name.
ZEBCOMN_EXPORT BOOL tivSetFileAttributes(const char* lpFileName, DWORD dwFileAttributes);

/// Files here carry no version resource.
/// \param lptstrFilename Ignored.
/// \param dwHandle Ignored.
/// \param dwLen Ignored.
/// \param lpData Ignored.
/// \return 0, for every argument; `lpData` is left alone.
ZEBCOMN_EXPORT BOOL tivGetFileVersionInfo(const char* lptstrFilename, DWORD dwHandle, DWORD dwLen,
                                          void* lpData);

/// A query of a version resource, of which there are none.
/// \param pBlock Ignored.
/// \param lpSubBlock Ignored.
/// \param lplpBuffer Ignored.
/// \param puLen Ignored.
/// \return 0, for every argument; `lplpBuffer` and `puLen` are left alone.
ZEBCOMN_EXPORT BOOL tivVerQueryValue(const void* pBlock, const char* lpSubBlock, void** lplpBuffer,
                                     UINT* puLen);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_NAMED_FILE_H_
