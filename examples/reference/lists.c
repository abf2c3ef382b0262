/* Elements of the caller's in a list with a lock; a walk under the exclusive lock takes some out.
 */
#include <stdio.h>
#include <zebcomn/lists/ll.h>
#include <zebcomn/lists/ll2.h>
#include <zebcomn/lists/sll.h>
#include <zebcomn/lists/sll2.h>
#include <zebcomn/lists/thread_attach.h>

typedef struct {
  tiLL2_element_t link; /* first, so that its address is the element's */
  int number;
} Element;

int main(void) {
  Element elements[3] = {{{NULL, NULL}, 1}, {{NULL, NULL}, 2}, {{NULL, NULL}, 3}};
  tiSLL2_t* list = NULL;
  if (tiSO_ProcessAttach() == TIV_INVALID_DWORD || tiSO_ThreadAttach() == 0) return 1;
  if (tiSLL2_Create(&list) != ZEBCOMN_STATUS_OK || list == NULL) return 1;
  for (int i = 0; i < 3; ++i) tiSLL2_XInsertTail(list, &elements[i].link);

  tiLL2_element_t* current = tiSLL2_XGetHead(list, TRUE, TRUE);
  while (!tiLL2_XIsEnd(current)) {
    tiLL2_element_t* next = tiLL2_XGetNext(current);
    if (((Element*)current)->number == 2) tiLL2_XRemove(current);
    current = next;
  }
  tiSLL2_LockRelease(list);

  Element* first = (Element*)tiSLL2_XRemoveHead(list);
  Element* last = (Element*)tiSLL2_XRemoveTail(list);
  printf("%d, %d\n", first->number, last->number);
  int ok = first == &elements[0] && last == &elements[2] && tiSLL2_IsEmpty(list);
  tiSLL2_Release(list);
  return tiSO_ThreadDetach() && tiSO_ProcessDetach() && ok ? 0 : 1;
}
