#ifndef ZEBCOMN_PORTABLE_SIGNAL_INTERNAL_H_
#define ZEBCOMN_PORTABLE_SIGNAL_INTERNAL_H_

#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/plain_atomic_internal.h"

namespace zebcomn {

/// Makes the record signalled and wakes its waiters; whether the broadcast succeeded.
/// REQUIRES: the caller holds the record's mutex.
inline bool Signal(_tivHandleObject_t* record) {
  StoreRelease(&record->bSignalled, 1);
  return pthread_cond_broadcast(&record->cond) == 0;
}

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_SIGNAL_INTERNAL_H_
