#include "tests/network/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace zebcomn_test {
namespace {

bool Fails(FailingAllocation& plan) {
  if (plan.fail_after < 0 || plan.fail_after-- > 0) return false;
  plan.fail_after = 0;
  if (plan.fail_count-- <= 0) {
    plan.fail_after = -1;
    return false;
  }
  ++plan.failed;
  return true;
}

}  // namespace

FailingAllocation& ThrowingAllocation() {
  static FailingAllocation plan;
  return plan;
}

FailingAllocation& NothrowAllocation() {
  static FailingAllocation plan;
  return plan;
}

}  // namespace zebcomn_test

void* operator new(size_t size) {
  if (zebcomn_test::Fails(zebcomn_test::ThrowingAllocation())) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  if (zebcomn_test::Fails(zebcomn_test::NothrowAllocation())) return nullptr;
  return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](size_t size) {
  return operator new(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
  std::free(memory);
}
