#include "zebcomn/lists/sll.h"

#include <cstddef>
#include <cstdlib>

#include "zebcomn/lists/held_se_lock_internal.h"

using zebcomn::HeldSeLock;

static_assert(offsetof(tiSLL_t, head) == 0, "the head is the first field");
static_assert(offsetof(tiSLL_t, lock) == sizeof(void*), "the lock is the second field");
static_assert(sizeof(tiSLL_t) == 2 * sizeof(void*), "two pointers and nothing more");

uint32_t tiSLL_Create(tiSLL_t** list) {
  if (list == nullptr) return ZEBCOMN_STATUS_FAILURE;
  *list = static_cast<tiSLL_t*>(std::malloc(sizeof(tiSLL_t)));
  if (*list == nullptr) return ZEBCOMN_STATUS_FAILURE;
  if (tiSLL_Init(*list) != ZEBCOMN_STATUS_OK) {
    // Kept: a success with a null list; callers test the pointer.
    std::free(*list);
    *list = nullptr;
  }
  return ZEBCOMN_STATUS_OK;
}

uint32_t tiSLL_Init(tiSLL_t* list) {
  if (list == nullptr) return ZEBCOMN_STATUS_FAILURE;
  tiLL_Init(&list->head);
  return tiSO_SELockCreate(&list->lock);
}

void tiSLL_Uninit(tiSLL_t* list) {
  if (list == nullptr) return;
  tiSO_Release(list->lock);
  list->lock = nullptr;
}

void tiSLL_Release(tiSLL_t* list) {
  tiSLL_Uninit(list);
  std::free(list);
}

void tiSLL_XInsertHead(tiSLL_t* list, tiLL_element_t* element) {
  if (list == nullptr) return;
  const HeldSeLock lock = HeldSeLock::Exclusive(list->lock);
  if (lock.held()) tiLL_XInsertHead(&list->head, element);
}

tiLL_element_t* tiSLL_XRemoveHead(tiSLL_t* list) {
  if (list == nullptr) return nullptr;
  const HeldSeLock lock = HeldSeLock::Exclusive(list->lock);
  return lock.held() ? tiLL_XRemoveHead(&list->head) : nullptr;
}

tiLL_element_t* tiSLL_XGetHead(tiSLL_t* list, BOOL exclusive, BOOL wait) {
  if (list == nullptr) return nullptr;
  // Kept: a refusal is told from an empty list here, unlike in tiSLL2_XGetHead.
  if (tiSO_SELock(list->lock, exclusive, wait) == FALSE) return TISLL_LOCK_REFUSED;
  return list->head.next;
}

void tiSLL_LockRelease(tiSLL_t* list) {
  if (list != nullptr) tiSO_SELockRelease(list->lock);
}

BOOL tiSLL_IsEmpty(tiSLL_t* list) {
  if (list == nullptr) return TRUE;
  const HeldSeLock lock = HeldSeLock::Shared(list->lock);
  return lock.held() ? tiLL_IsEmpty(&list->head) : TRUE;
}
