#include "zebcomn/lists/thread_attach.h"

#include "zebcomn/lists/thread_attach_internal.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/tls.h"

DWORD tiSO_tls_index = TIV_INVALID_DWORD;

pthread_mutex_t zebcomn::g_wake_mutex = PTHREAD_MUTEX_INITIALIZER;
uint32_t zebcomn::g_identity_stamp = 0;

using zebcomn::HeldMutex;

namespace {

// The slot that tiSO_tls_index stands for: refused by what uses it when it has been freed since.
struct IdentitySlot {
  DWORD index = zebcomn::LoadAcquire(&tiSO_tls_index);
  uint32_t stamp = zebcomn::LoadRelaxed(&zebcomn::g_identity_stamp);
};

BOOL StoreIdentity(HANDLE event) {
  const IdentitySlot slot;
  return zebcomn::SetTlsValueOf(slot.index, slot.stamp, event);
}

BOOL StoreNotAttached() {
  return StoreIdentity(zebcomn::EventOf(TISO_NO_THREAD));
}

void SetIdentitySlot(DWORD index) {
  zebcomn::StoreRelease(&tiSO_tls_index, index);
}

}  // namespace

DWORD tiSO_ProcessAttach() {
  uint32_t stamp = 0;
  const DWORD index = zebcomn::AllocateTlsSlot(stamp);
  zebcomn::StoreRelaxed(&zebcomn::g_identity_stamp, stamp);
  SetIdentitySlot(index);
  return index;
}

BOOL tiSO_ProcessDetach() {
  const IdentitySlot slot;
  const BOOL freed = zebcomn::FreeTlsSlotOf(slot.index, slot.stamp);
  SetIdentitySlot(TIV_INVALID_DWORD);
  return freed;
}

uintptr_t tiSO_ThreadAttach() {
  const uintptr_t identity = zebcomn::OwnIdentity();
  if (identity != TISO_NO_THREAD) return identity;
  HANDLE event = tivCreateEvent(nullptr, TRUE, FALSE, nullptr);
  if (event == nullptr) return FALSE;
  const BOOL stored = StoreIdentity(event);
  if (stored == FALSE) tivCloseHandle(event);
  return static_cast<uintptr_t>(stored);
}

BOOL tiSO_ThreadDetach() {
  {
    const HeldMutex no_granter(zebcomn::g_wake_mutex, HeldMutex::Insist{});
    tivCloseHandle(zebcomn::EventOf(zebcomn::OwnIdentity()));
  }
  return StoreNotAttached();
}

BOOL tiSO_ThreadAttachX() {
  return StoreNotAttached();
}

void tiSO_ThreadDetachX() {}

uintptr_t tiSO_GetThread() {
  return zebcomn::OwnIdentity();
}

uintptr_t tiSO_DbgGetThread() {
  return zebcomn::StoredIdentity();
}
