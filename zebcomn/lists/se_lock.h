#ifndef ZEBCOMN_LISTS_SE_LOCK_H_
#define ZEBCOMN_LISTS_SE_LOCK_H_

/// \file
/// The shared/exclusive lock. C11 and C++17. `docs/locking.md` has its rules as a diagram and a
/// table.
///
/// Rules of all calls:
///  - The calling thread must be attached (thread_attach.h); "self" below is its identity. A thread
///    that is not attached has the identity of "nobody" and is treated so: it is admitted wherever
///    the owner is nobody, becomes no owner, and it cannot wait, so it is refused where it would
///    have to.
///  - A null lock gives 0 or does nothing.
///  - `nErrno` is left alone, except that 22 is stored where self is looked for and there is no
///    identity slot.
///  - Any thread may make any call on a live lock. A grant is not tied to a thread: whoever calls
///    tiSO_SELockRelease() gives one grant back. Every grant is given back exactly once; a release
///    of a free lock takes its count below zero, to 0xFFFFFFFF.
///  - A request that waits returns when the lock has been handed to it and not before, whatever
///    signals arrive. No call is a cancellation point: a pending cancellation acts after it.
///  - A grant sees everything that earlier holders wrote.
///
/// \par Example
/// \include lock.c

#include "zebcomn/export.h"
#include "zebcomn/lists/ll.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// A lock. Callers may look at it, for diagnosis; only the library changes it, and every field only
/// with the spin word taken.
typedef struct tiSO_SELockRecord {
  LONG spin_word;                 ///< See spin_lock.h.
  uintptr_t owner;                ///< Exclusive owner; TISO_NO_THREAD when free or held shared.
  uint32_t count;                 ///< Grants outstanding: holders, or the owner's depth.
  tiLL_head_t shared_waiters;     ///< Queued shared requests, the newest first.
  tiLL_head_t exclusive_waiters;  ///< Queued exclusive requests, the newest first.
  tiLL_head_t notify_list;        ///< Registered callbacks (tiSO_NotifyRecord_t), newest first.
  int32_t pid;                    ///< Process of the last thread that was granted exclusively.
  int32_t state;                  ///< The last transition, one of TISO_STATE_*.
} tiSO_SELock_t;

/// The values of `tiSO_SELock_t::state`.
enum {
  TISO_STATE_CREATED = 1,                    ///< Free since its creation.
  TISO_STATE_EXCLUSIVE_TAKEN = 2,            ///< Granted directly.
  TISO_STATE_EXCLUSIVE_TO_SHARED = 3,        ///< By tiSO_SELockExclusiveToShared().
  TISO_STATE_RELEASED = 4,                   ///< The last grant was given back.
  TISO_STATE_EXCLUSIVE_HANDED_OVER = 5,      ///< By a release, to a queued request.
  TISO_STATE_EXCLUSIVE_TAKEN_BY_NOTIFY = 6,  ///< By tiSO_SELockExclusiveNotify().
};

/// The event codes that a callback gets.
enum {
  TISO_EVENT_FREE = 0x1100,       ///< The lock has become free.
  TISO_EVENT_WITHDRAWN = 0x1102,  ///< The registration is about to be withdrawn.
};

/// A registered callback. It is called with its first parameter, an event code, its second
/// parameter and 0, and answers 0 to accept (its record then leaves the list) or another value to
/// decline (it stays).
///
/// It runs with the lock's spin word taken, so it must not call into the same lock, must not end by
/// an exception or pthread_exit(), and should be quick: every other thread that calls into the lock
/// spins meanwhile. It runs with cancellation disabled.
typedef uint32_t (*tiSO_NotifyCallback_t)(uintptr_t first, uint32_t event_code, uintptr_t second,
                                          uint32_t zero);

/// A registration, taken with malloc().
typedef struct tiSO_NotifyRecord {
  tiLL_element_t link;             ///< Its place in `notify_list`.
  tiSO_NotifyCallback_t callback;  ///< Whom to tell.
  uintptr_t first;                 ///< The callback's first argument.
  uintptr_t second;                ///< The callback's third argument.
} tiSO_NotifyRecord_t;

/// Makes a free lock. The caller gives it back with tiSO_Release().
/// \param lock where the lock goes; null when memory is exhausted.
/// \return 0, or 0x80000008 when memory is exhausted or `lock` is null.
ZEBCOMN_EXPORT uint32_t tiSO_SELockCreate(tiSO_SELock_t** lock);

/// Frees a lock, with the registrations that it still has; their callbacks are not called. Nobody
/// may hold it or wait for it: that is not checked.
/// \param lock the lock.
ZEBCOMN_EXPORT void tiSO_Release(tiSO_SELock_t* lock);

/// Asks for exclusive ownership. Granted when the lock is free or self owns it; each grant counts.
/// A thread that holds the lock shared is not granted, and if it waits it waits for itself.
/// Otherwise queued when `wait` is not 0: the newest queued request is served first.
/// \param lock the lock.
/// \param wait 0 = never wait.
/// \return 1 granted, 0 refused.
ZEBCOMN_EXPORT BOOL tiSO_SELockExclusive(tiSO_SELock_t* lock, BOOL wait);

/// Asks for a shared grant, past queued exclusive requests: readers that overlap can keep writers
/// out for ever. Granted unless another thread owns the lock. Otherwise queued when `wait` is
/// not 0.
/// \param lock the lock.
/// \param wait 0 = never wait.
/// \return 1 granted, 0 refused.
ZEBCOMN_EXPORT BOOL tiSO_SELockSharedStarveExclusive(tiSO_SELock_t* lock, BOOL wait);

/// Asks for a shared grant, behind queued exclusive requests: writers that overlap can keep readers
/// out for ever. Granted when the lock is free, self owns it, or it is held shared and no exclusive
/// request is queued. Otherwise queued when `wait` is not 0.
/// \param lock the lock.
/// \param wait 0 = never wait.
/// \return 1 granted, 0 refused.
ZEBCOMN_EXPORT BOOL tiSO_SELockSharedWaitForExclusive(tiSO_SELock_t* lock, BOOL wait);

/// tiSO_SELockExclusive() when `exclusive` is not 0, else tiSO_SELockSharedWaitForExclusive().
/// \param lock the lock.
/// \param exclusive which of the two.
/// \param wait 0 = never wait.
/// \return 1 granted, 0 refused.
ZEBCOMN_EXPORT BOOL tiSO_SELock(tiSO_SELock_t* lock, BOOL exclusive, BOOL wait);

/// Turns exclusive ownership into shared holding and grants every queued shared request. All the
/// owner's grants stay counted, now as shared ones. Queued exclusive requests go on waiting. That
/// the caller is the owner is not checked.
/// \param lock the lock.
ZEBCOMN_EXPORT void tiSO_SELockExclusiveToShared(tiSO_SELock_t* lock);

/// Gives one grant back. The last one frees the lock and hands it over at once: to the newest
/// queued exclusive request; else to all queued shared requests; else it is offered to the
/// registered callbacks (TISO_EVENT_FREE), the newest first, until one accepts. An accepted
/// registration is freed and nothing is granted for it: its client asks for the lock itself.
/// \param lock the lock.
ZEBCOMN_EXPORT void tiSO_SELockRelease(tiSO_SELock_t* lock);

/// Asks for exclusive ownership as tiSO_SELockExclusive() does, without waiting; when it is not
/// granted, registers a callback to be told when the lock has become free. The same registration
/// may be made several times. A null callback is not registered.
/// \param lock the lock.
/// \param callback whom to tell.
/// \param first its first argument.
/// \param second its third argument.
/// \return 1 granted and nothing registered, 0 not granted.
/// Ends the process with abort() when memory for the registration is exhausted.
ZEBCOMN_EXPORT BOOL tiSO_SELockExclusiveNotify(tiSO_SELock_t* lock, tiSO_NotifyCallback_t callback,
                                               uintptr_t first, uintptr_t second);

/// Withdraws the newest registration that has this callback and both parameters and whose callback
/// accepts TISO_EVENT_WITHDRAWN; one that declines stays, and the search goes on.
///
/// A withdrawn record is not freed: it belongs to the caller from then on, to be given to free().
/// It was the first of `notify_list` right after its registration.
/// \param lock the lock.
/// \param callback as it was registered.
/// \param first as it was registered.
/// \param second as it was registered.
/// \return 1 withdrawn, 0 none found.
ZEBCOMN_EXPORT BOOL tiSO_SELockExclusiveUnnotify(tiSO_SELock_t* lock,
                                                 tiSO_NotifyCallback_t callback, uintptr_t first,
                                                 uintptr_t second);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_SE_LOCK_H_
