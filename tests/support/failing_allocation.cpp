// Replaces the language's allocation functions for the whole process, in a file of its own so that
// the compiler cannot see through them.
#include "tests/support/failing_allocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

struct Plan {
  std::atomic<int> countdown{0};
  std::atomic<int> left{0};
};
Plan nothrow_plan;
Plan throwing_plan;
std::atomic<int> failed{0};

void Arm(Plan& plan, int nth, int count) {
  plan.left = count;
  plan.countdown = nth;
}

/// True for the allocations that a plan was armed for.
bool IsDue(Plan& plan) {
  if (plan.countdown.load() <= 0 || --plan.countdown != 0) return false;
  if (--plan.left > 0) plan.countdown = 1;
  ++failed;
  return true;
}

void* Allocate(std::size_t size) {
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

namespace zebcomn_test {

void FailNothrowAllocation(int nth, int count) {
  Arm(nothrow_plan, nth, count);
}
void FailThrowingAllocation(int nth, int count) {
  Arm(throwing_plan, nth, count);
}
int TakeFailedAllocations() {
  return failed.exchange(0);
}

}  // namespace zebcomn_test

void* operator new(std::size_t size) {
  if (!IsDue(throwing_plan)) {
    if (void* const block = Allocate(size)) return block;
  }
  throw std::bad_alloc();
}

void* operator new[](std::size_t size) {
  return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return IsDue(nothrow_plan) ? nullptr : Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return IsDue(nothrow_plan) ? nullptr : Allocate(size);
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
