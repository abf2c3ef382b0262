#ifndef ZEBCOMN_PORTABLE_THREAD_END_INTERNAL_H_
#define ZEBCOMN_PORTABLE_THREAD_END_INTERNAL_H_

/// \file
/// A thread's end against the close of its handle. Neither waits for the other: a close that meets
/// an end under way leaves the record to the end, which frees it as its last step, and an end that
/// comes after the close finds its start block detached from the record.

#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/thread.h"

namespace zebcomn {

/// The start block of a new thread, taken with malloc() and tied to the thread's record; null
/// without memory.
TivThreadStartBlock* NewStartBlock(_tivHandleObject_t* record, TivThreadRoutine routine,
                                   void* parameter);

/// Frees the start block of a thread that has not been started after all.
void DiscardStartBlock(TivThreadStartBlock* block);

/// Signals the end of the thread of `block` to its handle, or to `bDummyThreadSignalled` when the
/// handle has been closed. The record is not touched after the call. A block that is not from
/// NewStartBlock() has no record: nothing but what it points at is touched.
void SignalThreadEnd(TivThreadStartBlock* block);

/// Parts a thread's record from its thread, and frees the record or has the thread free it.
void CloseThreadRecord(_tivHandleObject_t* record);

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_THREAD_END_INTERNAL_H_
