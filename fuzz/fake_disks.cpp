#include "fuzz/fake_disks.h"

#include <sys/vfs.h>

#include <cerrno>

namespace zebcomn_fuzz {
namespace {

bool in_use = false;

template <typename Status>
int Answer(const char* path, Status* status) {
  const FakeDisk disk = FakeDiskAt(path);
  if (!disk.exists) {
    errno = ENOENT;
    return -1;
  }
  *status = Status{};
  status->f_bsize = static_cast<decltype(status->f_bsize)>(disk.block_size);
  status->f_blocks = disk.blocks;
  status->f_bfree = disk.free_blocks;
  return 0;
}

}  // namespace

FakeDisk FakeDiskAt(const std::string& path) {
  constexpr uint32_t kBlockSizes[] = {4096, 512, 0, 65536, 1024, 4096, 1000, 2097152};
  if (path == "/dev/shm") return {true, 4096, 262144, 1000};
  uint32_t sum = 2166136261;
  for (const char c : path) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619;
  const uint32_t blocks = sum % 11 == 0 ? 0 : sum >> 8;
  return {sum % 7 != 0, kBlockSizes[sum % 8], blocks, blocks / 3};
}

UseOfFakeDisks::UseOfFakeDisks() {
  in_use = true;
}
UseOfFakeDisks::~UseOfFakeDisks() {
  in_use = false;
}

}  // namespace zebcomn_fuzz

// The linker sends the calls here (--wrap); they go on to the C library's when no fake is in use.
// The names are the linker's, hence reserved ones. NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_statfs(const char* path, struct statfs* status);
int __wrap_statfs(const char* path, struct statfs* status);
int __wrap_statfs(const char* path, struct statfs* status) {
  return zebcomn_fuzz::in_use ? zebcomn_fuzz::Answer(path, status) : __real_statfs(path, status);
}

int __real_statfs64(const char* path, struct statfs64* status);
int __wrap_statfs64(const char* path, struct statfs64* status);
int __wrap_statfs64(const char* path, struct statfs64* status) {
  return zebcomn_fuzz::in_use ? zebcomn_fuzz::Answer(path, status) : __real_statfs64(path, status);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
