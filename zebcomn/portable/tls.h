#ifndef ZEBCOMN_PORTABLE_TLS_H_
#define ZEBCOMN_PORTABLE_TLS_H_

/// \file
/// Thread-local storage: process-wide slots, each with a value per thread. C11 and C++17. Any
/// thread may make any call.
///
/// WARNING: when a thread that tivCreateThread() or tivBeginThread() started ends, every slot that
/// this process has allocated is freed, whoever allocated it. Keep slots only in a process whose
/// threads of this kind never end, or allocate anew.
///
/// \par Example
/// \include threads_and_tls.c

#include <pthread.h>

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// The number of slots; a slot index is 0 .. TIV_TLS_SLOT_COUNT - 1.
#define TIV_TLS_SLOT_COUNT 1024

/// Each slot's key in a cell of its own; null = the slot is free. Cleared by the first
/// tivTlsAlloc(). Only the library writes it; read it atomically where threads end or allocate. Set
/// values with tivTlsSetValue() and not through the key: what a thread has set with it in one of
/// the lowest slots is what that thread goes on reading.
extern ZEBCOMN_EXPORT pthread_key_t* pTlsKeyTable[TIV_TLS_SLOT_COUNT];

/// The id of the process that allocated each slot; 0 = the slot is free. Otherwise as pTlsKeyTable.
extern ZEBCOMN_EXPORT int32_t nTlsOwnerTable[TIV_TLS_SLOT_COUNT];

/// Allocates the lowest free slot. It belongs to the process until tivTlsFree() or the end of a
/// thread as told above. Each thread's value is null at first; no destructor is ever run on a
/// value.
///
/// \return the slot's index; TIV_INVALID_DWORD with `nErrno` 11 (all slots are taken) or 12 (no
///   memory), and with `nErrno` as it was when the system gives no key.
ZEBCOMN_EXPORT DWORD tivTlsAlloc(void);

/// Frees a slot. The values are lost, not freed.
///
/// \param dwTlsIndex the slot's index.
/// \return TRUE; FALSE with `nErrno` 22 for an index out of range or a free slot; FALSE with
///   `nErrno` as it was when the system refuses to delete the key: the slot is free then all the
///   same.
ZEBCOMN_EXPORT BOOL tivTlsFree(DWORD dwTlsIndex);

/// Sets the calling thread's value of a slot.
///
/// \param dwTlsIndex the slot's index.
/// \param lpTlsValue the value; what it points to stays the caller's.
/// \return TRUE; FALSE with `nErrno` 22 for an index out of range or a free slot; FALSE with
///   `nErrno` as it was when the system cannot store the value.
ZEBCOMN_EXPORT BOOL tivTlsSetValue(DWORD dwTlsIndex, void* lpTlsValue);

/// The calling thread's value of a slot; null when it was never set. Null with `nErrno` 22 for an
/// index out of range or a free slot.
/// \param dwTlsIndex the slot's index.
/// \return the value, or null.
ZEBCOMN_EXPORT void* tivTlsGetValue(DWORD dwTlsIndex);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_TLS_H_
