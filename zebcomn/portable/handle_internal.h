#ifndef ZEBCOMN_PORTABLE_HANDLE_INTERNAL_H_
#define ZEBCOMN_PORTABLE_HANDLE_INTERNAL_H_

#include "zebcomn/portable/handle.h"

namespace zebcomn {

inline _tivHandleObject_t* RecordOf(HANDLE handle) {
  return static_cast<_tivHandleObject_t*>(handle);
}

/// A new record with unset content, from malloc(); null without memory.
_tivHandleObject_t* AllocateRecord();

/// Initialises `cond` and then `mutex` with default attributes. On failure neither is left
/// initialised.
bool InitRecordLocks(_tivHandleObject_t* record);

/// Destroys what InitRecordLocks() made.
void DestroyRecordLocks(_tivHandleObject_t* record);

/// Frees the record of an event, a mutex or a thread, and what its `pObject` points at.
void FreeRecord(_tivHandleObject_t* record);

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_HANDLE_INTERNAL_H_
