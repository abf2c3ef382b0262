#ifndef ZEBCOMN_PORTABLE_UNIQUE_MEMORY_INTERNAL_H_
#define ZEBCOMN_PORTABLE_UNIQUE_MEMORY_INTERNAL_H_

#include <cstdlib>
#include <memory>

namespace zebcomn {

struct MemoryReleaser {
  void operator()(void* memory) const { std::free(memory); }
};

/// Owns one block from malloc() or calloc(); null is none. Nothing in the block is destroyed.
template <typename Content>
using UniqueMemory = std::unique_ptr<Content, MemoryReleaser>;

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_UNIQUE_MEMORY_INTERNAL_H_
