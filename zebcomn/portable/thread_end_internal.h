#ifndef ZEBCOMN_PORTABLE_THREAD_END_INTERNAL_H_
#define ZEBCOMN_PORTABLE_THREAD_END_INTERNAL_H_

/// \file
/// A thread's end against the close of its handle. One of the two comes first, as a whole: a close
/// that meets an end under way waits until the end no longer touches the record, and an end that
/// comes after the close finds its start block detached from the record.

#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/thread.h"

namespace zebcomn {

/// Signals the end of the thread of `block` to its handle, or to `bDummyThreadSignalled` when the
/// handle has been closed. The record is not touched after the call.
void SignalThreadEnd(TivThreadStartBlock* block);

/// Parts a thread's record from its thread, so that the record can be freed.
void DetachThread(_tivHandleObject_t* record);

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_THREAD_END_INTERNAL_H_
