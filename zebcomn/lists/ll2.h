#ifndef ZEBCOMN_LISTS_LL2_H_
#define ZEBCOMN_LISTS_LL2_H_

/// \file
/// The doubly linked list between two sentinels. C11 and C++17.
///
/// The list is intrusive: the caller's element begins with a tiLL2_element_t. A list is two
/// sentinel elements, laid out one after the other. The head sentinel's previous points to itself
/// and its next to the first element, or to the tail sentinel; the tail sentinel's next points to
/// itself and its previous to the last element, or to the head sentinel. So an element whose next
/// points to itself is the end, and no walk meets a null. tiSLL2_Init lays such a list out.
///
/// Nothing here locks: a list is for one thread at a time, or under a lock of the caller's. No call
/// touches `nErrno`.
///
/// \par Example
/// \include lists.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

/// The links that an element begins with.
typedef struct tiLL2_element {
  struct tiLL2_element* next;      ///< Towards the tail sentinel, whose own points to itself.
  struct tiLL2_element* previous;  ///< Towards the head sentinel, whose own points to itself.
} tiLL2_element_t;

ZEBCOMN_BEGIN_C

/// Steps towards the tail.
/// \param element an element or a sentinel.
/// \return the element after `element`; null for null.
ZEBCOMN_EXPORT tiLL2_element_t* tiLL2_XGetNext(const tiLL2_element_t* element);

/// Steps towards the head.
/// \param element an element or a sentinel.
/// \return the element before `element`; null for null.
ZEBCOMN_EXPORT tiLL2_element_t* tiLL2_XGetPrev(const tiLL2_element_t* element);

/// Tells where a walk ends.
/// \param element an element or a sentinel.
/// \return 1 when `element` is null or the tail sentinel, which is where a walk ends, else 0.
ZEBCOMN_EXPORT BOOL tiLL2_XIsEnd(const tiLL2_element_t* element);

/// Joins the element's two neighbours. The element's own links keep their values, so removing it a
/// second time would join them again. A link that is null is skipped; a null element does nothing.
/// \param element the element.
ZEBCOMN_EXPORT void tiLL2_XRemove(tiLL2_element_t* element);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_LL2_H_
