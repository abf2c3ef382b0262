#include "zebcomn/portable/tls.h"

#include <unistd.h>

#include <cstdlib>

#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/tls_internal.h"

pthread_key_t* pTlsKeyTable[TIV_TLS_SLOT_COUNT];
int32_t nTlsOwnerTable[TIV_TLS_SLOT_COUNT];

uint32_t zebcomn::g_tls_stamps[TIV_TLS_SLOT_COUNT];

namespace {

using zebcomn::HeldMutex;

// Serialises the changes to the tables, and the use of a key in tivTlsSetValue() against its
// deletion: a deleted key may belong to somebody else at once. tivTlsGetValue() takes no lock.
pthread_mutex_t g_slot_mutex = PTHREAD_MUTEX_INITIALIZER;

bool bFirstCall = true;  // Guarded by g_slot_mutex.

// The key in each slot's cell, once more: a reader without the lock must not look into a cell that
// an ending thread may be freeing.
pthread_key_t g_keys[TIV_TLS_SLOT_COUNT];

uint32_t g_last_stamp = 0;  // Guarded by g_slot_mutex.

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
  zebcomn::StoreRelaxed(&zebcomn::g_tls_stamps[slot], 0U);
  const bool deleted = pthread_key_delete(*cell) == 0;
  std::free(cell);
  return deleted;
}

// tivTlsGetValue() without the call.
inline void* GetValue(DWORD slot) {
  if (slot < kCachedSlotCount) {
    const CachedValue& cached = t_cache[slot];
    if (cached.value != nullptr && cached.stamp == zebcomn::TlsStamp(slot)) return cached.value;
  }
  if (IsTaken(slot)) return pthread_getspecific(zebcomn::LoadRelaxed(&g_keys[slot]));
  zebcomn::StoreError(EINVAL);
  return nullptr;
}

}  // namespace

DWORD tivTlsAlloc(void) {
  HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
  ClearTablesOnFirstCall();
  const DWORD slot = FindFreeSlot();
  if (slot == TIV_TLS_SLOT_COUNT) {
    zebcomn::StoreError(EAGAIN);
    return TIV_INVALID_DWORD;
  }
  pthread_key_t* cell = MakeKeyCell();
  if (cell == nullptr) return TIV_INVALID_DWORD;
  zebcomn::StoreRelaxed(&g_keys[slot], *cell);
  zebcomn::StoreRelaxed(&zebcomn::g_tls_stamps[slot], NextStamp());
  zebcomn::StoreRelaxed(&nTlsOwnerTable[slot], static_cast<int32_t>(getpid()));
  zebcomn::StoreRelease(&pTlsKeyTable[slot], cell);
  return slot;
}

BOOL tivTlsFree(DWORD dwTlsIndex) {
  HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
  if (!IsTaken(dwTlsIndex)) {
    zebcomn::StoreError(EINVAL);
    return FALSE;
  }
  return FreeTakenSlot(dwTlsIndex) ? TRUE : FALSE;
}

BOOL tivTlsSetValue(DWORD dwTlsIndex, void* lpTlsValue) {
  HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
  if (!IsTaken(dwTlsIndex)) {
    zebcomn::StoreError(EINVAL);
    return FALSE;
  }
  if (pthread_setspecific(*pTlsKeyTable[dwTlsIndex], lpTlsValue) != 0) return FALSE;
  if (dwTlsIndex < kCachedSlotCount) {
    t_cache[dwTlsIndex] = {zebcomn::TlsStamp(dwTlsIndex), lpTlsValue};
  }
  return TRUE;
}

void* tivTlsGetValue(DWORD dwTlsIndex) {
  return GetValue(dwTlsIndex);
}

void* zebcomn::TlsValueOf(DWORD slot, uint32_t stamp) {
  return GetValue(TlsStamp(slot) == stamp ? slot : TIV_INVALID_DWORD);
}

void zebcomn::FreeOwnTlsSlots() {
  const auto process = static_cast<int32_t>(getpid());
  for (DWORD slot = 0; slot < TIV_TLS_SLOT_COUNT; ++slot) {
    if (!IsTaken(slot)) continue;
    HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
    if (IsTaken(slot) && nTlsOwnerTable[slot] == process) FreeTakenSlot(slot);
  }
}
