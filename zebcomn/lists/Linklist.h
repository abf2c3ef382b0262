#ifndef ZEBCOMN_LISTS_LINKLIST_H_
#define ZEBCOMN_LISTS_LINKLIST_H_

/// \file
/// A counted, doubly linked list with access by index. C11 and C++17.
///
/// The list is intrusive: the caller's element begins with two pointers, first the previous element
/// (towards the head), then the next one (towards the tail). The list never allocates, copies or
/// frees an element; an element belongs to the caller and is in one list at a time. An element may
/// sit at any byte address: the two pointers are read and written byte by byte.
///
/// A list is held as an untyped handle (`void*`) that LinkedList_Init makes and LinkedList_End
/// ends. Indexes are 0-based and counted from the head.
///
/// Programming errors end the process through the C library's assertion message, in every build:
/// "<program>: Linklist:<line>: <function>: Assertion `<expression>' failed." Each call names its
/// own. No call touches `nErrno`.
///
/// There is no lock: a list and its elements are for one thread at a time.
///
/// \par Example
/// \include counted_list.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Makes an empty list and stores its handle. The caller ends it with LinkedList_End.
/// \param lphLinkedList where the handle goes; null fails the assertion "lphLinkedList" (line 31).
/// \return 1, or 0 when memory is exhausted; `*lphLinkedList` is then left as it was.
ZEBCOMN_EXPORT BOOL LinkedList_Init(void** lphLinkedList);

/// Ends a list and sets the handle to null. The elements are left as they are. A null pointer and a
/// null handle do nothing.
/// \param lphLinkedList the handle.
ZEBCOMN_EXPORT void LinkedList_End(void** lphLinkedList);

/// Puts an element before the first one. Its two links are overwritten.
/// \param hLinkedList the list.
/// \param lpElement the element.
/// \return 1, or 0 when the list or the element is null.
ZEBCOMN_EXPORT BOOL LinkedList_AddHead(void* hLinkedList, void* lpElement);

/// Puts an element after the last one. Its two links are overwritten.
/// \param hLinkedList the list.
/// \param lpElement the element.
/// \return 1, or 0 when the list or the element is null.
ZEBCOMN_EXPORT BOOL LinkedList_AddTail(void* hLinkedList, void* lpElement);

/// Takes the last element out of the list. The element's own links keep their values.
/// \param hLinkedList the list.
/// \return the element, or null when the list is null or empty.
ZEBCOMN_EXPORT void* LinkedList_RemoveTail(void* hLinkedList);

/// Counts the elements.
/// \param hLinkedList the list.
/// \return how many elements the list holds.
/// A null list fails the assertion "lpMain" (line 167).
ZEBCOMN_EXPORT DWORD LinkedList_GetCount(void* hLinkedList);

/// Finds the element at an index and leaves it in the list.
/// \param hLinkedList the list.
/// \param dwIndex counted from the head, from 0.
/// \return the element, or null when the index is not below the count.
/// The list must not be null: it is not tested. A null link on the way, which only a broken list
/// has, fails the assertion "lpItem" (line 200).
ZEBCOMN_EXPORT void* LinkedList_PeekAt(void* hLinkedList, DWORD dwIndex);

/// Takes the element at an index out of the list. The element's own links keep their values.
/// \param hLinkedList the list.
/// \param dwIndex counted from the head, from 0.
/// \return the element, or null when the list is null or the index is not below the count.
/// A broken list fails an assertion: "lpMain->lpTail" (line 238) when the last of several elements
/// is asked for and there is no tail, "lpItem" (line 245) when a null link is met on the way.
ZEBCOMN_EXPORT void* LinkedList_RemoveAt(void* hLinkedList, DWORD dwIndex);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_LINKLIST_H_
