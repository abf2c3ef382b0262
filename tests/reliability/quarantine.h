#ifndef ZEBCOMN_TESTS_RELIABILITY_QUARANTINE_H_
#define ZEBCOMN_TESTS_RELIABILITY_QUARANTINE_H_

/// \file
/// Freed memory, kept aside and watched: a lock or a condition that is used in it, a write to it
/// and a second free end the process. Under a sanitizer it is the sanitizer that watches.

#include "tests/portable/interposed_calls.h"

namespace zebcomn_test {

/// Keeps what is freed from here on, or gives all of it back.
void WatchFreedMemory(bool watch);

/// To be told of each interposed call before it is made.
void WatchUse(Call call, const void* object);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_RELIABILITY_QUARANTINE_H_
