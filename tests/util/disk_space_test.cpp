#include "zebcomn/util/disk_space.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/vfs.h>

#include <string>

#include "tests/support/error_slot.h"
#include "tests/support/next_function.h"
#include "tests/support/private_host.h"
#include "tests/support/scratch_dir.h"

namespace {

/// What every file system is measured as; null for what it is.
const struct statfs* made_up_status = nullptr;

}  // namespace

extern "C" int statfs(const char* path, struct statfs* status) noexcept {
  static auto* const next = zebcomn_test::NextFunction<int(const char*, struct statfs*)>(
      ZEBCOMN_LARGE_FILE_SYMBOL(statfs));
  if (made_up_status == nullptr) return next(path, status);
  *status = *made_up_status;
  return 0;
}

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

/// The number for a file system of which this much is free.
ULONGLONG SpaceWhenMeasuredAs(const struct statfs& status) {
  std::string path = "/";
  ULONGLONG space = 77;
  made_up_status = &status;
  EXPECT_EQ(tivmcomn_get_disk_free_spaceA(path.data(), &space), 0u);
  made_up_status = nullptr;
  return space;
}

TEST(DiskSpace, BlocksAreThoseLeftForOrdinaryUsersAtTheBlockSize) {
  struct statfs status = {};
  status.f_blocks = 100000;
  status.f_bfree = 5000;
  status.f_bavail = 3;
  status.f_bsize = 4096;
  status.f_frsize = 512;
  EXPECT_EQ(SpaceWhenMeasuredAs(status), 3u * 4096 * 1000);
}

TEST(DiskSpace, CountsAbove32BitsWrap) {
  struct statfs status = {};
  status.f_bsize = 512;
  status.f_bavail = (uint64_t{1} << 32) + 2;
  EXPECT_EQ(SpaceWhenMeasuredAs(status), 2u * 512 * 1000);
  status.f_bavail = 0xFFFFFFFF;
  EXPECT_EQ(SpaceWhenMeasuredAs(status), 0xFFFFFFFFu - 512 * 1000 + 1);
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
