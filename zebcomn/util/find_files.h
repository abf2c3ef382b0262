#ifndef ZEBCOMN_UTIL_FIND_FILES_H_
#define ZEBCOMN_UTIL_FIND_FILES_H_

/// \file
/// Directory searches and file sizes under the agent's own names. C11 and C++17. The rules of
/// zebcomn/portable/directory_search.h hold for the searches, `nErrno` among them.
///
/// \par Example
/// \include file_helpers.c

#include "zebcomn/export.h"
#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// tivFindFirstDirEnt() with 0 in place of -1.
/// \param[in] pattern As for tivFindFirstDirEnt().
/// \param[out] data As for tivFindFirstDirEnt().
/// \return The search's id, 1 to 50; 0 when nothing was found or the search failed.
ZEBCOMN_EXPORT int32_t tivmcomn_findfirstA(const char* pattern, TivFindData* data);

/// tivFindNextDirEnt().
/// \param[in] search The search's id.
/// \param[out] data Receives the entry.
/// \return As tivFindNextDirEnt().
ZEBCOMN_EXPORT BOOL tivmcomn_findnextA(int32_t search, TivFindData* data);

/// tivFindCloseDirEnt().
/// \param[in] search The search's id.
/// \return As tivFindCloseDirEnt().
ZEBCOMN_EXPORT BOOL tivmcomn_findclose(int32_t search);

/// The size of a file.
///
/// \param[in]  path  NUL-terminated, only read. A symbolic link is followed.
/// \param[out] size  Receives the low 32 bits of the size; 0 when the path cannot be measured.
/// \return 0, or 0x80000008 when the path cannot be measured or an argument is null. `nErrno` is
///   left alone.
ZEBCOMN_EXPORT uint32_t tivmcomn_get_file_sizeA(char* path, unsigned int* size);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_FIND_FILES_H_
