#ifndef ZEBCOMN_BENCH_COUNTED_MEMORY_H_
#define ZEBCOMN_BENCH_COUNTED_MEMORY_H_

#include <cstddef>

namespace zebcomn_bench {

/// The most bytes, as the allocator rounds them up, that were on the heap at once since this object
/// was made, beyond those that were there then. One thread, one object at a time.
class PeakMemory {
 public:
  PeakMemory();
  std::size_t Bytes() const;

 private:
  std::size_t before_;
};

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_COUNTED_MEMORY_H_
