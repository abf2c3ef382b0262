/* A thread with a value of its own in a slot that all threads share, and a common counter. */
#include <stdio.h>
#include <zebcomn/portable/handle.h>
#include <zebcomn/portable/interlocked.h>
#include <zebcomn/portable/thread.h>
#include <zebcomn/portable/tls.h>
#include <zebcomn/portable/wait.h>

static DWORD slot;
static LONG finished;

static DWORD Work(void* name) {
  tivTlsSetValue(slot, name);
  printf("this is %s\n", (const char*)tivTlsGetValue(slot));
  tivInterlockedIncrement(&finished);
  return 0;
}

int main(void) {
  slot = tivTlsAlloc();
  if (slot == TIV_INVALID_DWORD) return 1;
  HANDLE worker = tivCreateThread(NULL, 0, Work, "the worker", 0, NULL);
  if (worker == NULL) return 1;
  tivWaitForSingleObject(worker, TIV_WAIT_INFINITE);
  tivCloseHandle(worker);

  /* The end of the worker has freed every slot of the process, this one included. */
  int slot_is_gone = tivTlsSetValue(slot, NULL) == FALSE;
  return slot_is_gone && finished == 1 ? 0 : 1;
}
