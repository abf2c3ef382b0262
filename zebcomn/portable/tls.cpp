#include "zebcomn/portable/tls.h"

#include <unistd.h>

#include <cstdlib>

#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/tls_internal.h"

pthread_key_t* pTlsKeyTable[TIV_TLS_SLOT_COUNT];
int32_t nTlsOwnerTable[TIV_TLS_SLOT_COUNT];

zebcomn::TlsSlot zebcomn::g_tls_slots[TIV_TLS_SLOT_COUNT];

namespace {

using zebcomn::g_tls_slots;
using zebcomn::HeldMutex;
using zebcomn::TlsSlot;

// Serialises the changes to the tables. tivTlsSetValue() and tivTlsGetValue() take no lock.
pthread_mutex_t g_slot_mutex = PTHREAD_MUTEX_INITIALIZER;

bool bFirstCall = true;  // Guarded by g_slot_mutex.

uint32_t g_last_stamp = 0;  // Guarded by g_slot_mutex.

// No slot from here on has ever been taken: the end of a thread need not look at them.
DWORD g_slots_end = 0;

// What the thread has set itself in the lowest slots, the ones that everybody uses. A read that
// finds its slot's stamp here costs no call of the C library. Nothing is ever set with stamp 0.
struct CachedValue {
  uint32_t stamp;
  void* value;
};
constexpr DWORD kCachedSlotCount = 16;
thread_local CachedValue t_cache[kCachedSlotCount] __attribute__((tls_model("initial-exec")));

uint32_t NextStamp() {
  if (++g_last_stamp == 0) ++g_last_stamp;
  return g_last_stamp;
}

// Whether the slot is allocated; safe without the lock.
bool IsTaken(DWORD slot) {
  return __builtin_expect(slot < TIV_TLS_SLOT_COUNT, 1) &&
         __builtin_expect(zebcomn::LoadAcquire(&pTlsKeyTable[slot]) != nullptr, 1);
}

void ClearTablesOnFirstCall() {
  if (!bFirstCall) return;
  bFirstCall = false;
  for (DWORD slot = 0; slot < TIV_TLS_SLOT_COUNT; ++slot) {
    zebcomn::StoreRelaxed(&pTlsKeyTable[slot], static_cast<pthread_key_t*>(nullptr));
    zebcomn::StoreRelaxed(&nTlsOwnerTable[slot], 0);
  }
}

// The lowest free slot; TIV_TLS_SLOT_COUNT when there is none.
DWORD FindFreeSlot() {
  DWORD slot = 0;
  while (slot < TIV_TLS_SLOT_COUNT && IsTaken(slot)) ++slot;
  return slot;
}

// A heap cell with a new key; null when either cannot be had.
pthread_key_t* MakeKeyCell() {
  auto* cell = static_cast<pthread_key_t*>(std::malloc(sizeof(pthread_key_t)));
  if (cell == nullptr) {
    zebcomn::StoreError(ENOMEM);
    return nullptr;
  }
  if (pthread_key_create(cell, nullptr) == 0) return cell;
  std::free(cell);
  return nullptr;
}

// Frees an allocated slot; whether its key could be deleted. The caller holds g_slot_mutex.
bool FreeTakenSlot(DWORD slot) {
  pthread_key_t* cell = pTlsKeyTable[slot];
  zebcomn::StoreRelaxed(&pTlsKeyTable[slot], static_cast<pthread_key_t*>(nullptr));
  zebcomn::StoreRelaxed(&nTlsOwnerTable[slot], 0);
  zebcomn::StoreRelaxed(&g_tls_slots[slot].stamp, 0U);
  // The C library's deletion orders nothing before it; tivTlsSetValue() has the other half.
  zebcomn::ReleaseFence();
  const bool deleted = pthread_key_delete(*cell) == 0;
  std::free(cell);
  return deleted;
}

[[gnu::cold]] BOOL RefuseSlot() {
  zebcomn::StoreError(EINVAL);
  return FALSE;
}

// The system cannot store the value: what was there before stays, so the copy must not be read.
[[gnu::cold]] BOOL ForgetCopy(const TlsSlot* slot) {
  const auto index = static_cast<DWORD>(slot - g_tls_slots);
  if (index < kCachedSlotCount) t_cache[index] = {};
  return FALSE;
}

// The slot has been freed while the value was being set: its key may have been deleted before that
// and be somebody else's by now. The thread cannot have given the other one's key a value yet.
[[gnu::cold]] BOOL TakeBackValue(pthread_key_t key) {
  pthread_setspecific(key, nullptr);
  return RefuseSlot();
}

// Sets the thread's value in the allocation of a slot that has this stamp, or refuses.
inline BOOL SetValue(DWORD index, uint32_t stamp, void* value) {
  const TlsSlot* slot = &g_tls_slots[index];
  const pthread_key_t key = zebcomn::LoadRelaxed(&slot->key);
  if (index < kCachedSlotCount) t_cache[index] = {stamp, value};
  if (__builtin_expect(pthread_setspecific(key, value) != 0, 0)) return ForgetCopy(slot);
  // After the set: whoever deletes a key takes its stamp away first.
  zebcomn::AcquireFence();
  if (__builtin_expect(zebcomn::LoadRelaxed(&slot->stamp) != stamp, 0)) return TakeBackValue(key);
  return TRUE;
}

// tivTlsGetValue() without the call.
inline void* GetValue(DWORD slot) {
  if (slot < kCachedSlotCount) {
    const CachedValue& cached = t_cache[slot];
    if (cached.value != nullptr && cached.stamp == zebcomn::TlsStamp(slot)) return cached.value;
  }
  if (IsTaken(slot)) return pthread_getspecific(zebcomn::LoadRelaxed(&g_tls_slots[slot].key));
  zebcomn::StoreError(EINVAL);
  return nullptr;
}

}  // namespace

DWORD zebcomn::AllocateTlsSlot(uint32_t& stamp) {
  stamp = 0;
  HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
  ClearTablesOnFirstCall();
  const DWORD slot = FindFreeSlot();
  if (slot == TIV_TLS_SLOT_COUNT) {
    zebcomn::StoreError(EAGAIN);
    return TIV_INVALID_DWORD;
  }
  pthread_key_t* cell = MakeKeyCell();
  if (cell == nullptr) return TIV_INVALID_DWORD;
  // Released: a tivTlsSetValue() that has begun in the slot's last allocation may see this key, and
  // must then see that the stamp is another.
  zebcomn::StoreRelease(&g_tls_slots[slot].key, *cell);
  stamp = NextStamp();
  zebcomn::StoreRelease(&g_tls_slots[slot].stamp, stamp);
  if (slot >= g_slots_end) zebcomn::StoreRelease(&g_slots_end, slot + 1);
  zebcomn::StoreRelaxed(&nTlsOwnerTable[slot], static_cast<int32_t>(getpid()));
  zebcomn::StoreRelease(&pTlsKeyTable[slot], cell);
  return slot;
}

DWORD tivTlsAlloc(void) {
  uint32_t unused = 0;
  return zebcomn::AllocateTlsSlot(unused);
}

BOOL tivTlsFree(DWORD dwTlsIndex) {
  HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
  if (!IsTaken(dwTlsIndex)) return RefuseSlot();
  return FreeTakenSlot(dwTlsIndex) ? TRUE : FALSE;
}

BOOL tivTlsSetValue(DWORD dwTlsIndex, void* lpTlsValue) {
  const uint32_t stamp = zebcomn::TlsStamp(dwTlsIndex);
  return __builtin_expect(stamp != 0, 1) ? SetValue(dwTlsIndex, stamp, lpTlsValue) : RefuseSlot();
}

void* tivTlsGetValue(DWORD dwTlsIndex) {
  return GetValue(dwTlsIndex);
}

void* zebcomn::TlsValueOf(DWORD slot, uint32_t stamp) {
  return GetValue(TlsStamp(slot) == stamp ? slot : TIV_INVALID_DWORD);
}

BOOL zebcomn::SetTlsValueOf(DWORD slot, uint32_t stamp, void* value) {
  return stamp != 0 && TlsStamp(slot) == stamp ? SetValue(slot, stamp, value) : RefuseSlot();
}

BOOL zebcomn::FreeTlsSlotOf(DWORD slot, uint32_t stamp) {
  HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
  if (stamp == 0 || TlsStamp(slot) != stamp) return RefuseSlot();
  return FreeTakenSlot(slot) ? TRUE : FALSE;
}

void zebcomn::FreeOwnTlsSlots() {
  const DWORD end = zebcomn::LoadAcquire(&g_slots_end);
  for (DWORD slot = 0; slot < end; ++slot) {
    if (!IsTaken(slot)) continue;
    HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
    if (IsTaken(slot) && nTlsOwnerTable[slot] == static_cast<int32_t>(getpid())) {
      FreeTakenSlot(slot);
    }
  }
}
