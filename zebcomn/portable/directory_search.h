#ifndef ZEBCOMN_PORTABLE_DIRECTORY_SEARCH_H_
#define ZEBCOMN_PORTABLE_DIRECTORY_SEARCH_H_

/// \file
/// Searching a directory for names that match a pattern. C11 and C++17.
///
/// Rules of the calls here:
///  - A search is named by its id, 1 to 50: its place in `pDirEntTable`, counted from 1. It belongs
///    to the caller of tivFindFirstDirEnt() until tivFindCloseDirEnt().
///  - Any number of threads may search at once; one search is for one thread at a time.
///  - A null argument is refused with 22 in `nErrno`.
///  - "." and ".." are entries like any other. The order is that of the file system.
///
/// \par Example
/// \include files_and_search.c

#include <dirent.h>

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

enum {
  TIV_SEARCH_COUNT = 50,        ///< How many searches can be open at once.
  TIV_ATTRIBUTE_DIRECTORY = 16  ///< The only attribute that an entry can have.
};

/// What a search says of an entry. Where the entry's status cannot be read, only the name is set
/// and all other fields are 0.
typedef struct TivFindData {
  uint32_t attributes;        ///< TIV_ATTRIBUTE_DIRECTORY for a directory or a link to one, or 0.
  uint32_t reserved;          ///< Always 0.
  uint32_t last_access_time;  ///< Seconds since 1970, the low 32 bits.
  uint32_t last_write_time;   ///< Seconds since 1970, the low 32 bits.
  uint32_t size;              ///< Bytes, the low 32 bits.
  char name[ZEBCOMN_PATH_CAPACITY];  ///< The name in its directory, NUL-terminated.
} TivFindData;

/// One open search. Callers may look at it; only the library changes it.
typedef struct TivSearchRecord {
  DIR* stream;                                ///< What `opendir` gave.
  char pattern[ZEBCOMN_PATH_CAPACITY + 1];    ///< Pattern of the names, cut at 260 bytes.
  char directory[ZEBCOMN_PATH_CAPACITY + 1];  ///< With its last "/", cut at 260 bytes; or ".".
} TivSearchRecord;

/// The open searches; a null entry is free. Entries are claimed under `MutexDirEnt` and are
/// otherwise accessed atomically. The first tivFindFirstDirEnt() of the process clears them.
extern ZEBCOMN_EXPORT TivSearchRecord* pDirEntTable[TIV_SEARCH_COUNT];

/// Starts a search and finds its first entry.
///
/// \param[in]  pattern  The directory up to the last "/", and after it the pattern of the names, as
///                      for tivWildCardMatch(): "/tmp/a" finds every name that begins with "a".
///                      Without a "/" the current directory is searched. Each part is cut at 260
///                      bytes.
/// \param[out] data     Receives the first entry. Untouched when there is none.
/// \return The id, or -1: the directory cannot be opened or has no such name (`nErrno` is left
///   alone), there are 50 searches already or no memory (11), `MutexDirEnt` cannot be locked
///   (`nErrno` is left alone), or an argument is null (22).
ZEBCOMN_EXPORT int32_t tivFindFirstDirEnt(const char* pattern, TivFindData* data);

/// Finds the next entry.
///
/// \param[in]  id    An open search.
/// \param[out] data  Receives the entry. Untouched when there is none.
/// \return TRUE; FALSE when no entry is left (`nErrno` is left alone), and for an id that is no
///   open search or a null argument (22).
ZEBCOMN_EXPORT BOOL tivFindNextDirEnt(int32_t id, TivFindData* data);

/// Ends a search.
///
/// \param[in] id An open search.
/// \return TRUE; FALSE when the directory does not close properly (the search has ended all the
///   same, `nErrno` is left alone), and for an id that is no open search (22).
ZEBCOMN_EXPORT BOOL tivFindCloseDirEnt(int32_t id);

/// Fills `data` for one entry of a directory: clears it, sets the name and reads the status of
/// `directory` + name, cut at 259 bytes. A "/" is put between them unless `directory` is empty or
/// ends with one.
///
/// On a 32-bit host `entry` is in the form for large files: a caller that passes an entry of its
/// own is compiled with `_FILE_OFFSET_BITS=64`, as the library is.
///
/// \param[out] data Receives the entry.
/// \param[in] entry The entry; its name is at most 255 bytes, NUL-terminated.
/// \param[in] directory Path of the directory that holds it.
/// \return `data`; null with 22 in `nErrno` when an argument is null.
ZEBCOMN_EXPORT TivFindData* tivSetFindDataDirEnt(TivFindData* data, const struct dirent* entry,
                                                 const char* directory);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_DIRECTORY_SEARCH_H_
