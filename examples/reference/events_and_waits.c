/* One thread tells another that something is done. */
#include <stdio.h>
#include <zebcomn/portable/event.h>
#include <zebcomn/portable/handle.h>
#include <zebcomn/portable/mutex.h>
#include <zebcomn/portable/thread.h>
#include <zebcomn/portable/wait.h>

static DWORD Work(void* done) {
  return tivSetEvent(done) ? 0 : 1;
}

int main(void) {
  HANDLE done = tivCreateEvent(NULL, TRUE, FALSE, NULL);
  HANDLE turn = tivCreateMutex(NULL, FALSE, NULL);
  HANDLE worker = tivCreateThread(NULL, 0, Work, done, 0, NULL);
  if (done == NULL || turn == NULL || worker == NULL) return 1;

  /* Whole seconds: see the warning at tivWaitForSingleObject(). */
  DWORD event_wait = tivWaitForSingleObject(done, 60000);
  DWORD thread_wait = tivWaitForSingleObject(worker, TIV_WAIT_INFINITE);
  DWORD mutex_wait = tivWaitForSingleObject(turn, 0);
  printf("event %u, thread %u, mutex %u\n", event_wait, thread_wait, mutex_wait);

  tivReleaseMutex(turn);
  tivCloseHandle(worker);
  tivCloseHandle(turn);
  tivCloseHandle(done);
  return event_wait == TIV_WAIT_SIGNALLED && thread_wait == TIV_WAIT_SIGNALLED &&
                 mutex_wait == TIV_WAIT_SIGNALLED
             ? 0
             : 1;
}
