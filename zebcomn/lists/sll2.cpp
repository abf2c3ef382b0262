#include "zebcomn/lists/sll2.h"

#include <cstddef>
#include <cstdlib>

#include "zebcomn/lists/held_se_lock_internal.h"

using zebcomn::HeldSeLock;

namespace {

static_assert(offsetof(tiSLL2_t, head) == 0, "the head sentinel is the first field");
static_assert(offsetof(tiSLL2_t, tail) == 2 * sizeof(void*), "the tail sentinel follows the head");
static_assert(offsetof(tiSLL2_t, lock) == 4 * sizeof(void*), "the lock is the last field");
static_assert(sizeof(tiSLL2_t) == 5 * sizeof(void*), "five pointers and nothing more");

void InsertBetween(tiLL2_element_t* previous, tiLL2_element_t* element, tiLL2_element_t* next) {
  element->next = next;
  element->previous = previous;
  previous->next = element;
  next->previous = element;
}

/// Unlinks `element`, unless it is a sentinel. \return the element, or null for a sentinel.
tiLL2_element_t* RemoveUnlessSentinel(tiLL2_element_t* element) {
  if (element->next == element || element->previous == element) return nullptr;
  tiLL2_XRemove(element);
  return element;
}

}  // namespace

uint32_t tiSLL2_Create(tiSLL2_t** list) {
  if (list == nullptr) return ZEBCOMN_STATUS_FAILURE;
  *list = static_cast<tiSLL2_t*>(std::malloc(sizeof(tiSLL2_t)));
  if (*list == nullptr) return ZEBCOMN_STATUS_FAILURE;
  if (tiSLL2_Init(*list) != ZEBCOMN_STATUS_OK) {
    // Kept: a success with a null list; callers test the pointer.
    std::free(*list);
    *list = nullptr;
  }
  return ZEBCOMN_STATUS_OK;
}

uint32_t tiSLL2_Init(tiSLL2_t* list) {
  if (list == nullptr) return ZEBCOMN_STATUS_FAILURE;
  list->head = {&list->tail, &list->head};
  list->tail = {&list->tail, &list->head};
  return tiSO_SELockCreate(&list->lock);
}

void tiSLL2_Uninit(tiSLL2_t* list) {
  if (list == nullptr) return;
  while (tiSLL2_XRemoveHead(list) != nullptr) {
  }
  tiSO_Release(list->lock);
  list->lock = nullptr;
}

void tiSLL2_Release(tiSLL2_t* list) {
  tiSLL2_Uninit(list);
  std::free(list);
}

void tiSLL2_XInsertHead(tiSLL2_t* list, tiLL2_element_t* element) {
  if (list == nullptr || element == nullptr) return;
  const HeldSeLock lock = HeldSeLock::Exclusive(list->lock);
  if (lock.held()) InsertBetween(&list->head, element, list->head.next);
}

void tiSLL2_XInsertTail(tiSLL2_t* list, tiLL2_element_t* element) {
  if (list == nullptr || element == nullptr) return;
  const HeldSeLock lock = HeldSeLock::Exclusive(list->lock);
  if (lock.held()) InsertBetween(list->tail.previous, element, &list->tail);
}

tiLL2_element_t* tiSLL2_XRemoveHead(tiSLL2_t* list) {
  if (list == nullptr) return nullptr;
  const HeldSeLock lock = HeldSeLock::Exclusive(list->lock);
  return lock.held() ? RemoveUnlessSentinel(list->head.next) : nullptr;
}

tiLL2_element_t* tiSLL2_XRemoveTail(tiSLL2_t* list) {
  if (list == nullptr) return nullptr;
  const HeldSeLock lock = HeldSeLock::Exclusive(list->lock);
  return lock.held() ? RemoveUnlessSentinel(list->tail.previous) : nullptr;
}

tiLL2_element_t* tiSLL2_XGetHead(tiSLL2_t* list, BOOL exclusive, BOOL wait) {
  if (list == nullptr) return nullptr;
  // Kept: null for a refusal, where tiSLL_XGetHead gives all ones.
  if (tiSO_SELock(list->lock, exclusive, wait) == FALSE) return nullptr;
  return list->head.next;
}

void tiSLL2_LockRelease(tiSLL2_t* list) {
  if (list != nullptr) tiSO_SELockRelease(list->lock);
}

BOOL tiSLL2_IsEmpty(tiSLL2_t* list) {
  if (list == nullptr) return TRUE;
  const HeldSeLock lock = HeldSeLock::Shared(list->lock);
  return lock.held() ? tiLL2_XIsEnd(list->head.next) : TRUE;
}
