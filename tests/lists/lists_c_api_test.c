/* The lock and the lists as a C program uses them. Ends with 0 when everything was as it should be.
 */
#include <stdio.h>
#include <stdlib.h>

#include "zebcomn/zebcomn.h"

static int failures = 0;

static void Expect(int condition, const char* what) {
  if (condition) return;
  ++failures;
  fprintf(stderr, "lists_c_api_test: not so: %s\n", what);
}

#define EXPECT(condition) Expect((condition), #condition)

static uint32_t Count(uintptr_t first, uint32_t event_code, uintptr_t second, uint32_t zero) {
  *(uint32_t*)first += event_code == TISO_EVENT_FREE && second == 5 && zero == 0;
  return 0;
}

static void CheckLock(void) {
  tiSO_SELock_t* lock = NULL;
  uint32_t told = 0;
  EXPECT(tiSO_SELockCreate(&lock) == ZEBCOMN_STATUS_OK);
  EXPECT(lock->state == TISO_STATE_CREATED && lock->owner == TISO_NO_THREAD);
  EXPECT(tiSO_SELockExclusive(lock, 1) == TRUE);
  EXPECT(lock->owner == tiSO_GetThread() && lock->count == 1);
  tiSO_SELockExclusiveToShared(lock);
  EXPECT(tiSO_SELockSharedWaitForExclusive(lock, 0) == TRUE);
  EXPECT(tiSO_SELock(lock, 1, 0) == FALSE);
  EXPECT(tiSO_SELockExclusiveNotify(lock, Count, (uintptr_t)&told, 5) == FALSE);
  tiSO_SELockRelease(lock);
  tiSO_SELockRelease(lock);
  EXPECT(told == 1 && lock->count == 0);
  tiSO_Release(lock);
}

typedef struct {
  tiLL_element_t link;
  int number;
} single_t;

static void CheckSingleList(void) {
  single_t elements[] = {{{NULL}, 1}, {{NULL}, 2}};
  tiSLL_t* list = NULL;
  int sum = 0;
  tiLL_element_t* link = NULL;
  EXPECT(tiSLL_Create(&list) == ZEBCOMN_STATUS_OK && list != NULL);
  tiSLL_XInsertHead(list, &elements[0].link);
  tiSLL_XInsertHead(list, &elements[1].link);
  link = tiSLL_XGetHead(list, 0, 1);
  EXPECT(link != TISLL_LOCK_REFUSED);
  for (; !tiLL_XIsEnd(link); link = tiLL_XGetNext(link)) sum = 10 * sum + ((single_t*)link)->number;
  tiSLL_LockRelease(list);
  EXPECT(sum == 21);
  tiSLL_Release(list);
}

typedef struct {
  tiLL2_element_t links;
  int number;
} doubled_t;

static void CheckDoubleList(void) {
  doubled_t elements[] = {{{NULL, NULL}, 1}, {{NULL, NULL}, 2}};
  tiSLL2_t list;
  int sum = 0;
  tiLL2_element_t* links = NULL;
  EXPECT(tiSLL2_Init(&list) == ZEBCOMN_STATUS_OK);
  tiSLL2_XInsertTail(&list, &elements[0].links);
  tiSLL2_XInsertTail(&list, &elements[1].links);
  for (links = tiSLL2_XGetHead(&list, 0, 1); !tiLL2_XIsEnd(links); links = tiLL2_XGetNext(links)) {
    sum = 10 * sum + ((doubled_t*)links)->number;
  }
  tiSLL2_LockRelease(&list);
  EXPECT(sum == 12);
  tiSLL2_Uninit(&list);
}

static void CheckCountedList(void) {
  struct {
    void* previous;
    void* next;
  } elements[2];
  void* list = NULL;
  EXPECT(LinkedList_Init(&list) == TRUE);
  EXPECT(LinkedList_AddTail(list, &elements[0]) == TRUE);
  EXPECT(LinkedList_AddTail(list, &elements[1]) == TRUE);
  EXPECT(LinkedList_GetCount(list) == 2);
  EXPECT(LinkedList_PeekAt(list, 1) == &elements[1]);
  EXPECT(LinkedList_RemoveAt(list, 0) == &elements[0]);
  LinkedList_End(&list);
  EXPECT(list == NULL);
}

int main(void) {
  LONG word = 0;
  EXPECT(tiSO_ProcessAttach() == tiSO_tls_index);
  EXPECT(tiSO_ThreadAttach() == TRUE);
  tiSL_Get(&word);
  tiSL_Release(&word);
  EXPECT(word == 0);
  CheckLock();
  CheckSingleList();
  CheckDoubleList();
  CheckCountedList();
  EXPECT(tiSO_ThreadDetach() == TRUE);
  EXPECT(tiSO_ProcessDetach() == TRUE);
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
