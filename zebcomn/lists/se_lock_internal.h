#ifndef ZEBCOMN_LISTS_SE_LOCK_INTERNAL_H_
#define ZEBCOMN_LISTS_SE_LOCK_INTERNAL_H_

#include "zebcomn/lists/se_lock.h"

namespace zebcomn {

/// The exclusive grant rule; takes the lock if it holds. `state_if_free` is recorded when the lock
/// had no owner. REQUIRES: the spin word is held.
bool TakeExclusive(tiSO_SELock_t* lock, int32_t state_if_free);

/// Offers a lock that has become free to the registered callbacks until one accepts.
/// REQUIRES: the spin word is held.
void OfferToClients(tiSO_SELock_t* lock);

/// Frees all registrations of a lock that nobody uses any more.
void DropRegistrations(tiSO_SELock_t* lock);

}  // namespace zebcomn

#endif  // ZEBCOMN_LISTS_SE_LOCK_INTERNAL_H_
