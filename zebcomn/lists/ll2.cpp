#include "zebcomn/lists/ll2.h"

#include <cstddef>

static_assert(offsetof(tiLL2_element_t, next) == 0, "next is the first field");
static_assert(offsetof(tiLL2_element_t, previous) == sizeof(void*), "previous is the second field");
static_assert(sizeof(tiLL2_element_t) == 2 * sizeof(void*), "two pointers and nothing more");

tiLL2_element_t* tiLL2_XGetNext(const tiLL2_element_t* element) {
  return element == nullptr ? nullptr : element->next;
}

tiLL2_element_t* tiLL2_XGetPrev(const tiLL2_element_t* element) {
  return element == nullptr ? nullptr : element->previous;
}

BOOL tiLL2_XIsEnd(const tiLL2_element_t* element) {
  return element == nullptr || element->next == element ? TRUE : FALSE;
}

void tiLL2_XRemove(tiLL2_element_t* element) {
  if (element == nullptr) return;
  if (element->next != nullptr) element->next->previous = element->previous;
  if (element->previous != nullptr) element->previous->next = element->next;
}
