#ifndef ZEBCOMN_SYSPROPS_PROPERTY_NAMES_H_
#define ZEBCOMN_SYSPROPS_PROPERTY_NAMES_H_

/// \file
/// The vocabulary of the system properties: the name of every property, and the fixed texts that
/// values are made of. Every name and every value is wide text, except the few that are declared
/// narrow here; they are UTF-8.
///
/// The objects exist from the library's static initialisation to its unloading; code that runs in
/// another library's static initialisation must not rely on them. They never change, so any thread
/// may read them.

#include <string>

#include "zebcomn/export.h"

namespace quenty_com::pelu::sysprops {

// Network properties; NetworkInformation holds their values.
ZEBCOMN_EXPORT extern const std::wstring ComputerName_Key;
ZEBCOMN_EXPORT extern const std::wstring DomainName_Key;
ZEBCOMN_EXPORT extern const std::wstring IPAddress_Key;
ZEBCOMN_EXPORT extern const std::wstring IPHostName_Key;
ZEBCOMN_EXPORT extern const std::wstring IPXAddress_Key;
ZEBCOMN_EXPORT extern const std::wstring NETAddress_Key;  ///< The hardware (MAC) address.
ZEBCOMN_EXPORT extern const std::wstring SubnetAddress_Key;
ZEBCOMN_EXPORT extern const std::wstring SubnetMask_Key;

// CPU properties; CPUInformation holds their values.
ZEBCOMN_EXPORT extern const std::wstring CPUPortable_Key;
ZEBCOMN_EXPORT extern const std::wstring CPUType_Key;
ZEBCOMN_EXPORT extern const std::wstring NumOfCPU_Key;
ZEBCOMN_EXPORT extern const std::wstring CPUSpeed_Key;
ZEBCOMN_EXPORT extern const std::wstring CPUSerialNumber_Key;

// Memory properties; MemoryInformation holds their values.
ZEBCOMN_EXPORT extern const std::wstring TotalPhysicalMemory_Key;
ZEBCOMN_EXPORT extern const std::wstring FreeMemory_Key;

// Disk properties; DiskInformation holds their values.
ZEBCOMN_EXPORT extern const std::wstring TotalDiskSpace_Key;
ZEBCOMN_EXPORT extern const std::wstring FreeDiskSpace_Key;

// The count of file systems. No group test accepts it; the lookup in the disk group knows it.
ZEBCOMN_EXPORT extern const std::wstring NumFileSystems_Key;

// Operating-system properties; OSInformation holds their values.
ZEBCOMN_EXPORT extern const std::wstring PlatformId_Key;
ZEBCOMN_EXPORT extern const std::wstring OSType_Key;
ZEBCOMN_EXPORT extern const std::wstring OSBitMode_Key;
ZEBCOMN_EXPORT extern const std::wstring OSPlatform_Key;
ZEBCOMN_EXPORT extern const std::wstring OSVersion_Key;
ZEBCOMN_EXPORT extern const std::wstring OSBuildNum_Key;
ZEBCOMN_EXPORT extern const std::wstring OSCsdVersion_Key;
ZEBCOMN_EXPORT extern const std::wstring OSOEMId_Key;

// Miscellaneous properties; MiscInformation holds their values.
ZEBCOMN_EXPORT extern const std::wstring UserName_Key;
ZEBCOMN_EXPORT extern const std::wstring LastUpdate_Key;
ZEBCOMN_EXPORT extern const std::wstring TimeZone_Key;
ZEBCOMN_EXPORT extern const std::wstring DefaultLangID_Key;

// Declared for callers; no record holds a value for it.
ZEBCOMN_EXPORT extern const std::wstring SystemInfo_Key;

// Parts of the name of one file system's property, as in FileSystem"/var" Free_Disk_Space_in_MB.
ZEBCOMN_EXPORT extern const std::wstring FileSystemName;  ///< In front of the quoted mount point.
ZEBCOMN_EXPORT extern const std::wstring FileSystemFreeSpace;   ///< After it.
ZEBCOMN_EXPORT extern const std::wstring FileSystemTotalSpace;  ///< After it.

// Answers for what is not known.
ZEBCOMN_EXPORT extern const std::wstring DefaultProp_Val;  ///< The default of record fields.
ZEBCOMN_EXPORT extern const std::wstring unknown;

// Distribution words.
ZEBCOMN_EXPORT extern const std::wstring suse_distribution;
ZEBCOMN_EXPORT extern const std::wstring redhat_distribution;
ZEBCOMN_EXPORT extern const std::wstring novell_distribution;
ZEBCOMN_EXPORT extern const std::wstring wrlinux_distribution;

// Release-file paths and the server-edition words; the collectors of this platform read none of
// them.
ZEBCOMN_EXPORT extern const std::string redhat_release_file;
ZEBCOMN_EXPORT extern const std::string ubuntu_release_file;
ZEBCOMN_EXPORT extern const std::string suse_release_file;
ZEBCOMN_EXPORT extern const std::string server_strings;  ///< Ends in a blank.
ZEBCOMN_EXPORT extern const std::wstring os_platform_ini;

// Platform codes; platform_wrlinux is the one written on this platform.
ZEBCOMN_EXPORT extern const std::wstring platform_linux;
ZEBCOMN_EXPORT extern const std::wstring platform_wrlinux;
ZEBCOMN_EXPORT extern const std::wstring platform_mac;
ZEBCOMN_EXPORT extern const std::wstring platform_tvn;  ///< The maker's content-security appliance.
ZEBCOMN_EXPORT extern const std::wstring platform_solaris;
ZEBCOMN_EXPORT extern const std::wstring platform_hpux;
ZEBCOMN_EXPORT extern const std::wstring platform_aix;

// OS types; os_linux is the one written on this platform.
ZEBCOMN_EXPORT extern const std::wstring os_linux;
ZEBCOMN_EXPORT extern const std::wstring os_mac;
ZEBCOMN_EXPORT extern const std::wstring os_solaris;
ZEBCOMN_EXPORT extern const std::wstring os_hpux;
ZEBCOMN_EXPORT extern const std::wstring os_aix;
ZEBCOMN_EXPORT extern const std::wstring os_tvn;  ///< The maker's content-security appliance.

// OS platform words; p_embedded is the default on this platform.
ZEBCOMN_EXPORT extern const std::wstring workstation;  ///< "Linux", not the word itself.
ZEBCOMN_EXPORT extern const std::wstring p_workstation;
ZEBCOMN_EXPORT extern const std::wstring p_server;
ZEBCOMN_EXPORT extern const std::wstring p_embedded;

// OEM ids.
ZEBCOMN_EXPORT extern const std::wstring os_mac_oemid;
ZEBCOMN_EXPORT extern const std::wstring os_solaris_oemid;
ZEBCOMN_EXPORT extern const std::wstring os_hpux_oemid;
ZEBCOMN_EXPORT extern const std::wstring os_aix_oemid;

}  // namespace quenty_com::pelu::sysprops

#endif  // ZEBCOMN_SYSPROPS_PROPERTY_NAMES_H_
