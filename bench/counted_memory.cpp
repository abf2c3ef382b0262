#include "bench/counted_memory.h"

#include <malloc.h>

#include <algorithm>

// The allocator of the C library under its own names.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void __libc_free(void* memory);
}

namespace {

std::size_t g_held = 0;
std::size_t g_peak = 0;

void* Count(void* memory) {
  if (memory == nullptr) return nullptr;
  g_held += malloc_usable_size(memory);
  g_peak = std::max(g_peak, g_held);
  return memory;
}

void Uncount(void* memory) {
  if (memory != nullptr) g_held -= malloc_usable_size(memory);
}

}  // namespace

extern "C" {

void* malloc(size_t size) noexcept {
  return Count(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) noexcept {
  return Count(__libc_calloc(count, size));
}

void* realloc(void* memory, size_t size) noexcept {
  Uncount(memory);
  void* const moved = __libc_realloc(memory, size);
  if (moved == nullptr && size != 0) return Count(memory), nullptr;
  return Count(moved);
}

void free(void* memory) noexcept {
  Uncount(memory);
  __libc_free(memory);
}

}  // extern "C"

namespace zebcomn_bench {

PeakMemory::PeakMemory() : before_(g_held) {
  g_peak = g_held;
}

std::size_t PeakMemory::Bytes() const {
  return g_peak - before_;
}

}  // namespace zebcomn_bench
