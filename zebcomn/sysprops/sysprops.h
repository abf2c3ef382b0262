#ifndef ZEBCOMN_SYSPROPS_SYSPROPS_H_
#define ZEBCOMN_SYSPROPS_SYSPROPS_H_

/// \file
/// `ISysProps`, the catalogue of system properties: it collects them from the running system and
/// answers with all of them or with one by name.
///
/// Nothing is cached: every aggregation and every lookup of a known name collects again. What a
/// collection does not write keeps the value of the one before, on the same object. No call here
/// logs or touches the last error. A lack of memory is reported as std::bad_alloc; a value whose
/// conversion alone lacks it is empty. Collecting the user, time zone and language takes
/// `quenty_com::pelu::mutex` (zebcomn/util/time_zone.h) for moments: a caller that holds it waits
/// for itself.
///
/// \par Example
/// \include system_properties.cpp

#include <map>
#include <string>

#include "zebcomn/export.h"
#include "zebcomn/sysprops/property_names.h"
#include "zebcomn/sysprops/sysprops_records.h"

namespace quenty_com::pelu::sysprops {

/// Property name to value, ordered by name.
using PropertyMap = std::map<std::wstring, std::wstring>;

/// The collected properties of this machine. One object serves one thread at a time; separate
/// objects may collect at once. Member functions are not const because callers' object files hold
/// the names of the non-const ones.
class ISysProps {
 public:
  /// Every record as its constructor leaves it.
  ZEBCOMN_EXPORT ISysProps();
  /// Ends the object; what it has given stays the caller's.
  ZEBCOMN_EXPORT ~ISysProps();

  /// Collects everything. After that `props` is emptied and gets the 29 properties other than
  /// "IsPortable", and two more for each file system, such as FileSystem"/var"
  /// Total_Disk_Space_in_MB and FileSystem"/var" Free_Disk_Space_in_MB.
  /// \param[out] props the properties.
  /// \return 1, also where a collector failed.
  ZEBCOMN_EXPORT int GetAllSystemProperties(PropertyMap& props);
  /// Collects everything. After that `props` is emptied and gets all 30 properties, none of them of
  /// a single file system; the contents of `fileSystems` are replaced by the file systems.
  /// \param[out] props the properties.
  /// \param[out] fileSystems the file systems.
  /// \return 1, also where a collector failed.
  ZEBCOMN_EXPORT int GetAllSystemProperties(PropertyMap& props, FileSystemMap& fileSystems);

  /// Collects the group of `name` and gives the value of that property.
  /// \param name the property's name.
  /// \return the value; empty, and nothing collected, when no group test accepts `name`. That goes
  ///     for "NumberOfFileSystems" too: use `GetOneDiskProperty` for it.
  ZEBCOMN_EXPORT std::wstring GetOneSystemProperty(const std::wstring& name);

  /// Whether `name` is exactly the name of a property of the group. "NumberOfFileSystems" and
  /// "SystemInfo" belong to none.
  /// \param name the name.
  /// \return true or false.
  ZEBCOMN_EXPORT bool IsNetworkProperty(const std::wstring& name);
  /// \copydoc IsNetworkProperty
  ZEBCOMN_EXPORT bool IsCPUProperty(const std::wstring& name);
  /// \copydoc IsNetworkProperty
  ZEBCOMN_EXPORT bool IsOSProperty(const std::wstring& name);
  /// \copydoc IsNetworkProperty
  ZEBCOMN_EXPORT bool IsMemoryProperty(const std::wstring& name);
  /// \copydoc IsNetworkProperty
  ZEBCOMN_EXPORT bool IsDiskProperty(const std::wstring& name);
  /// \copydoc IsNetworkProperty
  ZEBCOMN_EXPORT bool IsMiscProperty(const std::wstring& name);

  /// Collects the one group, whatever `name` is, and gives the value of that property.
  /// \param name the property's name.
  /// \return the value, or "N/A" when the group does not know `name`. The disk group knows
  ///     "NumberOfFileSystems".
  ZEBCOMN_EXPORT std::wstring GetOneNetworkProperty(const std::wstring& name);
  /// \copydoc GetOneNetworkProperty
  ZEBCOMN_EXPORT std::wstring GetOneCPUProperty(const std::wstring& name);
  /// \copydoc GetOneNetworkProperty
  ZEBCOMN_EXPORT std::wstring GetOneMemoryProperty(const std::wstring& name);
  /// \copydoc GetOneNetworkProperty
  ZEBCOMN_EXPORT std::wstring GetOneDiskProperty(const std::wstring& name);
  /// \copydoc GetOneNetworkProperty
  ZEBCOMN_EXPORT std::wstring GetOneMiscProperty(const std::wstring& name);
  /// \copydoc GetOneNetworkProperty
  ZEBCOMN_EXPORT std::wstring GetOneOSProperty(const std::wstring& name);

  /// Host, domain and fully qualified name, and the local address with its subnet and hardware
  /// address. The address is the last known local IP where an interface has it, otherwise the first
  /// one of its family (IPv4 when none is known) by ascending interface index, otherwise the first
  /// interface's first; loopback does not count.
  /// \param[out] info the record.
  /// \return 1, or 0 when the interfaces cannot be read or none has an address; the names are
  ///     written then, the address fields are not.
  ZEBCOMN_EXPORT int GetNetworkInformation(NetworkInformation& info);

  /// Reads "/proc/cpuinfo": the number of lines that hold "processor", and what follows the first
  /// ":" of the last lines that hold "model" and "MHz". The reading ends at a line of more than
  /// 2047 characters; the fields then take what the lines before it give. A missing file gives
  /// empty texts and the number 0.
  /// \param[out] info the record.
  /// \return 1.
  ZEBCOMN_EXPORT int GetCPUInformation(CPUInformation& info);

  /// Reads "/proc/meminfo", with the same rules, and writes the total and the free memory in bytes;
  /// a number that is missing is 0.
  /// \param[out] info the record.
  /// \return 1.
  ZEBCOMN_EXPORT int GetMemoryInformation(MemoryInformation& info);

  /// Measures every local entry of "/etc/fstab" at its mount point, mounted or not. An entry is
  /// remote when its name contains ":" or begins with "//", or its type is "smbfs". An entry that
  /// cannot be measured, or that has no blocks, is left out. The file systems are added to what the
  /// record's map holds; an entry that is there already stays. A line of the table is cut at 4095
  /// characters; the numbers have the decimal point of the process's locale.
  /// \param[in,out] info the record.
  /// \return 1, or 0 when "/etc/fstab" cannot be opened; `info` is untouched then.
  ZEBCOMN_EXPORT int GetDiskInformation(DiskInformation& info);

  /// Login name of the real user ("root" when it has no password entry), time-zone name, language
  /// and local time of the collection; the time stays as it was where it has no local form.
  /// The time zone is the one that the process last set up ("Unknown" when there is none); no
  /// `tzset` is called for it. The language is "0809" where the environment variable "LANG" holds
  /// "en_UK", else "0411" where it holds "ja_JP", else "0409".
  /// \param[out] info the record.
  /// \return 1.
  ZEBCOMN_EXPORT int GetMiscInformation(MiscInformation& info);

  /// Platform and version, from "/etc/zebosplatform.conf" and "/etc/wrs-release"; at most the first
  /// MiB of either is read.
  /// \param[out] info the record.
  /// \return 1, or 0 when no version was found; every field but the version and the build number is
  ///     written all the same.
  ZEBCOMN_EXPORT int GetOSInformation(OSInformation& info);

  /// Sets the address that every later network collection in the process prefers, an IPv6 one
  /// without "::" and scope. The value has no lock: callers serialise setting it against every
  /// other use, collections included.
  /// \param ip the address text; empty = none is preferred.
  ZEBCOMN_EXPORT static void updateLocalIP(const std::wstring& ip);
  /// A copy of what `updateLocalIP` set last; empty before.
  /// \return the address text.
  ZEBCOMN_EXPORT static std::wstring GetLastKnownLocalIP();

  /// What `updateLocalIP` sets. Part of the binary interface; use the two functions.
  ZEBCOMN_EXPORT static std::wstring m_wstrLastKnownLocalIP;

 private:
  friend struct SysPropsLayout;

  void CollectAll();
  void InsertAll(PropertyMap& props);

  CPUInformation m_CPUInfo;
  NetworkInformation m_NetworkInfo;
  MemoryInformation m_MemoryInfo;
  OSInformation m_OSInfo;
  DiskInformation m_DiskInfo;
  MiscInformation m_MiscInfo;
};

}  // namespace quenty_com::pelu::sysprops

#endif  // ZEBCOMN_SYSPROPS_SYSPROPS_H_
