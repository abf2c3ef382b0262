#include "zebcomn/portable/tls.h"

#include <unistd.h>

#include <cstdlib>

#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/tls_internal.h"

pthread_key_t* pTlsKeyTable[TIV_TLS_SLOT_COUNT];
int32_t nTlsOwnerTable[TIV_TLS_SLOT_COUNT];

namespace {

using zebcomn::HeldMutex;

// Serialises the changes to the tables, and the use of a key in tivTlsSetValue() against its
// deletion: a deleted key may belong to somebody else at once. tivTlsGetValue() takes no lock.
pthread_mutex_t g_slot_mutex = PTHREAD_MUTEX_INITIALIZER;

bool bFirstCall = true;  // Guarded by g_slot_mutex.

// The key in each slot's cell, once more: a reader without the lock must not look into a cell that
// an ending thread may be freeing.
pthread_key_t g_keys[TIV_TLS_SLOT_COUNT];

// Whether the slot is allocated; safe without the lock.
bool IsTaken(DWORD slot) {
  return slot < TIV_TLS_SLOT_COUNT && zebcomn::LoadAcquire(&pTlsKeyTable[slot]) != nullptr;
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
  const bool deleted = pthread_key_delete(*cell) == 0;
  std::free(cell);
  return deleted;
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
  return pthread_setspecific(*pTlsKeyTable[dwTlsIndex], lpTlsValue) == 0 ? TRUE : FALSE;
}

void* tivTlsGetValue(DWORD dwTlsIndex) {
  if (!IsTaken(dwTlsIndex)) {
    zebcomn::StoreError(EINVAL);
    return nullptr;
  }
  return pthread_getspecific(zebcomn::LoadRelaxed(&g_keys[dwTlsIndex]));
}

void zebcomn::FreeOwnTlsSlots() {
  const auto process = static_cast<int32_t>(getpid());
  for (DWORD slot = 0; slot < TIV_TLS_SLOT_COUNT; ++slot) {
    if (!IsTaken(slot)) continue;
    HeldMutex lock(g_slot_mutex, HeldMutex::Insist{});
    if (IsTaken(slot) && nTlsOwnerTable[slot] == process) FreeTakenSlot(slot);
  }
}
