#include "zebcomn/lists/se_lock.h"

#include <unistd.h>

#include <cstddef>
#include <cstdlib>

#include "zebcomn/lists/process_id_internal.h"
#include "zebcomn/lists/se_lock_internal.h"
#include "zebcomn/lists/spin_lock_internal.h"
#include "zebcomn/lists/thread_attach_internal.h"
#include "zebcomn/portable/cancellation_internal.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/wait.h"

namespace zebcomn {
namespace {

/// A queued request, on the stack of the thread that waits.
struct Waiter {
  tiLL_element_t link;
  uintptr_t thread;
  int32_t pid;
  int32_t waiting;  ///< 1 while queued; the thread that grants the request stores 0.
};

static_assert(
    offsetof(tiSO_SELock_t, spin_word) == 0 && offsetof(tiSO_SELock_t, owner) == sizeof(void*) &&
        offsetof(tiSO_SELock_t, count) == 2 * sizeof(void*) &&
        offsetof(tiSO_SELock_t, shared_waiters) == 3 * sizeof(void*) &&
        offsetof(tiSO_SELock_t, exclusive_waiters) == 4 * sizeof(void*) &&
        offsetof(tiSO_SELock_t, notify_list) == 5 * sizeof(void*) &&
        offsetof(tiSO_SELock_t, pid) == 6 * sizeof(void*) &&
        offsetof(tiSO_SELock_t, state) == offsetof(tiSO_SELock_t, pid) + 4,
    "The fields stand in this order on every target; the lock's address is its spin word's.");
static_assert(sizeof(void*) != 4 || sizeof(tiSO_SELock_t) == 32, "the size on a 32-bit target");

static_assert(offsetof(Waiter, link) == 0 && offsetof(Waiter, thread) == sizeof(void*) &&
                  offsetof(Waiter, pid) == 2 * sizeof(void*) &&
                  offsetof(Waiter, waiting) == offsetof(Waiter, pid) + 4,
              "The fields stand in this order on every target, the element's link first.");
static_assert(sizeof(void*) != 4 || sizeof(Waiter) == 16, "the size on a 32-bit target");

Waiter* WaiterOf(tiLL_element_t* link) {
  return reinterpret_cast<Waiter*>(link);
}

// The queues are looked at in every call, so without one.
bool IsEmpty(const tiLL_head_t& queue) {
  return queue.next == nullptr;
}

bool HasWaiters(const tiSO_SELock_t& lock) {
  return !IsEmpty(lock.exclusive_waiters) || !IsEmpty(lock.shared_waiters) ||
         !IsEmpty(lock.notify_list);
}

// To find the own identity costs about as much as the rest of a shared grant, so it is looked for
// only while the lock has an owner.
bool TakeSharedPastWriters(tiSO_SELock_t* lock) {
  if (lock->owner != TISO_NO_THREAD && lock->owner != OwnIdentity()) return false;
  ++lock->count;
  return true;
}

// A thread that is not attached counts as the owner of a lock that nobody owns.
bool TakeSharedBehindWriters(tiSO_SELock_t* lock) {
  const bool joins_readers = lock->owner == TISO_NO_THREAD && IsEmpty(lock->exclusive_waiters);
  if (lock->count != 0 && !joins_readers && lock->owner != OwnIdentity()) return false;
  ++lock->count;
  return true;
}

/// Whether the request has been granted, and not only its thread woken by somebody else; the event
/// is ready for the next wait if not.
bool IsGranted(const Waiter& waiter) {
  // Before the flag is looked at: a grant that comes in between sets the event again.
  tivResetEvent(EventOf(waiter.thread));
  return LoadAcquire(&waiter.waiting) == 0;
}

/// Looks for the grant for about as long as a thread takes to fall asleep and to be woken again:
/// where the lock is held for shorter than that, most requests are spared both. On one processor
/// the holder could not go on meanwhile.
void LookForGrant(const Waiter& waiter) {
  static const bool several_processors = sysconf(_SC_NPROCESSORS_ONLN) > 1;
  constexpr int kLooks = 1000;
  if (!several_processors) return;
  for (int i = 0; i < kLooks && LoadAcquire(&waiter.waiting) != 0; ++i) {
#ifdef __x86_64__
    __builtin_ia32_pause();
#endif
  }
}

/// What a request does that is not granted: it is queued and sleeps until it has been granted, or
/// it is refused. REQUIRES: the spin word is taken; it is given back here.
///
/// Not inlined, like the other calls that most requests never make: that keeps what they need off
/// the way of those.
[[gnu::noinline]] BOOL WaitOrRefuse(tiSO_SELock_t* lock, BOOL wait, tiLL_head_t* waiters) {
  SpinHold hold(&lock->spin_word, SpinHold::Taken{});
  if (wait == 0) return FALSE;
  const uintptr_t self = OwnIdentity();
  // A thread that is not attached has no event to sleep on.
  if (self == TISO_NO_THREAD) return FALSE;
  Waiter waiter = {{nullptr}, self, ProcessId(), 1};
  // A cancellation must not unwind the stack that the queued record is on.
  const CancellationHeldOff no_cancellation;
  tiLL_XInsertHead(waiters, &waiter.link);
  hold.Release();
  LookForGrant(waiter);
  do {
    tivWaitForSingleObject(EventOf(self), TIV_WAIT_INFINITE);
  } while (!IsGranted(waiter));
  return TRUE;
}

/// Hands a free lock to the newest exclusive request.
/// \return the request's record, for Wake().
tiLL_element_t* GrantExclusiveWaiter(tiSO_SELock_t* lock) {
  // Kept: the queue is a stack, so writers are served last in, first out; callers count on it.
  Waiter* waiter = WaiterOf(tiLL_XRemoveHead(&lock->exclusive_waiters));
  waiter->link.next = nullptr;
  lock->count = 1;
  lock->owner = waiter->thread;
  lock->state = TISO_STATE_EXCLUSIVE_HANDED_OVER;
  lock->pid = waiter->pid;
  return &waiter->link;
}

/// Admits all shared requests.
/// \return the first of their records, for Wake(); null when there is none.
tiLL_element_t* GrantSharedWaiters(tiSO_SELock_t* lock) {
  tiLL_element_t* first = lock->shared_waiters.next;
  for (tiLL_element_t* link = first; link != nullptr; link = link->next) ++lock->count;
  tiLL_Init(&lock->shared_waiters);
  return first;
}

/// Wakes the threads whose requests have been granted and taken out of their queue. The spin word
/// has been given back by then: a thread that wakes up in place of its granter would only spin.
[[gnu::noinline]] void Wake(tiLL_element_t* granted) {
  while (granted != nullptr) {
    Waiter* waiter = WaiterOf(granted);
    granted = granted->next;
    const uintptr_t thread = waiter->thread;
    const HeldMutex keeps_event(g_wake_mutex, HeldMutex::Insist{});
    // The record may be gone as soon as the flag is 0.
    StoreRelease(&waiter->waiting, int32_t{0});
    // The thread would sleep for ever with its grant: a system that reports a failure is asked
    // again, as by HeldMutex::Insist.
    while (tivSetEvent(EventOf(thread)) != TRUE) {
    }
  }
}

/// One of the three requests: takes the lock by the rule `take`, or waits among `waiters`.
template <typename Take>
BOOL Request(tiSO_SELock_t* lock, BOOL wait, tiLL_head_t tiSO_SELock_t::*waiters, Take take) {
  if (lock == nullptr) return FALSE;
  SpinHold hold(&lock->spin_word);
  if (take(lock)) return TRUE;
  hold.HandOver();
  return WaitOrRefuse(lock, wait, &(lock->*waiters));
}

/// Hands a lock that has become free to whoever waits for it, in the order of the header.
/// \return the records of the requests that have been granted, for Wake().
[[gnu::noinline]] tiLL_element_t* HandOverFreeLock(tiSO_SELock_t* lock) {
  if (!IsEmpty(lock->exclusive_waiters)) return GrantExclusiveWaiter(lock);
  if (!IsEmpty(lock->shared_waiters)) return GrantSharedWaiters(lock);
  OfferToClients(lock);
  return nullptr;
}

}  // namespace

bool TakeExclusive(tiSO_SELock_t* lock, int32_t state_if_free) {
  const uintptr_t self = OwnIdentity();
  if (lock->count != 0 && lock->owner != self) return false;
  ++lock->count;
  if (lock->owner == TISO_NO_THREAD) {
    lock->owner = self;
    lock->state = state_if_free;
  }
  lock->pid = ProcessId();
  return true;
}

}  // namespace zebcomn

uint32_t tiSO_SELockCreate(tiSO_SELock_t** lock) {
  if (lock == nullptr) return ZEBCOMN_STATUS_FAILURE;
  *lock = static_cast<tiSO_SELock_t*>(std::malloc(sizeof(tiSO_SELock_t)));
  if (*lock == nullptr) return ZEBCOMN_STATUS_FAILURE;
  **lock = {zebcomn::kSpinWordFree, TISO_NO_THREAD, 0, {}, {}, {}, 0, TISO_STATE_CREATED};
  return ZEBCOMN_STATUS_OK;
}

void tiSO_Release(tiSO_SELock_t* lock) {
  if (lock == nullptr) return;
  zebcomn::DropRegistrations(lock);
  std::free(lock);
}

BOOL tiSO_SELockExclusive(tiSO_SELock_t* lock, BOOL wait) {
  return zebcomn::Request(lock, wait, &tiSO_SELock_t::exclusive_waiters, [](tiSO_SELock_t* held) {
    return zebcomn::TakeExclusive(held, TISO_STATE_EXCLUSIVE_TAKEN);
  });
}

BOOL tiSO_SELockSharedStarveExclusive(tiSO_SELock_t* lock, BOOL wait) {
  return zebcomn::Request(lock, wait, &tiSO_SELock_t::shared_waiters,
                          zebcomn::TakeSharedPastWriters);
}

BOOL tiSO_SELockSharedWaitForExclusive(tiSO_SELock_t* lock, BOOL wait) {
  return zebcomn::Request(lock, wait, &tiSO_SELock_t::shared_waiters,
                          zebcomn::TakeSharedBehindWriters);
}

BOOL tiSO_SELock(tiSO_SELock_t* lock, BOOL exclusive, BOOL wait) {
  return exclusive != 0 ? tiSO_SELockExclusive(lock, wait)
                        : tiSO_SELockSharedWaitForExclusive(lock, wait);
}

void tiSO_SELockExclusiveToShared(tiSO_SELock_t* lock) {
  if (lock == nullptr) return;
  tiLL_element_t* granted = nullptr;
  {
    const zebcomn::SpinHold hold(&lock->spin_word);
    lock->owner = TISO_NO_THREAD;
    lock->state = TISO_STATE_EXCLUSIVE_TO_SHARED;
    granted = zebcomn::GrantSharedWaiters(lock);
  }
  zebcomn::Wake(granted);
}

void tiSO_SELockRelease(tiSO_SELock_t* lock) {
  if (lock == nullptr) return;
  tiLL_element_t* granted = nullptr;
  {
    const zebcomn::SpinHold hold(&lock->spin_word);
    if (--lock->count != 0) return;
    lock->owner = TISO_NO_THREAD;
    lock->state = TISO_STATE_RELEASED;
    if (!zebcomn::HasWaiters(*lock)) return;
    granted = zebcomn::HandOverFreeLock(lock);
  }
  zebcomn::Wake(granted);
}
