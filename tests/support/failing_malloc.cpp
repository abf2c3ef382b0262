// Replaces malloc() and calloc() for the whole process; both count as "malloc" for a FailingCall.
// With tests/support/failing_allocation.cpp beside it, `new` comes here too in every build. What a
// call does not fail goes to the sanitizer's allocator where there is one.
#include <cstddef>

#include "tests/support/failing_call.h"

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __interceptor_malloc(size_t size) __attribute__((weak));
void* __interceptor_calloc(size_t count, size_t size) __attribute__((weak));

ZEBCOMN_TESTS_NOT_SANITIZED void* malloc(size_t size) {
  if (zebcomn_test::IsToFail("malloc")) return nullptr;
  return __interceptor_malloc != nullptr ? __interceptor_malloc(size) : __libc_malloc(size);
}

ZEBCOMN_TESTS_NOT_SANITIZED void* calloc(size_t count, size_t size) {
  if (zebcomn_test::IsToFail("malloc")) return nullptr;
  return __interceptor_calloc != nullptr ? __interceptor_calloc(count, size)
                                         : __libc_calloc(count, size);
}

}  // extern "C"
