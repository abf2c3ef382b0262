// Every way to take memory, in front of the C library's (or the sanitizer's) allocator: what the
// calling thread's plan says fails, and the blocks are counted.
#include <cerrno>
#include <cstddef>
#include <new>

#include "tests/support/call_plan.h"
#include "tests/support/failing_call.h"

using zebcomn_test::AllocationErrorDue;
using zebcomn_test::NoteBlocks;

#define ZEBCOMN_PLAIN ZEBCOMN_TESTS_NOT_SANITIZED

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* block);
void* __interceptor_malloc(size_t size) __attribute__((weak));
void* __interceptor_calloc(size_t count, size_t size) __attribute__((weak));
void* __interceptor_realloc(void* block, size_t size) __attribute__((weak));
void* __interceptor_memalign(size_t alignment, size_t size) __attribute__((weak));
void __interceptor_free(void* block) __attribute__((weak));

}  // extern "C"

namespace {

ZEBCOMN_PLAIN bool IsToFail(const char* function, const void* caller) {
  const int error = AllocationErrorDue(function, caller);
  if (error != 0) errno = error;
  return error != 0;
}

ZEBCOMN_PLAIN void* Counted(void* block) {
  if (block != nullptr) NoteBlocks(1);
  return block;
}

ZEBCOMN_PLAIN void* Take(size_t size) {
  return Counted(__interceptor_malloc != nullptr ? __interceptor_malloc(size)
                                                 : __libc_malloc(size));
}

ZEBCOMN_PLAIN void* TakeAligned(size_t alignment, size_t size) {
  return Counted(__interceptor_memalign != nullptr ? __interceptor_memalign(alignment, size)
                                                   : __libc_memalign(alignment, size));
}

ZEBCOMN_PLAIN void GiveBack(void* block) {
  if (block == nullptr) return;
  NoteBlocks(-1);
  if (__interceptor_free != nullptr) {
    __interceptor_free(block);
  } else {
    __libc_free(block);
  }
}

void* TakeOrThrow(size_t size, size_t alignment, const void* caller) {
  if (!IsToFail("operator new", caller)) {
    void* const block = alignment == 0 ? Take(size) : TakeAligned(alignment, size);
    if (block != nullptr) return block;
  }
  throw std::bad_alloc();
}

void* TakeOrNull(size_t size, size_t alignment, const void* caller) {
  if (IsToFail("operator new (nothrow)", caller)) return nullptr;
  return alignment == 0 ? Take(size) : TakeAligned(alignment, size);
}

}  // namespace

#define CALLER __builtin_return_address(0)

extern "C" {

ZEBCOMN_PLAIN void* malloc(size_t size) {
  return IsToFail("malloc", CALLER) ? nullptr : Take(size);
}

ZEBCOMN_PLAIN void* calloc(size_t count, size_t size) {
  if (IsToFail("calloc", CALLER)) return nullptr;
  return Counted(__interceptor_calloc != nullptr ? __interceptor_calloc(count, size)
                                                 : __libc_calloc(count, size));
}

ZEBCOMN_PLAIN void* realloc(void* block, size_t size) {
  if (IsToFail("realloc", CALLER)) return nullptr;
  void* const moved = __interceptor_realloc != nullptr ? __interceptor_realloc(block, size)
                                                       : __libc_realloc(block, size);
  if (block == nullptr && moved != nullptr) NoteBlocks(1);
  if (block != nullptr && size == 0) NoteBlocks(-1);
  return moved;
}

ZEBCOMN_PLAIN void* memalign(size_t alignment, size_t size) {
  return IsToFail("memalign", CALLER) ? nullptr : TakeAligned(alignment, size);
}

ZEBCOMN_PLAIN void* aligned_alloc(size_t alignment, size_t size) {
  return IsToFail("aligned_alloc", CALLER) ? nullptr : TakeAligned(alignment, size);
}

ZEBCOMN_PLAIN int posix_memalign(void** block, size_t alignment, size_t size) {
  void* const taken = IsToFail("posix_memalign", CALLER) ? nullptr : TakeAligned(alignment, size);
  if (taken != nullptr) *block = taken;
  return taken == nullptr ? ENOMEM : 0;
}

ZEBCOMN_PLAIN void free(void* block) {
  GiveBack(block);
}

}  // extern "C"

void* operator new(size_t size) {
  return TakeOrThrow(size, 0, CALLER);
}
void* operator new[](size_t size) {
  return TakeOrThrow(size, 0, CALLER);
}
void* operator new(size_t size, std::align_val_t alignment) {
  return TakeOrThrow(size, static_cast<size_t>(alignment), CALLER);
}
void* operator new[](size_t size, std::align_val_t alignment) {
  return TakeOrThrow(size, static_cast<size_t>(alignment), CALLER);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return TakeOrNull(size, 0, CALLER);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  return TakeOrNull(size, 0, CALLER);
}
void* operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return TakeOrNull(size, static_cast<size_t>(alignment), CALLER);
}
void* operator new[](size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return TakeOrNull(size, static_cast<size_t>(alignment), CALLER);
}

void operator delete(void* block) noexcept {
  GiveBack(block);
}
void operator delete[](void* block) noexcept {
  GiveBack(block);
}
void operator delete(void* block, size_t) noexcept {
  GiveBack(block);
}
void operator delete[](void* block, size_t) noexcept {
  GiveBack(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  GiveBack(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
  GiveBack(block);
}
void operator delete(void* block, size_t, std::align_val_t) noexcept {
  GiveBack(block);
}
void operator delete[](void* block, size_t, std::align_val_t) noexcept {
  GiveBack(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  GiveBack(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  GiveBack(block);
}
