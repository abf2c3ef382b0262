#include "zebcomn/lists/ll.h"

static_assert(sizeof(tiLL_element_t) == sizeof(void*), "an element begins with one pointer");

void tiLL_Init(tiLL_head_t* head) {
  if (head != nullptr) head->next = nullptr;
}

BOOL tiLL_IsEmpty(const tiLL_head_t* head) {
  return head == nullptr || head->next == nullptr ? TRUE : FALSE;
}

void tiLL_XInsertHead(tiLL_head_t* head, tiLL_element_t* element) {
  if (head == nullptr || element == nullptr) return;
  element->next = head->next;
  head->next = element;
}

tiLL_element_t* tiLL_XRemoveHead(tiLL_head_t* head) {
  if (head == nullptr || head->next == nullptr) return nullptr;
  tiLL_element_t* first = head->next;
  head->next = first->next;
  return first;
}

tiLL_element_t* tiLL_XGetStart(tiLL_head_t* head) {
  return head;
}

tiLL_element_t* tiLL_XGetNext(const tiLL_element_t* element) {
  return element == nullptr ? nullptr : element->next;
}

BOOL tiLL_XIsEnd(const tiLL_element_t* element) {
  return element == nullptr ? TRUE : FALSE;
}

void tiLL_XRemove(tiLL_element_t* previous, tiLL_element_t* element) {
  if (previous == nullptr || element == nullptr) return;
  previous->next = element->next;
}
