#include <cstddef>
#include <cstdlib>

#include "zebcomn/portable/handle_internal.h"

namespace zebcomn {

namespace {

using Record = _tivHandleObject_t;

static_assert(offsetof(Record, pObject) == 0 && offsetof(Record, nType) == sizeof(void*) &&
                  offsetof(Record, nRefCount) == offsetof(Record, nType) + 4 &&
                  offsetof(Record, bSignalled) == offsetof(Record, nRefCount) + 4 &&
                  offsetof(Record, cond) > offsetof(Record, bSignalled) &&
                  offsetof(Record, mutex) == offsetof(Record, cond) + sizeof(pthread_cond_t) &&
                  offsetof(Record, ppThreadSignalled) >=
                      offsetof(Record, mutex) + sizeof(pthread_mutex_t),
              "The fields stand in this order on every target.");

#if defined(__powerpc__) && !defined(__powerpc64__)
static_assert(sizeof(pthread_mutex_t) == 24 && offsetof(Record, nType) == 4 &&
                  offsetof(Record, nRefCount) == 8 && offsetof(Record, bSignalled) == 12 &&
                  offsetof(Record, cond) == 16 && offsetof(Record, mutex) == 64 &&
                  offsetof(Record, ppThreadSignalled) == 88 && sizeof(Record) == 96,
              "The layout that the agent's components on the reference target were built with.");
#endif

}  // namespace

_tivHandleObject_t* AllocateRecord() {
  return static_cast<_tivHandleObject_t*>(std::malloc(sizeof(_tivHandleObject_t)));
}

bool InitRecordLocks(_tivHandleObject_t* record) {
  if (pthread_cond_init(&record->cond, nullptr) != 0) return false;
  if (pthread_mutex_init(&record->mutex, nullptr) == 0) return true;
  pthread_cond_destroy(&record->cond);
  return false;
}

void DestroyRecordLocks(_tivHandleObject_t* record) {
  pthread_cond_destroy(&record->cond);
  pthread_mutex_destroy(&record->mutex);
}

// Kept: the condition, the mutex and an ownership lock are not destroyed, and an owned lock is not
// unlocked: closing the handle of an owned mutex is no error.
void FreeRecord(_tivHandleObject_t* record) {
  // An event has none, and a call for nothing shows.
  if (record->pObject != nullptr) std::free(record->pObject);
  std::free(record);
}

}  // namespace zebcomn
