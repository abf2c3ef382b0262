#include "tests/portable/c_api_routine.h"

#include <pthread.h>

static void Leave(void) {
  pthread_exit(NULL);
}

DWORD LeaveThread(void* parameter) {
  (void)parameter;
  Leave();
  return 0;
}
