#include "zebcomn/lists/se_lock.h"

#include <pthread.h>

#include <cstddef>
#include <cstdlib>

#include "zebcomn/lists/process_id_internal.h"
#include "zebcomn/lists/se_lock_internal.h"
#include "zebcomn/lists/spin_lock_internal.h"
#include "zebcomn/lists/thread_attach_internal.h"
#include "zebcomn/portable/event.h"
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

constexpr bool kIs32Bit = sizeof(void*) == 4;

static_assert(offsetof(tiSO_SELock_t, spin_word) == 0, "the lock's address is its spin word's");
static_assert(!kIs32Bit || offsetof(tiSO_SELock_t, owner) == 4, "32-bit layout");
static_assert(!kIs32Bit || offsetof(tiSO_SELock_t, count) == 8, "32-bit layout");
static_assert(!kIs32Bit || offsetof(tiSO_SELock_t, shared_waiters) == 12, "32-bit layout");
static_assert(!kIs32Bit || offsetof(tiSO_SELock_t, exclusive_waiters) == 16, "32-bit layout");
static_assert(!kIs32Bit || offsetof(tiSO_SELock_t, notify_list) == 20, "32-bit layout");
static_assert(!kIs32Bit || offsetof(tiSO_SELock_t, pid) == 24, "32-bit layout");
static_assert(!kIs32Bit || offsetof(tiSO_SELock_t, state) == 28, "32-bit layout");
static_assert(!kIs32Bit || sizeof(tiSO_SELock_t) == 32, "32-bit layout");

static_assert(offsetof(Waiter, link) == 0, "the link is an element's first field");
static_assert(!kIs32Bit || offsetof(Waiter, thread) == 4, "32-bit layout");
static_assert(!kIs32Bit || offsetof(Waiter, pid) == 8, "32-bit layout");
static_assert(!kIs32Bit || offsetof(Waiter, waiting) == 12, "32-bit layout");
static_assert(!kIs32Bit || sizeof(Waiter) == 16, "32-bit layout");

Waiter* WaiterOf(tiLL_element_t* link) {
  return reinterpret_cast<Waiter*>(link);
}

HANDLE EventOf(uintptr_t thread) {
  return reinterpret_cast<HANDLE>(thread);
}

// The queues are looked at in every call, so without one.
bool IsEmpty(const tiLL_head_t& queue) {
  return queue.next == nullptr;
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

/// Keeps cancellation from unwinding a stack that a queued record is on.
class CancellationHeldOff {
 public:
  CancellationHeldOff() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_); }
  ~CancellationHeldOff() { pthread_setcancelstate(before_, nullptr); }
  CancellationHeldOff(const CancellationHeldOff&) = delete;
  CancellationHeldOff& operator=(const CancellationHeldOff&) = delete;

 private:
  int before_ = PTHREAD_CANCEL_ENABLE;
};

/// Whether the request has been granted; the thread's event is then, or else, not signalled.
///
/// The granter clears the flag and sets the event within one hold of the spin word. To look within
/// another hold means that a wake-up which was not the granter's cannot come between the two: the
/// thread would go on, might close its event, and the granter would set what is no longer there.
bool GrantArrived(tiSO_SELock_t* lock, const Waiter& waiter) {
  const SpinHold hold(&lock->spin_word);
  tivResetEvent(EventOf(waiter.thread));
  return LoadAcquire(&waiter.waiting) == 0;
}

/// Queues a request and sleeps until it is granted.
/// REQUIRES: the spin word is taken; it is given back here.
[[gnu::noinline]] void WaitAmong(tiLL_head_t* waiters, uintptr_t self, tiSO_SELock_t* lock) {
  Waiter waiter = {{nullptr}, self, ProcessId(), 1};
  const CancellationHeldOff no_cancellation;
  {
    const SpinHold hold(&lock->spin_word, SpinHold::Taken{});
    tiLL_XInsertHead(waiters, &waiter.link);
  }
  do {
    tivWaitForSingleObject(EventOf(self), TIV_INVALID_DWORD);
  } while (!GrantArrived(lock, waiter));
}

/// Grants the request of a record that has been taken out of its queue.
void Grant(Waiter* waiter) {
  const uintptr_t thread = waiter->thread;
  // The record may be gone as soon as the flag is 0.
  StoreRelease(&waiter->waiting, int32_t{0});
  tivSetEvent(EventOf(thread));
}

void HandToExclusiveWaiter(tiSO_SELock_t* lock) {
  // Kept: the queue is a stack, so writers are served last in, first out; callers count on it.
  Waiter* waiter = WaiterOf(tiLL_XRemoveHead(&lock->exclusive_waiters));
  lock->count = 1;
  lock->owner = waiter->thread;
  lock->state = TISO_STATE_EXCLUSIVE_HANDED_OVER;
  lock->pid = waiter->pid;
  Grant(waiter);
}

void HandToSharedWaiters(tiSO_SELock_t* lock) {
  while (tiLL_element_t* newest = tiLL_XRemoveHead(&lock->shared_waiters)) {
    ++lock->count;
    Grant(WaiterOf(newest));
  }
}

/// One of the three requests: takes the lock by the rule `take`, or waits among `waiters`.
template <typename Take>
BOOL Request(tiSO_SELock_t* lock, BOOL wait, tiLL_head_t tiSO_SELock_t::*waiters, Take take) {
  if (lock == nullptr) return FALSE;
  SpinHold hold(&lock->spin_word);
  if (take(lock)) return TRUE;
  if (wait == 0) return FALSE;
  const uintptr_t self = OwnIdentity();
  // A thread that is not attached has no event to sleep on.
  if (self == TISO_NO_THREAD) return FALSE;
  hold.HandOver();
  WaitAmong(&(lock->*waiters), self, lock);
  return TRUE;
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
  *lock = static_cast<tiSO_SELock_t*>(std::calloc(1, sizeof(tiSO_SELock_t)));
  if (*lock == nullptr) return ZEBCOMN_STATUS_FAILURE;
  (*lock)->owner = TISO_NO_THREAD;
  (*lock)->state = TISO_STATE_CREATED;
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
  const zebcomn::SpinHold hold(&lock->spin_word);
  lock->owner = TISO_NO_THREAD;
  lock->state = TISO_STATE_EXCLUSIVE_TO_SHARED;
  zebcomn::HandToSharedWaiters(lock);
}

void tiSO_SELockRelease(tiSO_SELock_t* lock) {
  if (lock == nullptr) return;
  const zebcomn::SpinHold hold(&lock->spin_word);
  if (--lock->count != 0) return;
  lock->owner = TISO_NO_THREAD;
  lock->state = TISO_STATE_RELEASED;
  if (!zebcomn::IsEmpty(lock->exclusive_waiters)) {
    zebcomn::HandToExclusiveWaiter(lock);
  } else if (!zebcomn::IsEmpty(lock->shared_waiters)) {
    zebcomn::HandToSharedWaiters(lock);
  } else if (!zebcomn::IsEmpty(lock->notify_list)) {
    zebcomn::OfferToClients(lock);
  }
}
