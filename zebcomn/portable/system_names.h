#ifndef ZEBCOMN_PORTABLE_SYSTEM_NAMES_H_
#define ZEBCOMN_PORTABLE_SYSTEM_NAMES_H_

/// \file
/// Names of the system that Windows-shaped callers ask for, and two stubs. C11 and C++17. Any
/// number of threads may call; `nErrno` is left alone.
///
/// \par Example
/// \include numbers_guids_clocks.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// The fixed directory "/opt".
/// \param[out] buffer  Receives the text; the rest of the buffer is filled with NULs.
/// \param[in]  length  Capacity of `buffer` in bytes, NUL included.
/// \return The length of the text, without its NUL; when `length` is too small the capacity that
///         is needed, and then nothing is written; 0 for a null buffer that would have been large
///         enough.
ZEBCOMN_EXPORT UINT tivGetWindowsDirectory(char* buffer, UINT length);
/// The fixed directory "/usr".
/// \param[out] buffer As for tivGetWindowsDirectory().
/// \param[in] length As for tivGetWindowsDirectory().
/// \return As for tivGetWindowsDirectory().
ZEBCOMN_EXPORT UINT tivGetSystemDirectory(char* buffer, UINT length);

/// The host's node name.
/// \param[out]    buffer  Receives the name and its NUL.
/// \param[in,out] size    Capacity of `buffer` in bytes, NUL included; on success the length of the
///                        name without its NUL, otherwise unchanged.
/// \return TRUE; FALSE for a null argument, a buffer too small (nothing is written) or a host that
///         does not tell its name.
ZEBCOMN_EXPORT BOOL tivGetComputerName(char* buffer, DWORD* size);

/// Always TRUE: there is no message to translate.
/// \param message Ignored.
/// \return TRUE.
ZEBCOMN_EXPORT BOOL tivTranslateMessage(const void* message);

/// Always 0: no name is produced, and the arguments are ignored.
/// \param handle Ignored.
/// \param buffer Ignored.
/// \param size Ignored.
/// \return 0.
ZEBCOMN_EXPORT DWORD tivGetModuleFileName(HANDLE handle, char* buffer, DWORD size);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_SYSTEM_NAMES_H_
