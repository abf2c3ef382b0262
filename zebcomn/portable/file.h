#ifndef ZEBCOMN_PORTABLE_FILE_H_
#define ZEBCOMN_PORTABLE_FILE_H_

/// \file
/// Windows-style calls on an open file. C11 and C++17.
///
/// Rules of the calls here:
///  - A file handle belongs to the caller of tivCreateFileAW() until tivCloseHandle().
///  - A null handle, and a handle that is not a file's, is refused with 22 in `nErrno`, except by
///    tivSetFilePointer() and tivSetEndOfFile(), which do not test for null.
///  - A system call that fails leaves `nErrno` alone and its reason in the C `errno`, for
///    tivGetLastError().
///  - The calls take no lock: threads may share a handle as they may share a file descriptor.
///
/// \par Example
/// \include files_and_search.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

// Desired access: exactly one of these.
#define TIV_ACCESS_READ ((DWORD)0x80000000u)        ///< To read only.
#define TIV_ACCESS_WRITE ((DWORD)0x40000000u)       ///< To write only.
#define TIV_ACCESS_READ_WRITE ((DWORD)0xC0000000u)  ///< Both.

/// Creation disposition: exactly one of these.
enum {
  TIV_CREATE_NEW = 1,     ///< The file must not exist; it is made.
  TIV_CREATE_ALWAYS = 2,  ///< It is made, or emptied.
  TIV_OPEN_EXISTING = 3,  ///< It must exist.
  TIV_OPEN_ALWAYS = 4     ///< It is made when it does not exist.
};

// Flags and attributes: exactly one of these, or 0, which is the same as normal.
#define TIV_FLAG_NORMAL ((DWORD)0x80u)                 ///< The file stays.
#define TIV_FLAG_DELETE_ON_CLOSE ((DWORD)0x04000000u)  ///< Its path is removed by the close.

/// Opens or makes a file; a new one gets the mode 0660 less the process's file mask. A program that
/// the process starts does not get the file.
///
/// \param[in] path     NUL-terminated.
/// \param[in] dwDesiredAccess        One of TIV_ACCESS_*.
/// \param[in] dwShareMode            Ignored.
/// \param[in] lpSecurityAttributes   Ignored.
/// \param[in] dwCreationDisposition  One of TIV_CREATE_* and TIV_OPEN_*.
/// \param[in] dwFlagsAndAttributes   0, TIV_FLAG_NORMAL, or TIV_FLAG_DELETE_ON_CLOSE: the path is
///                                   removed by tivCloseHandle(). A path of more than 260 bytes is
///                                   not remembered: that close then fails and the file stays.
/// \param[in] hTemplateFile          Ignored.
/// \return The handle; null for an argument that is none of these or a null path (22 in `nErrno`),
///   and when the file cannot be opened or there is no memory (`nErrno` is left alone). With no
///   memory, a file that was just made stays.
ZEBCOMN_EXPORT HANDLE tivCreateFileAW(const char* path, DWORD dwDesiredAccess, DWORD dwShareMode,
                                      void* lpSecurityAttributes, DWORD dwCreationDisposition,
                                      DWORD dwFlagsAndAttributes, HANDLE hTemplateFile);

/// Reads once, up to `nNumberOfBytesToRead` bytes, from the current position. The end of the file
/// is a success with 0 bytes.
///
/// \param[in] hFile The file.
/// \param[out] lpBuffer             Receives the bytes.
/// \param[in] nNumberOfBytesToRead Capacity of `lpBuffer` in bytes.
/// \param[out] lpNumberOfBytesRead  Receives their number. Untouched on failure.
/// \param[in]  lpOverlapped         Ignored.
/// \return TRUE; FALSE when the read fails, and for a refused handle or a null count (22).
ZEBCOMN_EXPORT BOOL tivReadFile(HANDLE hFile, void* lpBuffer, DWORD nNumberOfBytesToRead,
                                DWORD* lpNumberOfBytesRead, void* lpOverlapped);

/// Writes once, up to `nNumberOfBytesToWrite` bytes, at the current position.
///
/// \param[in] hFile The file.
/// \param[in] lpBuffer The bytes.
/// \param[in] nNumberOfBytesToWrite Their number.
/// \param[out] lpNumberOfBytesWritten  Receives how many were written, which can be fewer.
///                                     Untouched on failure.
/// \return TRUE; FALSE when the write fails, and for a refused handle or a null count (22).
ZEBCOMN_EXPORT BOOL tivWriteFile(HANDLE hFile, const void* lpBuffer, DWORD nNumberOfBytesToWrite,
                                 DWORD* lpNumberOfBytesWritten);

/// Moves the current position.
///
/// \param[in] hFile                 REQUIRES: not null; it is not tested.
/// \param[in] lDistanceToMove       Bytes, signed.
/// \param[in] lpDistanceToMoveHigh  Ignored, and left alone.
/// \param[in] dwMoveMethod          0 from the start, 1 from the current position, 2 from the end;
///                                  any other value is the system's to judge.
/// \return The low 32 bits of the new position; -1 on failure (with 22 for a handle that is not a
///   file's). Beyond 2 GiB the position does not fit and can even read as -1.
ZEBCOMN_EXPORT LONG tivSetFilePointer(HANDLE hFile, LONG lDistanceToMove,
                                      LONG* lpDistanceToMoveHigh, DWORD dwMoveMethod);

/// Makes the file end at the current position, shorter or longer than it was.
///
/// \param[in] hFile  REQUIRES: not null; it is not tested.
/// \return TRUE; FALSE on failure (with 22 for a handle that is not a file's).
ZEBCOMN_EXPORT BOOL tivSetEndOfFile(HANDLE hFile);

/// The size of the file.
///
/// WARNING: the high part is the whole size divided by 65535, not the size shifted by 32 bits; a
/// file of 70,000 bytes has the high part 1. A size whose low 32 bits are all ones reads as
/// failure.
///
/// \param[in] hFile The file.
/// \param[out] lpFileSizeHigh  May be null. Receives the size divided by 65535, its low 32 bits.
///                             Untouched on failure.
/// \return The low 32 bits of the size; 0xFFFFFFFF on failure, and for a refused handle (22).
ZEBCOMN_EXPORT DWORD tivGetFileSize(HANDLE hFile, DWORD* lpFileSizeHigh);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_FILE_H_
