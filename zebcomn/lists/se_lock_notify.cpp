// The clients of a lock that are called back instead of waiting.
#include <cstddef>
#include <cstdlib>

#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/se_lock_internal.h"
#include "zebcomn/lists/spin_lock_internal.h"
#include "zebcomn/portable/cancellation_internal.h"

namespace zebcomn {
namespace {

constexpr uint32_t kAccepted = 0;

static_assert(offsetof(tiSO_NotifyRecord_t, link) == 0 &&
                  offsetof(tiSO_NotifyRecord_t, callback) == sizeof(void*) &&
                  offsetof(tiSO_NotifyRecord_t, first) == 2 * sizeof(void*) &&
                  offsetof(tiSO_NotifyRecord_t, second) == 3 * sizeof(void*) &&
                  sizeof(tiSO_NotifyRecord_t) == 4 * sizeof(void*),
              "The fields stand in this order on every target, the element's link first.");

tiSO_NotifyRecord_t* RecordOf(tiLL_element_t* link) {
  return reinterpret_cast<tiSO_NotifyRecord_t*>(link);
}

/// Tells the clients that `matches` of an event, the newest first, until one accepts.
/// \return that one's record, which has left the list; null when none accepts.
template <typename Matches>
tiSO_NotifyRecord_t* Tell(tiSO_SELock_t* lock, uint32_t event_code, Matches matches) {
  // A callback that a cancellation ended would leave the client registered that it had accepted
  // for, and may have been called where nothing can be unwound.
  const CancellationHeldOff no_cancellation;
  tiLL_element_t* previous = tiLL_XGetStart(&lock->notify_list);
  tiLL_element_t* current = tiLL_XGetNext(previous);
  for (; tiLL_XIsEnd(current) == FALSE; previous = current, current = tiLL_XGetNext(current)) {
    tiSO_NotifyRecord_t* record = RecordOf(current);
    if (!matches(*record)) continue;
    if (record->callback(record->first, event_code, record->second, 0) != kAccepted) continue;
    tiLL_XRemove(previous, current);
    return record;
  }
  return nullptr;
}

}  // namespace

void OfferToClients(tiSO_SELock_t* lock) {
  std::free(Tell(lock, TISO_EVENT_FREE, [](const tiSO_NotifyRecord_t&) { return true; }));
}

void DropRegistrations(tiSO_SELock_t* lock) {
  while (tiLL_element_t* link = tiLL_XRemoveHead(&lock->notify_list)) std::free(RecordOf(link));
}

}  // namespace zebcomn

BOOL tiSO_SELockExclusiveNotify(tiSO_SELock_t* lock, tiSO_NotifyCallback_t callback,
                                uintptr_t first, uintptr_t second) {
  if (lock == nullptr) return FALSE;
  const zebcomn::SpinHold hold(&lock->spin_word);
  if (zebcomn::TakeExclusive(lock, TISO_STATE_EXCLUSIVE_TAKEN_BY_NOTIFY)) return TRUE;
  if (callback == nullptr) return FALSE;
  auto* record = static_cast<tiSO_NotifyRecord_t*>(std::malloc(sizeof(tiSO_NotifyRecord_t)));
  // A client that is not registered would wait for ever for a call.
  if (record == nullptr) std::abort();
  *record = {{nullptr}, callback, first, second};
  tiLL_XInsertHead(&lock->notify_list, &record->link);
  return FALSE;
}

BOOL tiSO_SELockExclusiveUnnotify(tiSO_SELock_t* lock, tiSO_NotifyCallback_t callback,
                                  uintptr_t first, uintptr_t second) {
  if (lock == nullptr) return FALSE;
  const zebcomn::SpinHold hold(&lock->spin_word);
  // Kept: the withdrawn record is not freed; the caller owns it from here on.
  return zebcomn::Tell(lock, TISO_EVENT_WITHDRAWN,
                       [=](const tiSO_NotifyRecord_t& record) {
                         return record.callback == callback && record.first == first &&
                                record.second == second;
                       }) != nullptr
             ? TRUE
             : FALSE;
}
