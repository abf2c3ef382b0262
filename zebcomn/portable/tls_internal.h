#ifndef ZEBCOMN_PORTABLE_TLS_INTERNAL_H_
#define ZEBCOMN_PORTABLE_TLS_INTERNAL_H_

#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/tls.h"

namespace zebcomn {

/// The stamp of each slot's allocation; 0 = the slot is free. No two allocations have the same.
extern uint32_t g_tls_stamps[TIV_TLS_SLOT_COUNT];

/// Tells the allocations of one slot apart. 0 for a free slot and for an index out of range.
inline uint32_t TlsStamp(DWORD slot) {
  return slot < TIV_TLS_SLOT_COUNT ? LoadRelaxed(&g_tls_stamps[slot]) : 0;
}

/// tivTlsGetValue(), which refuses the slot also when its allocation has not this stamp any more.
void* TlsValueOf(DWORD slot, uint32_t stamp);

/// Frees every slot that this process has allocated.
void FreeOwnTlsSlots();

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_TLS_INTERNAL_H_
