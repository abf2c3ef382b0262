// Any mount table gives the record that the described steps give, entry after entry, on made-up
// file systems.
#include <mntent.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "fuzz/fake_disks.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/text_file.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"
#include "zebcomn/util/text_conversion.h"

namespace {

using namespace zebcomn_fuzz;
using quenty_com::pelu::tivmcomn_ansi_to_wide;

struct CloseTable {
  void operator()(std::FILE* table) const { endmntent(table); }
};

std::wstring MbText(double mb) {
  char text[400];
  std::snprintf(text, sizeof text, "%0.2f", mb);
  return std::wstring(text, text + std::char_traits<char>::length(text));
}

struct Expected {
  double total = 0;
  double free = 0;
  int count = 0;
  std::map<std::wstring, std::pair<std::wstring, std::wstring>> entries;

  void Take(const mntent& entry) {
    const std::string name = entry.mnt_fsname;
    const std::string type = entry.mnt_type;
    if (name.find(':') != std::string::npos || type == "smbfs" || name.substr(0, 2) == "//") return;
    const FakeDisk disk = FakeDiskAt(entry.mnt_dir);
    if (!disk.exists || disk.block_size == 0 || disk.blocks == 0) return;
    const double factor = 1048576.0 / static_cast<double>(disk.block_size);
    const double total_mb = static_cast<double>(disk.blocks) / factor;
    const double free_mb = static_cast<double>(disk.free_blocks) / factor;
    if (std::string(entry.mnt_dir) != "/dev/shm") {
      total += total_mb;
      free += free_mb;
    }
    const std::wstring place = tivmcomn_ansi_to_wide(entry.mnt_dir);
    if (entries.count(place) == 0) entries[place] = {MbText(total_mb), MbText(free_mb)};
    ++count;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TextFile file;
  const char* const path = file.With(TextOf(data, size));
  Expected expected;
  {
    const std::unique_ptr<std::FILE, CloseTable> table(setmntent(path, "r"));
    Require(table != nullptr);
    while (const mntent* entry = getmntent(table.get())) expected.Take(*entry);
  }
  quenty_com::pelu::sysprops::DiskInformation info;
  {
    const UseOfFakeDisks use;
    Require(zebcomn::CollectDisks(path, info) == 1);
  }
  Require(info.m_wstrNumberOfFileSystems == std::to_wstring(expected.count));
  Require(info.m_wstrTotalDiskSpace == MbText(expected.total));
  Require(info.m_wstrFreeDiskSpace == MbText(expected.free));
  Require(info.m_mapFileSystems == expected.entries);
  return 0;
}
