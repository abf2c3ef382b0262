#ifndef ZEBCOMN_FUZZ_FAKE_DISKS_H_
#define ZEBCOMN_FUZZ_FAKE_DISKS_H_

#include <cstdint>
#include <string>

namespace zebcomn_fuzz {

/// What `statfs` tells of a made-up file system.
struct FakeDisk {
  bool exists;
  uint32_t block_size;
  uint32_t blocks;
  uint32_t free_blocks;
};

/// The file system at a path, always the same for the same path. Some paths have none, some have
/// blocks of no size or no blocks, and "/dev/shm" has a plain one.
FakeDisk FakeDiskAt(const std::string& path);

/// Answers `statfs` from FakeDiskAt() for as long as it lives.
class UseOfFakeDisks {
 public:
  UseOfFakeDisks();
  ~UseOfFakeDisks();
  UseOfFakeDisks(const UseOfFakeDisks&) = delete;
  UseOfFakeDisks& operator=(const UseOfFakeDisks&) = delete;
};

}  // namespace zebcomn_fuzz

#endif  // ZEBCOMN_FUZZ_FAKE_DISKS_H_
