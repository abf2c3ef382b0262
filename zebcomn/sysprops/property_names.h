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
///
/// \par Example
/// \include configuration_names.cpp

#include <string>

#include "zebcomn/export.h"

namespace quenty_com::pelu::sysprops {

/// \name Network properties
/// NetworkInformation holds their values.
/// @{
ZEBCOMN_EXPORT extern const std::wstring ComputerName_Key;  ///< "ComputerName".
ZEBCOMN_EXPORT extern const std::wstring DomainName_Key;    ///< "DomainName".
ZEBCOMN_EXPORT extern const std::wstring IPAddress_Key;     ///< "IPAddress".
ZEBCOMN_EXPORT extern const std::wstring IPHostName_Key;    ///< "IPHostName".
ZEBCOMN_EXPORT extern const std::wstring IPXAddress_Key;    ///< "IPXAddress".
/// "NETAddress". The hardware (MAC) address.
ZEBCOMN_EXPORT extern const std::wstring NETAddress_Key;
ZEBCOMN_EXPORT extern const std::wstring SubnetAddress_Key;  ///< "SubnetAddress".
ZEBCOMN_EXPORT extern const std::wstring SubnetMask_Key;     ///< "SubnetMask".
/// @}

/// \name CPU properties
/// CPUInformation holds their values.
/// @{
ZEBCOMN_EXPORT extern const std::wstring CPUPortable_Key;      ///< "IsPortable".
ZEBCOMN_EXPORT extern const std::wstring CPUType_Key;          ///< "CPUType".
ZEBCOMN_EXPORT extern const std::wstring NumOfCPU_Key;         ///< "NumOfCPU".
ZEBCOMN_EXPORT extern const std::wstring CPUSpeed_Key;         ///< "CPUSpeed".
ZEBCOMN_EXPORT extern const std::wstring CPUSerialNumber_Key;  ///< "CPUSerialNumber".
/// @}

/// \name Memory properties
/// MemoryInformation holds their values.
/// @{
ZEBCOMN_EXPORT extern const std::wstring TotalPhysicalMemory_Key;  ///< "TotalPhysicalMemory".
ZEBCOMN_EXPORT extern const std::wstring FreeMemory_Key;           ///< "FreeMemory".
/// @}

/// \name Disk properties
/// DiskInformation holds their values.
/// @{
ZEBCOMN_EXPORT extern const std::wstring TotalDiskSpace_Key;  ///< "TotalDiskSpace".
ZEBCOMN_EXPORT extern const std::wstring FreeDiskSpace_Key;   ///< "FreeDiskSpace".
/// @}

/// \name The count of file systems
/// No group test accepts it; the lookup in the disk group knows it.
/// @{
ZEBCOMN_EXPORT extern const std::wstring NumFileSystems_Key;  ///< "NumberOfFileSystems".
/// @}

/// \name Operating-system properties
/// OSInformation holds their values.
/// @{
ZEBCOMN_EXPORT extern const std::wstring PlatformId_Key;    ///< "PlatformID".
ZEBCOMN_EXPORT extern const std::wstring OSType_Key;        ///< "OSType".
ZEBCOMN_EXPORT extern const std::wstring OSBitMode_Key;     ///< "OSBitMode".
ZEBCOMN_EXPORT extern const std::wstring OSPlatform_Key;    ///< "OSPlatform".
ZEBCOMN_EXPORT extern const std::wstring OSVersion_Key;     ///< "OSVersion".
ZEBCOMN_EXPORT extern const std::wstring OSBuildNum_Key;    ///< "OSBuildNum".
ZEBCOMN_EXPORT extern const std::wstring OSCsdVersion_Key;  ///< "OSCsdVersion".
ZEBCOMN_EXPORT extern const std::wstring OSOEMId_Key;       ///< "OSOEMId".
/// @}

/// \name Miscellaneous properties
/// MiscInformation holds their values.
/// @{
ZEBCOMN_EXPORT extern const std::wstring UserName_Key;       ///< "UserName".
ZEBCOMN_EXPORT extern const std::wstring LastUpdate_Key;     ///< "LastUpdate".
ZEBCOMN_EXPORT extern const std::wstring TimeZone_Key;       ///< "TimeZone".
ZEBCOMN_EXPORT extern const std::wstring DefaultLangID_Key;  ///< "DefaultLangID".
/// @}

/// \name Declared for callers
/// No record holds a value for it.
/// @{
ZEBCOMN_EXPORT extern const std::wstring SystemInfo_Key;  ///< "SystemInfo".
/// @}

/// \name Parts of the name of one file system's property
/// As in FileSystem"/var" Free_Disk_Space_in_MB.
/// @{

/// "FileSystem". Stands in front of the quoted mount point.
ZEBCOMN_EXPORT extern const std::wstring FileSystemName;
/// "Free_Disk_Space_in_MB". Stands after the mount point.
ZEBCOMN_EXPORT extern const std::wstring FileSystemFreeSpace;
/// "Total_Disk_Space_in_MB". Stands after the mount point.
ZEBCOMN_EXPORT extern const std::wstring FileSystemTotalSpace;
/// @}

/// \name Answers for what is not known
/// @{
ZEBCOMN_EXPORT extern const std::wstring DefaultProp_Val;  ///< "N/A". The default of record fields.
ZEBCOMN_EXPORT extern const std::wstring unknown;          ///< "Unknown".
/// @}

/// \name Distribution words
/// @{
ZEBCOMN_EXPORT extern const std::wstring suse_distribution;     ///< "SuSE".
ZEBCOMN_EXPORT extern const std::wstring redhat_distribution;   ///< "redhat".
ZEBCOMN_EXPORT extern const std::wstring novell_distribution;   ///< "Novell".
ZEBCOMN_EXPORT extern const std::wstring wrlinux_distribution;  ///< "Wind River".
/// @}

/// \name Release-file paths and the server-edition words
/// The collectors of this platform read none of them.
/// @{
ZEBCOMN_EXPORT extern const std::string redhat_release_file;  ///< "/etc/redhat-release".
ZEBCOMN_EXPORT extern const std::string ubuntu_release_file;  ///< "/etc/lsb-release".
ZEBCOMN_EXPORT extern const std::string suse_release_file;    ///< "/etc/SuSE-release".
/// ", Server , Enterprise , AS , ES , WS ". Ends in a blank.
ZEBCOMN_EXPORT extern const std::string server_strings;
ZEBCOMN_EXPORT extern const std::wstring os_platform_ini;  ///< "/etc/pelu.d/osinfo.ini".
/// @}

/// \name Platform codes
/// `platform_wrlinux` is the one written on this platform.
/// @{
ZEBCOMN_EXPORT extern const std::wstring platform_linux;    ///< "LINUX".
ZEBCOMN_EXPORT extern const std::wstring platform_wrlinux;  ///< "WRLNX".
ZEBCOMN_EXPORT extern const std::wstring platform_mac;      ///< "MAC".
/// "TVN". The maker's content-security appliance.
ZEBCOMN_EXPORT extern const std::wstring platform_tvn;
ZEBCOMN_EXPORT extern const std::wstring platform_solaris;  ///< "SLR".
ZEBCOMN_EXPORT extern const std::wstring platform_hpux;     ///< "HPUX".
ZEBCOMN_EXPORT extern const std::wstring platform_aix;      ///< "AIX".
/// @}

/// \name OS types
/// `os_linux` is the one written on this platform.
/// @{
ZEBCOMN_EXPORT extern const std::wstring os_linux;    ///< "Linux".
ZEBCOMN_EXPORT extern const std::wstring os_mac;      ///< "Mac OS X".
ZEBCOMN_EXPORT extern const std::wstring os_solaris;  ///< "SunOS Sparc".
ZEBCOMN_EXPORT extern const std::wstring os_hpux;     ///< "HP-UX".
ZEBCOMN_EXPORT extern const std::wstring os_aix;      ///< "AIX".
/// "Tarvelin". The maker's content-security appliance.
ZEBCOMN_EXPORT extern const std::wstring os_tvn;
/// @}

/// \name OS platform words
/// `p_embedded` is the default on this platform.
/// @{
ZEBCOMN_EXPORT extern const std::wstring workstation;    ///< "Linux", not the word itself.
ZEBCOMN_EXPORT extern const std::wstring p_workstation;  ///< "Workstation".
ZEBCOMN_EXPORT extern const std::wstring p_server;       ///< "Server".
ZEBCOMN_EXPORT extern const std::wstring p_embedded;     ///< "Embedded".
/// @}

/// \name OEM ids
/// @{
ZEBCOMN_EXPORT extern const std::wstring os_mac_oemid;      ///< "Apple Macintosh".
ZEBCOMN_EXPORT extern const std::wstring os_solaris_oemid;  ///< "Solaris Sparc".
ZEBCOMN_EXPORT extern const std::wstring os_hpux_oemid;     ///< "Hpux PA-RISC".
ZEBCOMN_EXPORT extern const std::wstring os_aix_oemid;      ///< "AIX PowerPC".
/// @}

}  // namespace quenty_com::pelu::sysprops

#endif  // ZEBCOMN_SYSPROPS_PROPERTY_NAMES_H_
