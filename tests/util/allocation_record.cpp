// Replaces the language's allocation functions for the whole process, in a file of its own so that
// the compiler cannot see through them.
#include "tests/util/allocation_record.h"

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kCapacity = 10000;

// Nothing here needs an initialisation: the libraries allocate before this program's own.
const void* blocks[kCapacity];
std::size_t count = 0;
bool ended = false;

}  // namespace

namespace zebcomn_test {

std::size_t TimeOfAllocation(const void* block) {
  for (std::size_t i = count; i > 0; --i) {
    if (blocks[i - 1] == block) return i;
  }
  return 0;
}

void EndAllocationRecord() {
  ended = true;
}

}  // namespace zebcomn_test

void* operator new(std::size_t size) {
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  if (!ended && count < kCapacity) blocks[count++] = block;
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
