#include "zebcomn/portable/global_mutexes.h"

pthread_mutex_t MutexInterlockedLong = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t MutexInterlockedExchange = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t MutexDynamicLibraryList = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t MutexDirEnt = PTHREAD_MUTEX_INITIALIZER;
