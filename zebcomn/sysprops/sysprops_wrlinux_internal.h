#ifndef ZEBCOMN_SYSPROPS_SYSPROPS_WRLINUX_INTERNAL_H_
#define ZEBCOMN_SYSPROPS_SYSPROPS_WRLINUX_INTERNAL_H_

/// \file
/// The Linux collectors without the names of the system files, and their pure parts. The public
/// members of `ISysProps` hand in the real paths.

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "zebcomn/sysprops/sysprops_records.h"

namespace zebcomn {

namespace sysprops = quenty_com::pelu::sysprops;

/// The first word after the product words, up to a blank. `text` has its lines joined.
std::optional<std::string> FindReleaseVersion(const std::string& text);

int CollectOs(const char* platform_file, const char* release_file, sysprops::OSInformation& info);
int CollectCpu(const char* cpuinfo_file, sysprops::CPUInformation& info);

/// A number in decimal.
std::wstring NumberText(std::int64_t number);

/// The number of bytes that a "MemTotal:" or "MemFree:" line's value names, in decimal.
std::wstring MemoryBytes(std::string value);

int CollectMemory(const char* meminfo_file, sysprops::MemoryInformation& info);

/// Whether an entry of the mount table stands for a file system of another host.
bool IsRemoteFileSystem(std::string_view name, std::string_view type);

int CollectDisks(const char* mount_table, sysprops::DiskInformation& info);

/// Login name of the real user, "root" when it has no password entry.
std::string LoginName();

/// The language id for the value of "LANG"; null when it is not set.
const wchar_t* LanguageId(const char* lang);

/// "MM/DD/YYYY hh:mm:ss".
std::wstring UpdateTime(const std::tm& local);

}  // namespace zebcomn

#endif  // ZEBCOMN_SYSPROPS_SYSPROPS_WRLINUX_INTERNAL_H_
