#ifndef ZEBCOMN_LISTS_THREAD_ATTACH_H_
#define ZEBCOMN_LISTS_THREAD_ATTACH_H_

/// \file
/// The identity that each thread has in the locks. C11 and C++17.
///
/// A thread is attached by giving it an event of its own, on which it sleeps while it waits for a
/// lock. The handle of that event, as a pointer-sized number, is the thread's identity. It is kept
/// in one thread-local slot of the process.
///
/// The order of calls: tiSO_ProcessAttach once, before any thread attaches; tiSO_ThreadAttach on
/// every thread that will lock; the locking; tiSO_ThreadDetach on each of them;
/// tiSO_ProcessDetach once. A thread must not detach while it holds a lock or waits for one.
///
/// A thread that tivBeginThread or tivCreateThread started gives back every slot of the process
/// when it ends, this one included. `tiSO_tls_index` then keeps its old value, and every thread
/// reads as not attached from then on, also when another tivTlsAlloc() has been given the same
/// slot: its values are not looked at, changed or freed here, although the index is the same. The
/// threads' events are not closed. Do not end such a thread while locks are in use; after that,
/// begin again with tiSO_ProcessAttach.
///
/// Where a call reads or writes the slot and there is none, `nErrno` becomes 22.
///
/// \par Example
/// \include lock.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

/// The identity of a thread that is not attached, and the owner of a lock that nobody owns.
#define TISO_NO_THREAD ((uintptr_t)-1)

ZEBCOMN_BEGIN_C

/// The index of the identity slot; 0xFFFFFFFF while there is none. Only the two process calls write
/// it, so it is stale after the end of a thread as told above.
extern ZEBCOMN_EXPORT DWORD tiSO_tls_index;

/// Allocates the identity slot. A second call allocates another one, and every thread is then not
/// attached.
/// \return the slot's index, or 0xFFFFFFFF (`nErrno`: 11 no free slot, 12 no memory, as it was when
/// the system gives no key).
ZEBCOMN_EXPORT DWORD tiSO_ProcessAttach(void);

/// Gives the identity slot back. The threads' events are left as they are, so detach the threads
/// first.
/// \return 1; 0 when there is no slot (`nErrno` 22), and with `nErrno` as it was when the system
/// refuses to delete its key: it is given back then all the same.
ZEBCOMN_EXPORT BOOL tiSO_ProcessDetach(void);

/// Attaches the calling thread: creates its event and stores its identity.
/// \return 1 when it attached the thread; the thread's identity when it was attached already; 0
/// when there is no slot (`nErrno` 22) or no memory for the event (12), and with `nErrno` as it was
/// when a pthread object cannot be made or the identity not be stored. Nothing is left behind then.
ZEBCOMN_EXPORT uintptr_t tiSO_ThreadAttach(void);

/// Detaches the calling thread: closes its event and marks it as not attached. Does the second only
/// for a thread that is not attached.
/// \return 1; 0 when there is no slot (`nErrno` 22), and with `nErrno` as it was when the mark
/// cannot be stored.
ZEBCOMN_EXPORT BOOL tiSO_ThreadDetach(void);

/// Marks the calling thread as not attached, without closing an event that it may have: its handle
/// is then the caller's to close. A thread that handed this one a lock may still be setting the
/// event, which only tiSO_ThreadDetach waits for: close it when no lock is in use.
/// \return as tiSO_ThreadDetach().
ZEBCOMN_EXPORT BOOL tiSO_ThreadAttachX(void);

/// Does nothing; the counterpart of tiSO_ThreadAttachX.
ZEBCOMN_EXPORT void tiSO_ThreadDetachX(void);

/// The identity of the calling thread.
/// \return the calling thread's identity, or TISO_NO_THREAD when it is not attached.
ZEBCOMN_EXPORT uintptr_t tiSO_GetThread(void);

/// Looks into the identity slot, for diagnosis.
/// \return what the slot holds for the calling thread: 0 when nothing was ever stored,
/// TISO_NO_THREAD after a detach, else its identity.
ZEBCOMN_EXPORT uintptr_t tiSO_DbgGetThread(void);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_THREAD_ATTACH_H_
