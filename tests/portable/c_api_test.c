/* The portability layer as a C program uses it. Ends with 0 when everything was as it should be. */
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "tests/portable/c_api_routine.h"
#include "zebcomn/zebcomn.h"

static int failures = 0;

static void Expect(int condition, const char* what) {
  if (condition) return;
  ++failures;
  fprintf(stderr, "c_api_test: not so: %s\n", what);
}

#define EXPECT(condition) Expect((condition), #condition)

static DWORD SetEventOf(void* event) {
  return (DWORD)tivSetEvent(event);
}

static void CheckEvents(void) {
  HANDLE event = tivCreateEvent(NULL, 1, 0, NULL);
  EXPECT(event != NULL);
  EXPECT(((struct _tivHandleObject_t*)event)->nType == TIV_HANDLE_EVENT);
  EXPECT(tivWaitForSingleObject(event, 0) == TIV_WAIT_TIMEOUT);
  EXPECT(tivSetEvent(event) == TRUE);
  EXPECT(tivWaitForSingleObject(event, TIV_WAIT_INFINITE) == TIV_WAIT_SIGNALLED);
  EXPECT(tivResetEvent(event) == TRUE);
  EXPECT(tivCloseHandle(event) == TRUE);
  EXPECT(tivCreateEvent(NULL, 0, 0, NULL) == NULL);
  EXPECT(nErrno == 22);
  EXPECT(tivCloseHandle(TIV_INVALID_HANDLE) == TRUE);
}

static void CheckMutexes(void) {
  HANDLE mutex = tivCreateMutex(NULL, 1, NULL);
  EXPECT(mutex != NULL);
  EXPECT(tivReleaseMutex(mutex) == TRUE);
  EXPECT(tivWaitForMultipleObjects(1, &mutex, 0, 10) == TIV_WAIT_SIGNALLED);
  EXPECT(tivReleaseMutex(mutex) == TRUE);
  EXPECT(tivCloseHandle(mutex) == TRUE);
  EXPECT(tivOpenMutex(0, 0, "name") == NULL);
}

static void CheckThreads(void) {
  DWORD id = 77;
  HANDLE event = tivCreateEvent(NULL, 1, 0, "");
  HANDLE thread = tivCreateThread(NULL, 0, SetEventOf, event, 0, &id);
  EXPECT(thread != NULL && id == 0);
  EXPECT(tivWaitForSingleObject(thread, TIV_WAIT_INFINITE) == TIV_WAIT_SIGNALLED);
  EXPECT(tivWaitForSingleObject(event, 0) == TIV_WAIT_SIGNALLED);
  EXPECT(tivCloseHandle(thread) == TRUE);
  EXPECT(tivCloseHandle(event) == TRUE);
}

/* Code without unwind tables, as C code may be: leaving the thread still signals its handle. */
static void CheckLeavingThread(void) {
  HANDLE thread = tivBeginThread(NULL, 0, LeaveThread, NULL, 0, NULL);
  EXPECT(thread != TIV_INVALID_HANDLE);
  EXPECT(tivWaitForSingleObject(thread, TIV_WAIT_INFINITE) == TIV_WAIT_SIGNALLED);
  EXPECT(tivCloseHandle(thread) == TRUE);
}

static void CheckSlotsAndCounters(void) {
  LONG counter = 4;
  DWORD slot = tivTlsAlloc();
  EXPECT(slot < TIV_TLS_SLOT_COUNT);
  EXPECT(pTlsKeyTable[slot] != NULL);
  EXPECT(tivTlsSetValue(slot, &counter) == TRUE);
  EXPECT(tivTlsGetValue(slot) == &counter);
  EXPECT(tivTlsFree(slot) == TRUE);
  EXPECT(tivInterlockedIncrement(&counter) == 5);
  EXPECT(tivInterlockedDecrement(&counter) == 4);
  EXPECT(tivInterlockedExchange(&counter, 9) == 4);
  EXPECT(pthread_mutex_trylock(&MutexDirEnt) == 0);
  EXPECT(pthread_mutex_unlock(&MutexDirEnt) == 0);
}

int main(void) {
  CheckEvents();
  CheckMutexes();
  CheckThreads();
  CheckLeavingThread();
  CheckSlotsAndCounters();
  return failures == 0 ? 0 : 1;
}
