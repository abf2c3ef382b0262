#ifndef ZEBCOMN_LISTS_SLL_H_
#define ZEBCOMN_LISTS_SLL_H_

/// \file
/// The singly linked list with a lock of its own. C11 and C++17.
///
/// Rules of all calls:
///  - The list never allocates or frees an element; an element begins with a tiLL_element_t,
///    belongs to the caller and is in one list at a time.
///  - The calls on elements take the list's lock themselves: inserts and removals exclusively and
///    with waiting. The calling thread must be attached (thread_attach.h). A thread that is not
///    attached, and any thread on a list whose tiSLL_Init() failed, finds the list empty and
///    unchanged where the lock is refused to it.
///  - A walk holds the lock from tiSLL_XGetHead() to tiSLL_LockRelease() and steps with
///    tiLL_XGetNext() until tiLL_XIsEnd(). In a walk that is exclusive the same thread may insert
///    and remove; in a shared one it would wait for itself.
///  - A null record gives the result that is listed, or nothing happens. No call reports through
///    `nErrno`.
///  - Any thread may make any call, but for set-up and end: nobody else may use the list then.
///
/// \par Example
/// \include lists.c

#include "zebcomn/export.h"
#include "zebcomn/lists/ll.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/portable/types.h"

/// A list with its lock. Only the library changes it.
typedef struct tiSLL {
  tiLL_head_t head;     ///< The elements.
  tiSO_SELock_t* lock;  ///< Null when it could not be had.
} tiSLL_t;

/// What tiSLL_XGetHead() returns when the lock is refused: all ones, as no element's address is.
#define TISLL_LOCK_REFUSED ((tiLL_element_t*)(intptr_t)-1)

ZEBCOMN_BEGIN_C

/// Makes an empty list. The caller gives it back with tiSLL_Release().
/// \param list where the list goes; null when memory is exhausted.
/// \return 0x80000008 when there is no memory for the record, or `list` is null; else 0, also when
///   there was no memory for its lock: test the pointer.
ZEBCOMN_EXPORT uint32_t tiSLL_Create(tiSLL_t** list);

/// Makes a record of the caller's an empty list. To be ended with tiSLL_Uninit().
/// \param list the record.
/// \return 0, or 0x80000008 when there is no memory for the lock or `list` is null.
ZEBCOMN_EXPORT uint32_t tiSLL_Init(tiSLL_t* list);

/// Frees the list's lock. The elements are left as they are.
/// \param list a list that tiSLL_Init() made.
ZEBCOMN_EXPORT void tiSLL_Uninit(tiSLL_t* list);

/// tiSLL_Uninit(), then frees the record.
/// \param list a list that tiSLL_Create() made.
ZEBCOMN_EXPORT void tiSLL_Release(tiSLL_t* list);

/// Puts an element before the first one.
/// \param list the list.
/// \param element the element.
ZEBCOMN_EXPORT void tiSLL_XInsertHead(tiSLL_t* list, tiLL_element_t* element);

/// Takes the first element out of the list.
/// \param list the list.
/// \return the element, or null when the list is empty.
ZEBCOMN_EXPORT tiLL_element_t* tiSLL_XRemoveHead(tiSLL_t* list);

/// Begins a walk: takes the lock with tiSO_SELock() and these flags.
/// \param list the list.
/// \param exclusive not 0 = the walk may change the list.
/// \param wait 0 = never wait.
/// \return the first element, or null when the list is empty, both with the lock held;
/// TISLL_LOCK_REFUSED when the lock is refused; null for a null record, and then nothing is held.
ZEBCOMN_EXPORT tiLL_element_t* tiSLL_XGetHead(tiSLL_t* list, BOOL exclusive, BOOL wait);

/// Ends a walk: gives one grant of the lock back.
/// \param list the list.
ZEBCOMN_EXPORT void tiSLL_LockRelease(tiSLL_t* list);

/// Looks under the shared lock, behind queued exclusive requests.
/// \param list the list.
/// \return 1 when the list is empty or the record is null, else 0.
ZEBCOMN_EXPORT BOOL tiSLL_IsEmpty(tiSLL_t* list);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_SLL_H_
