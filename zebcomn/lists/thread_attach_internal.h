#ifndef ZEBCOMN_LISTS_THREAD_ATTACH_INTERNAL_H_
#define ZEBCOMN_LISTS_THREAD_ATTACH_INTERNAL_H_

#include <pthread.h>

#include "zebcomn/lists/thread_attach.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/tls_internal.h"

namespace zebcomn {

/// Held by a granter from the moment when a thread may go on until its event has been set, and by a
/// thread that closes its event: one that was woken by somebody else may get so far in between.
extern pthread_mutex_t g_wake_mutex;

/// The stamp of the allocation that `tiSO_tls_index` stands for. When the slot has another one, the
/// values in it are somebody else's.
extern uint32_t g_identity_stamp;

/// tiSO_DbgGetThread() without the call. The index is a plain object of the interface.
inline uintptr_t StoredIdentity() {
  // The index first: whoever sees it sees the stamp that was stored before it.
  const DWORD slot = LoadAcquire(&tiSO_tls_index);
  return reinterpret_cast<uintptr_t>(TlsValueOf(slot, LoadRelaxed(&g_identity_stamp)));
}

/// tiSO_GetThread() without the calls.
inline uintptr_t OwnIdentity() {
  const uintptr_t stored = StoredIdentity();
  return stored == 0 ? TISO_NO_THREAD : stored;
}

/// The event of the thread that has this identity: an identity is its handle, as a number.
inline HANDLE EventOf(uintptr_t identity) {
  return reinterpret_cast<HANDLE>(identity);
}

}  // namespace zebcomn

#endif  // ZEBCOMN_LISTS_THREAD_ATTACH_INTERNAL_H_
