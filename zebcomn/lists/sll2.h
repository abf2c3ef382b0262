#ifndef ZEBCOMN_LISTS_SLL2_H_
#define ZEBCOMN_LISTS_SLL2_H_

/// \file
/// The doubly linked list with a lock of its own. C11 and C++17.
///
/// Rules of all calls:
///  - The list never allocates or frees an element; an element begins with a tiLL2_element_t,
///    belongs to the caller and is in one list at a time.
///  - The calls on elements take the list's lock themselves: inserts and removals exclusively and
///    with waiting. The calling thread must be attached (thread_attach.h). A thread that is not
///    attached, and any thread on a list whose tiSLL2_Init() failed, finds the list empty and
///    unchanged where the lock is refused to it.
///  - A walk holds the lock from tiSLL2_XGetHead() to tiSLL2_LockRelease() and steps with
///    tiLL2_XGetNext() until tiLL2_XIsEnd(), which is the tail sentinel. In a walk that is
///    exclusive the same thread may insert and remove; in a shared one it would wait for itself.
///  - A null record gives the result that is listed, or nothing happens; so does a null element. No
///    call reports through `nErrno`.
///  - Any thread may make any call, but for set-up and end: nobody else may use the list then. A
///    record must not be moved, since its sentinels point to each other.
///
/// \par Example
/// \include lists.c

#include "zebcomn/export.h"
#include "zebcomn/lists/ll2.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/portable/types.h"

/// A list with its lock. Only the library changes it.
typedef struct tiSLL2 {
  tiLL2_element_t head;  ///< The head sentinel.
  tiLL2_element_t tail;  ///< The tail sentinel.
  tiSO_SELock_t* lock;   ///< Null when it could not be had.
} tiSLL2_t;

ZEBCOMN_BEGIN_C

/// Makes an empty list. The caller gives it back with tiSLL2_Release().
/// \param list where the list goes; null when memory is exhausted.
/// \return 0x80000008 when there is no memory for the record, or `list` is null; else 0, also when
/// there was no memory for its lock: test the pointer.
ZEBCOMN_EXPORT uint32_t tiSLL2_Create(tiSLL2_t** list);

/// Makes a record of the caller's an empty list. To be ended with tiSLL2_Uninit().
/// \param list the record.
/// \return 0, or 0x80000008 when there is no memory for the lock or `list` is null.
ZEBCOMN_EXPORT uint32_t tiSLL2_Init(tiSLL2_t* list);

/// Takes every element out of the list, without freeing it, and frees the list's lock.
/// \param list a list that tiSLL2_Init() made.
ZEBCOMN_EXPORT void tiSLL2_Uninit(tiSLL2_t* list);

/// tiSLL2_Uninit(), then frees the record.
/// \param list a list that tiSLL2_Create() made.
ZEBCOMN_EXPORT void tiSLL2_Release(tiSLL2_t* list);

/// Puts an element before the first one.
/// \param list the list.
/// \param element the element.
ZEBCOMN_EXPORT void tiSLL2_XInsertHead(tiSLL2_t* list, tiLL2_element_t* element);

/// Puts an element after the last one.
/// \param list the list.
/// \param element the element.
ZEBCOMN_EXPORT void tiSLL2_XInsertTail(tiSLL2_t* list, tiLL2_element_t* element);

/// Takes the first element out of the list. The element's own links keep their values.
/// \param list the list.
/// \return the element, or null when the list is empty.
ZEBCOMN_EXPORT tiLL2_element_t* tiSLL2_XRemoveHead(tiSLL2_t* list);

/// Takes the last element out of the list. The element's own links keep their values.
/// \param list the list.
/// \return the element, or null when the list is empty.
ZEBCOMN_EXPORT tiLL2_element_t* tiSLL2_XRemoveTail(tiSLL2_t* list);

/// Begins a walk: takes the lock with tiSO_SELock() and these flags.
/// \param list the list.
/// \param exclusive not 0 = the walk may change the list.
/// \param wait 0 = never wait.
/// \return with the lock held, the first element, which is the tail sentinel when the list is
/// empty; null when the lock is refused or the record is null, and then nothing is held.
ZEBCOMN_EXPORT tiLL2_element_t* tiSLL2_XGetHead(tiSLL2_t* list, BOOL exclusive, BOOL wait);

/// Ends a walk: gives one grant of the lock back.
/// \param list the list.
ZEBCOMN_EXPORT void tiSLL2_LockRelease(tiSLL2_t* list);

/// Looks under the shared lock, behind queued exclusive requests.
/// \param list the list.
/// \return 1 when the list is empty or the record is null, else 0.
ZEBCOMN_EXPORT BOOL tiSLL2_IsEmpty(tiSLL2_t* list);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_SLL2_H_
