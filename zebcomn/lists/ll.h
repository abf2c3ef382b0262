#ifndef ZEBCOMN_LISTS_LL_H_
#define ZEBCOMN_LISTS_LL_H_

/// \file
/// The singly linked list. C11 and C++17.
///
/// The list is intrusive: the caller's element begins with a tiLL_element_t. The list never
/// allocates or frees an element; an element belongs to the caller and is in one list at a time.
///
/// Nothing here locks, although most names carry the X that elsewhere marks a locked operation: a
/// list is for one thread at a time, or under a lock of the caller's. Every function takes null for
/// any pointer; where no result is given for it, it then does nothing. No call touches `nErrno`.
///
/// A walk that may take elements out on its way:
///
///     tiLL_element_t* previous = tiLL_XGetStart(&head);
///     tiLL_element_t* current = tiLL_XGetNext(previous);
///     while (!tiLL_XIsEnd(current)) {
///       if (unwanted(current)) {
///         tiLL_XRemove(previous, current);
///       } else {
///         previous = current;
///       }
///       current = tiLL_XGetNext(previous);
///     }
///
/// \par Example
/// \include lists.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

/// The link that an element begins with.
typedef struct tiLL_element {
  struct tiLL_element* next;  ///< The next element; null at the end.
} tiLL_element_t;

/// A list: `next` is its first element, null when it is empty. It has an element's shape, because a
/// walk begins with the head as the element before the first.
typedef tiLL_element_t tiLL_head_t;

ZEBCOMN_BEGIN_C

/// Makes the list empty. Elements that it held are left as they are.
/// \param head the list.
ZEBCOMN_EXPORT void tiLL_Init(tiLL_head_t* head);

/// Tells whether the list is empty.
/// \param head the list.
/// \return 1 when the list is empty or `head` is null, else 0.
ZEBCOMN_EXPORT BOOL tiLL_IsEmpty(const tiLL_head_t* head);

/// Puts an element before the first one.
/// \param head the list.
/// \param element the element.
ZEBCOMN_EXPORT void tiLL_XInsertHead(tiLL_head_t* head, tiLL_element_t* element);

/// Takes the first element out of the list. The element's own link keeps its value.
/// \param head the list.
/// \return the element, or null when the list is empty or `head` is null.
ZEBCOMN_EXPORT tiLL_element_t* tiLL_XRemoveHead(tiLL_head_t* head);

/// Begins a walk.
/// \param head the list.
/// \return the head itself, as the element before the first one. It is where a walk begins.
ZEBCOMN_EXPORT tiLL_element_t* tiLL_XGetStart(tiLL_head_t* head);

/// Steps to the next element.
/// \param element an element, or what tiLL_XGetStart() gave.
/// \return the element after `element`; null after the last one and for null.
ZEBCOMN_EXPORT tiLL_element_t* tiLL_XGetNext(const tiLL_element_t* element);

/// Tells where a walk ends.
/// \param element what tiLL_XGetNext() gave.
/// \return 1 when `element` is null, which is where a walk ends, else 0.
ZEBCOMN_EXPORT BOOL tiLL_XIsEnd(const tiLL_element_t* element);

/// Takes `element` out of its list. Its own link keeps its value.
/// \param previous the element before it, or what tiLL_XGetStart gave when it is the first.
/// \param element the element.
ZEBCOMN_EXPORT void tiLL_XRemove(tiLL_element_t* previous, tiLL_element_t* element);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_LL_H_
