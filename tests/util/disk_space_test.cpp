#include "zebcomn/util/disk_space.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/vfs.h>

#include <string>

#include "tests/support/error_slot.h"
#include "tests/support/private_host.h"
#include "tests/support/scratch_dir.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::PrivateHost;

constexpr uint32_t kFailure = 0x80000008;

/// The number for an empty file system in memory of a given size, as text.
std::string FreeSpaceOf(const std::string& size) {
  return zebcomn_test::RunInPrivateHost([&size](PrivateHost&) {
    const std::string options = "size=" + size;
    if (mount("space", "/mnt", "tmpfs", 0, options.c_str()) != 0) return std::string("no mount");
    std::string path = "/mnt";
    ULONGLONG space = ~ULONGLONG{0};
    const uint32_t status = tivmcomn_get_disk_free_spaceA(path.data(), &space);
    return std::to_string(status) + " " + std::to_string(space);
  });
}

TEST(DiskSpace, NumberIsFreeBytesTimes1000In32Bits) {
  if (const std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  EXPECT_EQ(FreeSpaceOf("1m"), "0 1048576000");
  // 4 MiB times 1000 is just below 2^32; 8 MiB times 1000 wraps.
  EXPECT_EQ(FreeSpaceOf("4m"), "0 4194304000");
  EXPECT_EQ(FreeSpaceOf("8m"), "0 4093640704");
  EXPECT_EQ(FreeSpaceOf("4g"), "0 0");
  EXPECT_EQ(FreeSpaceOf("4100m"), "0 4194304000");
}

TEST(DiskSpace, PathThatCannotBeMeasuredFailsAndStoresNothing) {
  zebcomn_test::ClearErrorSlot();
  const zebcomn_test::ScratchDir scratch;
  std::string path = scratch / "absent";
  ULONGLONG space = 77;
  EXPECT_EQ(tivmcomn_get_disk_free_spaceA(path.data(), &space), kFailure);
  EXPECT_EQ(tivmcomn_get_disk_free_spaceA(nullptr, &space), kFailure);
  EXPECT_EQ(space, 77u);
  path = scratch.path();
  EXPECT_EQ(tivmcomn_get_disk_free_spaceA(path.data(), nullptr), kFailure);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST(DiskSpace, HighWordIsZeroOnEveryFileSystem) {
  for (std::string path : {"/", "/proc", "/dev"}) {
    ULONGLONG space = ~ULONGLONG{0};
    EXPECT_EQ(tivmcomn_get_disk_free_spaceA(path.data(), &space), 0u);
    EXPECT_EQ(space >> 32, 0u);
  }
}

}  // namespace
