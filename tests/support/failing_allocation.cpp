// Replaces the language's allocation functions for the whole process, in a file of its own so that
// the compiler cannot see through them.
#include "tests/support/failing_allocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<int> nothrow_countdown{0};
std::atomic<int> throwing_countdown{0};
std::atomic<int> failed{0};

/// True for the one allocation that a countdown was set for.
bool IsDue(std::atomic<int>& countdown) {
  if (countdown.load() <= 0 || --countdown != 0) return false;
  ++failed;
  return true;
}

void* Allocate(std::size_t size) {
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

namespace zebcomn_test {

void FailNothrowAllocation(int nth) {
  nothrow_countdown = nth;
}
void FailThrowingAllocation(int nth) {
  throwing_countdown = nth;
}
int TakeFailedAllocations() {
  return failed.exchange(0);
}

}  // namespace zebcomn_test

void* operator new(std::size_t size) {
  if (!IsDue(throwing_countdown)) {
    if (void* const block = Allocate(size)) return block;
  }
  throw std::bad_alloc();
}

void* operator new[](std::size_t size) {
  return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return IsDue(nothrow_countdown) ? nullptr : Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return IsDue(nothrow_countdown) ? nullptr : Allocate(size);
}

void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
