// The layout of the handle record, held at compile time.
#include <cstddef>

#include "zebcomn/portable/handle.h"

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

}  // namespace zebcomn
