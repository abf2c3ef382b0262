#include <mntent.h>
#include <sys/vfs.h>

#include <array>
#include <cstdio>
#include <cwchar>
#include <memory>

#include "zebcomn/sysprops/sysprops_comn.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"

namespace zebcomn {
namespace {

constexpr double kBytesPerMb = 1048576.0;
constexpr std::size_t kMbTextCapacity = 32;
constexpr std::string_view kSharedMemory = "/dev/shm";

/// What the mount-table reader holds of a line; a longer one is cut there.
constexpr std::size_t kMountLineCapacity = 4096;

struct MountTableCloser {
  void operator()(std::FILE* table) const { endmntent(table); }
};
using MountTable = std::unique_ptr<std::FILE, MountTableCloser>;

struct Space {
  double total_mb = 0.0;
  double free_mb = 0.0;
};

std::optional<Space> Measure(const char* mount_point) {
  struct statfs status {};
  if (statfs(mount_point, &status) != 0) return std::nullopt;
  if (status.f_bsize == 0 || status.f_blocks == 0) return std::nullopt;
  const double blocks_per_mb = kBytesPerMb / static_cast<double>(status.f_bsize);
  return Space{static_cast<double>(status.f_blocks) / blocks_per_mb,
               static_cast<double>(status.f_bfree) / blocks_per_mb};
}

std::wstring MbText(double mb) {
  std::array<wchar_t, kMbTextCapacity> text{};
  if (std::swprintf(text.data(), text.size(), L"%0.2lf", mb) < 0) return std::wstring();
  return text.data();
}

}  // namespace

bool IsRemoteFileSystem(std::string_view name, std::string_view type) {
  return name.find(':') != std::string_view::npos || type == "smbfs" || name.substr(0, 2) == "//";
}

int CollectDisks(const char* mount_table, sysprops::DiskInformation& info) {
  const MountTable table(setmntent(mount_table, "r"));
  if (!table) return 0;
  Space sum;
  int count = 0;
  mntent entry{};
  std::array<char, kMountLineCapacity> line{};
  while (getmntent_r(table.get(), &entry, line.data(), static_cast<int>(line.size())) != nullptr) {
    if (IsRemoteFileSystem(entry.mnt_fsname, entry.mnt_type)) continue;
    const std::optional<Space> space = Measure(entry.mnt_dir);
    if (!space) continue;
    // Kept: it is listed and counted all the same; only the sums are without it.
    if (entry.mnt_dir != kSharedMemory) {
      sum.total_mb += space->total_mb;
      sum.free_mb += space->free_mb;
    }
    info.m_mapFileSystems.emplace(sysprops::sysprops_ansi_to_wide(entry.mnt_dir),
                                  std::make_pair(MbText(space->total_mb), MbText(space->free_mb)));
    ++count;
  }
  info.m_wstrNumberOfFileSystems = NumberText(count);
  info.m_wstrTotalDiskSpace = MbText(sum.total_mb);
  info.m_wstrFreeDiskSpace = MbText(sum.free_mb);
  return 1;
}

}  // namespace zebcomn
