#ifndef ZEBCOMN_UTIL_DELETE_TREE_H_
#define ZEBCOMN_UTIL_DELETE_TREE_H_

/// \file
/// Deleting directories with everything in them. C11 and C++17.
///
/// Rules of the calls here:
///  - What cannot be deleted is left, silently; a null or empty path does nothing.
///  - A symbolic link in the tree is removed itself. No link is ever walked through: not one that
///    is named as the directory, with or without "/" after it, nor one that somebody puts in the
///    place of a directory of the tree meanwhile.
///  - A path of more than 259 bytes is left, and a directory whose path leaves no room for the "/*"
///    of its search is not looked into. Each level takes one of the 50 directory searches of the
///    process (`pDirEntTable`): what lies below the level that gets none is left.
///  - A search that is refused stores its reason in `nErrno`. Any number of threads may call, for
///    trees that have nothing in common.
///
/// \par Example
/// \include file_helpers.c

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Deletes everything in a directory and the directory; a symbolic link to one is removed itself.
/// \param[in] dir  NUL-terminated, only read.
ZEBCOMN_EXPORT void tivmcomn_deltree(char* dir);

/// Deletes everything in a directory and keeps the directory; a symbolic link to one is left alone.
/// \param[in] dir  NUL-terminated, only read.
ZEBCOMN_EXPORT void tivmcomn_delsubtree(char* dir);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_DELETE_TREE_H_
