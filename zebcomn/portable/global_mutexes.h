#ifndef ZEBCOMN_PORTABLE_GLOBAL_MUTEXES_H_
#define ZEBCOMN_PORTABLE_GLOBAL_MUTEXES_H_

/// \file
/// The process-wide locks of the portability layer. C11 and C++17. They are ready from the start of
/// the process and are never destroyed. No call of the library holds two of them at once.
///
/// \par Example
/// \include threads_and_tls.c

#include <pthread.h>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Serialises tivInterlockedIncrement() and tivInterlockedDecrement().
extern ZEBCOMN_EXPORT pthread_mutex_t MutexInterlockedLong;

/// Serialises tivInterlockedExchange().
extern ZEBCOMN_EXPORT pthread_mutex_t MutexInterlockedExchange;

/// Guards the table of loaded libraries.
extern ZEBCOMN_EXPORT pthread_mutex_t MutexDynamicLibraryList;

/// Guards the claiming of an entry in the table of directory searches.
extern ZEBCOMN_EXPORT pthread_mutex_t MutexDirEnt;

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_GLOBAL_MUTEXES_H_
