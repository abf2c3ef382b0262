#ifndef ZEBCOMN_LISTS_SPIN_LOCK_H_
#define ZEBCOMN_LISTS_SPIN_LOCK_H_

/// \file
/// The spin lock: one 32-bit word of the caller's, 0 = free, 1 = taken. C11 and C++17.
///
/// The word starts as 0 and is then changed only by these two calls, from any thread. It has no
/// owner and no recursion: a thread that takes it twice waits for itself. Both calls do nothing for
/// a null pointer, leave `nErrno` alone, and order memory as a mutex does. Neither is a
/// cancellation point. Hold it for a few instructions only.
///
/// \par Example
/// \include lock.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Takes the word, and waits until it is free. The first 4000 tries follow each other at once; then
/// come 100 tries each with a pause of 0, 10 ms, 100 ms and 1 s between them; from then on it tries
/// without a pause again.
/// \param spin_word the word.
ZEBCOMN_EXPORT void tiSL_Get(LONG* spin_word);

/// Gives the word back, whoever holds it.
/// \param spin_word the word.
ZEBCOMN_EXPORT void tiSL_Release(LONG* spin_word);

ZEBCOMN_END_C

#endif  // ZEBCOMN_LISTS_SPIN_LOCK_H_
