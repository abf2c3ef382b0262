/* A list by index. Its elements begin with two pointers, previous and next. */
#include <stdio.h>
#include <zebcomn/lists/Linklist.h>

typedef struct {
  void* previous;
  void* next;
  int number;
} Element;

int main(void) {
  Element elements[2] = {{NULL, NULL, 1}, {NULL, NULL, 2}};
  void* list = NULL;
  if (!LinkedList_Init(&list)) return 1;
  LinkedList_AddTail(list, &elements[0]);
  LinkedList_AddHead(list, &elements[1]);

  const Element* front = LinkedList_PeekAt(list, 0);
  printf("%u elements, %d in front\n", LinkedList_GetCount(list), front->number);
  int ok = LinkedList_GetCount(list) == 2 && LinkedList_RemoveAt(list, 0) == &elements[1] &&
           LinkedList_RemoveTail(list) == &elements[0];
  LinkedList_End(&list);
  return ok && list == NULL ? 0 : 1;
}
