#ifndef ZEBCOMN_PORTABLE_HANDLE_INTERNAL_H_
#define ZEBCOMN_PORTABLE_HANDLE_INTERNAL_H_

#include <cstdlib>

#include "zebcomn/portable/handle.h"

namespace zebcomn {

inline _tivHandleObject_t* RecordOf(HANDLE handle) {
  return static_cast<_tivHandleObject_t*>(handle);
}

/// A new record with unset content, from malloc(); null without memory.
inline _tivHandleObject_t* AllocateRecord() {
  return static_cast<_tivHandleObject_t*>(std::malloc(sizeof(_tivHandleObject_t)));
}

/// Initialises `cond` and then `mutex` with default attributes. On failure neither is left
/// initialised.
inline bool InitRecordLocks(_tivHandleObject_t* record) {
  if (pthread_cond_init(&record->cond, nullptr) != 0) return false;
  if (pthread_mutex_init(&record->mutex, nullptr) == 0) return true;
  pthread_cond_destroy(&record->cond);
  return false;
}

/// Destroys what InitRecordLocks() made.
inline void DestroyRecordLocks(_tivHandleObject_t* record) {
  pthread_cond_destroy(&record->cond);
  pthread_mutex_destroy(&record->mutex);
}

/// Frees the record of an event, a mutex or a thread, and what its `pObject` points at.
// Kept: the condition, the mutex and an ownership lock are not destroyed, and an owned lock is not
// unlocked: closing the handle of an owned mutex is no error.
inline void FreeRecord(_tivHandleObject_t* record) {
  // An event has none, and a call for nothing shows.
  if (record->pObject != nullptr) std::free(record->pObject);
  std::free(record);
}

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_HANDLE_INTERNAL_H_
