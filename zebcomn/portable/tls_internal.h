#ifndef ZEBCOMN_PORTABLE_TLS_INTERNAL_H_
#define ZEBCOMN_PORTABLE_TLS_INTERNAL_H_

#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/tls.h"

namespace zebcomn {

/// One allocation of a slot. No two allocations have the same stamp; 0 = the slot is free. The key
/// is the one in the slot's cell: a reader without the lock must not look into a cell that an
/// ending thread may be freeing.
struct TlsSlot {
  uint32_t stamp;
  pthread_key_t key;
};
extern TlsSlot g_tls_slots[TIV_TLS_SLOT_COUNT];

/// Tells the allocations of one slot apart. 0 for a free slot and for an index out of range.
inline uint32_t TlsStamp(DWORD slot) {
  return __builtin_expect(slot < TIV_TLS_SLOT_COUNT, 1) ? LoadAcquire(&g_tls_slots[slot].stamp) : 0;
}

/// tivTlsAlloc(), which also gives the stamp of the allocation, 0 on failure. Asked for afterwards,
/// it may be that of somebody else's allocation, because the end of a thread frees every slot.
DWORD AllocateTlsSlot(uint32_t& stamp);

/// tivTlsGetValue(), tivTlsSetValue() and tivTlsFree(), which refuse the slot also when its
/// allocation has not this stamp any more: another's is left alone.
void* TlsValueOf(DWORD slot, uint32_t stamp);
BOOL SetTlsValueOf(DWORD slot, uint32_t stamp, void* value);
BOOL FreeTlsSlotOf(DWORD slot, uint32_t stamp);

/// Frees every slot that this process has allocated.
void FreeOwnTlsSlots();

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_TLS_INTERNAL_H_
