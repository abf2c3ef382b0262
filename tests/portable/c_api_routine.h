#ifndef ZEBCOMN_TESTS_PORTABLE_C_API_ROUTINE_H_
#define ZEBCOMN_TESTS_PORTABLE_C_API_ROUTINE_H_

#include "zebcomn/portable/types.h"

/* A thread's routine, compiled without unwind tables, that leaves through pthread_exit(). */
DWORD LeaveThread(void* parameter);

#endif /* ZEBCOMN_TESTS_PORTABLE_C_API_ROUTINE_H_ */
