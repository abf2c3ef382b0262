// The disk collector on mount tables of the test's own, with statfs answering as told.
#include <errno.h>
#include <gtest/gtest.h>
#include <sys/vfs.h>

#include <map>
#include <string>

#include "tests/support/descriptors.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"

namespace {

struct Blocks {
  long size;
  unsigned long long total;
  unsigned long long free;
};

std::map<std::string, Blocks> g_file_systems;

}  // namespace

extern "C" int statfs(const char* path, struct statfs* out) noexcept {
  const auto found = g_file_systems.find(path);
  if (found == g_file_systems.end()) {
    errno = ENOENT;
    return -1;
  }
  *out = {};
  out->f_bsize = static_cast<decltype(out->f_bsize)>(found->second.size);
  out->f_blocks = found->second.total;
  out->f_bfree = found->second.free;
  out->f_bavail = 1;
  return 0;
}

namespace {

namespace sysprops = quenty_com::pelu::sysprops;
using zebcomn_test::ScratchDir;
using SpacePair = std::pair<std::wstring, std::wstring>;

class DiskCollector : public ::testing::Test {
 protected:
  void SetUp() override { g_file_systems.clear(); }
  int Collect(const std::string& table) {
    return zebcomn::CollectDisks(dir_.Write("fstab", table).c_str(), info_);
  }

  ScratchDir dir_;
  sysprops::DiskInformation info_;
};

TEST_F(DiskCollector, GivesMegabytesWithTwoDecimals) {
  g_file_systems["/"] = {4096, 262144, 1000};
  EXPECT_EQ(Collect("/dev/sda1 / ext4 defaults 0 1\n"), 1);
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"1");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"1024.00");
  EXPECT_EQ(info_.m_wstrFreeDiskSpace, L"3.91") << "free blocks of all, not of ordinary users";
  EXPECT_EQ(info_.m_mapFileSystems, (sysprops::FileSystemMap{{L"/", {L"1024.00", L"3.91"}}}));
}

TEST_F(DiskCollector, SumsAreTakenBeforeRounding) {
  g_file_systems["/a"] = {512, 7, 7};
  g_file_systems["/b"] = {512, 7, 7};
  g_file_systems["/c"] = {512, 7, 7};
  Collect("a /a ext2\nb /b ext2\nc /c ext2\n");
  EXPECT_EQ(info_.m_mapFileSystems[L"/a"], SpacePair(L"0.00", L"0.00"));
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"0.01");
}

TEST_F(DiskCollector, RemoteEntriesAreLeftOut) {
  for (const char* place : {"/nfs", "/cifs", "/smb", "/label", "/one", "/type"}) {
    g_file_systems[place] = {4096, 256, 256};
  }
  Collect(
      "server:/export /nfs nfs defaults 0 0\n"
      "//host/share /cifs cifs defaults 0 0\n"
      "share /smb smbfs defaults 0 0\n"
      "a:b /label ext4 defaults 0 0\n"
      "/one/share /one cifs defaults 0 0\n"
      "share /type smbfs2 defaults 0 0\n");
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"2");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"2.00");
  EXPECT_EQ(info_.m_mapFileSystems.count(L"/one"), 1u);
  EXPECT_EQ(info_.m_mapFileSystems.count(L"/type"), 1u);
}

TEST(RemoteFileSystem, IsTellByNameOrType) {
  EXPECT_TRUE(zebcomn::IsRemoteFileSystem("server:/export", "nfs"));
  EXPECT_TRUE(zebcomn::IsRemoteFileSystem("x:", ""));
  EXPECT_TRUE(zebcomn::IsRemoteFileSystem("//host/share", "cifs"));
  EXPECT_TRUE(zebcomn::IsRemoteFileSystem("//", "auto"));
  EXPECT_TRUE(zebcomn::IsRemoteFileSystem("/dev/sda1", "smbfs"));
  EXPECT_FALSE(zebcomn::IsRemoteFileSystem("/", "ext4"));
  EXPECT_FALSE(zebcomn::IsRemoteFileSystem("", ""));
  EXPECT_FALSE(zebcomn::IsRemoteFileSystem("/dev//sda1", "SMBFS"));
  EXPECT_FALSE(zebcomn::IsRemoteFileSystem("host", "nfs"));
}

TEST_F(DiskCollector, EntriesWithoutBlocksOrMeasureAreLeftOut) {
  g_file_systems["/proc"] = {4096, 0, 0};
  g_file_systems["/zero"] = {0, 100, 100};
  g_file_systems["/full"] = {1048576, 3, 0};
  Collect("proc /proc proc defaults 0 0\nz /zero ext2\n/dev/x none swap sw 0 0\nf /full ext2\n");
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"1");
  EXPECT_EQ(info_.m_mapFileSystems, (sysprops::FileSystemMap{{L"/full", {L"3.00", L"0.00"}}}));
}

TEST_F(DiskCollector, SharedMemoryIsListedAndCountedButNotSummed) {
  g_file_systems["/dev/shm"] = {4096, 25600, 25600};
  Collect("tmpfs /dev/shm tmpfs defaults 0 0\n");
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"1");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"0.00");
  EXPECT_EQ(info_.m_wstrFreeDiskSpace, L"0.00");
  EXPECT_EQ(info_.m_mapFileSystems,
            (sysprops::FileSystemMap{{L"/dev/shm", {L"100.00", L"100.00"}}}));
}

TEST_F(DiskCollector, SharedMemoryWithATrailingSlashIsSummed) {
  g_file_systems["/dev/shm/"] = {4096, 25600, 25600};
  Collect("tmpfs /dev/shm/ tmpfs defaults 0 0\n");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"100.00");
}

TEST_F(DiskCollector, RepeatedMountPointKeepsItsFirstEntryButCountsTwice) {
  g_file_systems["/"] = {1048576, 8, 2};
  Collect("a / ext4\nb / btrfs\n");
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"2");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"16.00");
  EXPECT_EQ(info_.m_mapFileSystems, (sysprops::FileSystemMap{{L"/", {L"8.00", L"2.00"}}}));
}

TEST_F(DiskCollector, EntriesStayFromOneCollectionToTheNext) {
  g_file_systems["/old"] = {1048576, 1, 1};
  Collect("a /old ext4\n");
  g_file_systems["/old"] = {1048576, 5, 5};
  g_file_systems["/new"] = {1048576, 2, 2};
  Collect("a /old ext4\nb /new ext4\n");
  EXPECT_EQ(info_.m_mapFileSystems, (sysprops::FileSystemMap{{L"/old", {L"1.00", L"1.00"}},
                                                             {L"/new", {L"2.00", L"2.00"}}}));
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"7.00");
  Collect("");
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"0");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"0.00");
  EXPECT_EQ(info_.m_mapFileSystems.size(), 2u);
}

TEST_F(DiskCollector, MissingTableFailsAndLeavesTheRecord) {
  info_.m_wstrTotalDiskSpace = L"kept";
  info_.m_mapFileSystems[L"/x"] = {L"1", L"2"};
  EXPECT_EQ(zebcomn::CollectDisks((dir_ / "none").c_str(), info_), 0);
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"kept");
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"N/A");
  EXPECT_EQ(info_.m_mapFileSystems.size(), 1u);
}

TEST_F(DiskCollector, EmptyAndUnreadableTablesHoldNothing) {
  EXPECT_EQ(Collect(""), 1);
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"0");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"0.00");
  EXPECT_EQ(zebcomn::CollectDisks("/proc/self/mem", info_), 1);
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"0");
}

TEST_F(DiskCollector, CommentsShortFieldsAndEscapesAreTheTableReaders) {
  g_file_systems["/with blank"] = {1048576, 1, 1};
  g_file_systems["/short"] = {1048576, 2, 2};
  Collect("# c /c ext4\n\n   \nonly\n\tx /short\ny /with\\040blank ext4 defaults 0 0\n");
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"2");
  EXPECT_EQ(info_.m_mapFileSystems.count(L"/with blank"), 1u);
}

TEST_F(DiskCollector, LongLineIsCutAndTheNextOneIsRead) {
  g_file_systems["/first"] = g_file_systems["/last"] = {1048576, 1, 1};
  Collect("a /first ext4 " + std::string(100000, 'o') + " 0 0\nb /last ext4\n" +
          std::string(100000, 'z'));
  EXPECT_EQ(info_.m_wstrNumberOfFileSystems, L"2");
}

TEST_F(DiskCollector, RelativeMountPointIsMeasuredWhereItExists) {
  g_file_systems["none"] = {1048576, 4, 4};
  Collect("x none swap sw 0 0\n");
  EXPECT_EQ(info_.m_mapFileSystems.count(L"none"), 1u);
}

TEST_F(DiskCollector, MountPointIsUtf8) {
  g_file_systems["/\xC3\xA9"] = {1048576, 4, 4};
  Collect("x /\xC3\xA9 ext4\n");
  EXPECT_EQ(info_.m_mapFileSystems.count(L"/\u00e9"), 1u);
}

TEST_F(DiskCollector, LargestNumbersFitTheirTexts) {
  g_file_systems["/huge"] = {1048576, 0xFFFFFFFFFFFFFFFFull, 0xFFFFFFFFFFFFFFFFull};
  Collect("x /huge ext4\n");
  EXPECT_EQ(info_.m_wstrTotalDiskSpace, L"18446744073709551616.00");
}

}  // namespace
