#ifndef ZEBCOMN_SYSPROPS_SYSPROPS_API_H_
#define ZEBCOMN_SYSPROPS_SYSPROPS_API_H_

/// \file
/// One property per call, without an `ISysProps` of the caller's own.
///
/// A call whose text is "the value of" a property collects the group of that property once, on an
/// object that lives for the call, and gives what `ISysProps::GetOneSystemProperty` gives; nothing
/// is cached. A caller that needs many values is better served by
/// `ISysProps::GetAllSystemProperties`. The text belongs to the caller. No call touches the last
/// error. What sysprops.h says of a lack of memory and of `quenty_com::pelu::mutex` holds here too.
/// Any thread may call, at any time but that of `tivmcomn_set_local_ip_addr`.
///
/// The names have C linkage, yet only callers with the library's C++ string type can use them.
///
/// \par Example
/// \include flat_accessors.cpp

#include <string>

#include "zebcomn/export.h"

#ifdef __clang__
#pragma clang diagnostic push
// The plain names are part of the binary interface; a C caller does not see this header.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

ZEBCOMN_BEGIN_C

/// Model text of the processors. \return the value of "CPUType".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_cpu_type();
/// Clock text of the processors. \return the value of "CPUSpeed".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_cpu_speed();
/// Number of processors, decimal. \return the value of "NumOfCPU".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_number_of_processors();
/// Not known on Linux. \return the value of "CPUSerialNumber", "N/A".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_cpu_serial_number();

/// DNS domain name of the host. \return the value of "DomainName".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_domain_name();
/// Short host name. \return the value of "ComputerName".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_computer_name();
/// Local address of the host. \return the value of "IPAddress".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_ip_address();
/// Network address of that address's subnet. \return the value of "SubnetAddress".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_subnet_address();
/// Subnet mask of that address. \return the value of "SubnetMask".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_subnet_mask();
/// Hardware address of the interface that has it. \return the value of "NETAddress".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_mac_address();
/// There is none on Linux. \return the value of "IPXAddress", "N/A".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_ipx_address();
/// Fully qualified name of the host. \return the value of "IPHostName".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_fqdn_address();

/// Total memory in bytes, decimal. \return the value of "TotalPhysicalMemory".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_total_memory();
/// Free memory in bytes, decimal. \return the value of "FreeMemory".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_free_memory();

/// Always empty: no group test accepts the count's name. Use
/// `ISysProps::GetOneDiskProperty(NumFileSystems_Key)`.
/// \return the empty text.
ZEBCOMN_EXPORT std::wstring tivmcomn_get_number_of_file_systems();
/// Disk space in MB (2^20 bytes) with two decimals. \return the value of "TotalDiskSpace".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_total_disk_space();
/// Free disk space in such MB. \return the value of "FreeDiskSpace".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_free_disk_space();

/// OS family name. \return the value of "OSType".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_type();
/// Platform word or platform text. \return the value of "OSPlatform".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_platform();
/// OS version text. \return the value of "OSVersion".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_version();
/// Service-pack text. \return the value of "OSCsdVersion".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_service_pack();
/// Not written on this platform. \return the value of "OSBuildNum", "N/A".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_build_number();
/// Distribution. \return the value of "OSOEMId".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_oem_id();
/// Platform code. \return the value of "PlatformID".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_platform_id();

/// Time-zone name. \return the value of "TimeZone".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_time_zone();
/// Language id, four hexadecimal digits. \return the value of "DefaultLangID".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_language();
/// Local time of the call, "MM/DD/YYYY hh:mm:ss". \return the value of "LastUpdate".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_last_update_time();

/// "N/A" whatever the argument is, and nothing is collected: single file systems are in the second
/// map of `ISysProps::GetAllSystemProperties`.
/// \param index ignored.
/// \return "N/A".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_file_system_name(int index);
/// As tivmcomn_get_file_system_name().
/// \param name ignored.
/// \return "N/A".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_file_system_free_space_by_name(const std::wstring& name);
/// As tivmcomn_get_file_system_name().
/// \param name ignored.
/// \return "N/A".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_file_system_total_space_by_name(const std::wstring& name);

/// Sets the address that every later network collection in the process prefers
/// (`ISysProps::updateLocalIP`, whose rule on threads holds).
/// \param ip the address text.
ZEBCOMN_EXPORT void tivmcomn_set_local_ip_addr(std::wstring ip);

ZEBCOMN_END_C

#ifdef __clang__
#pragma clang diagnostic pop
#endif

/// Name of the user that the process runs as. It has C++ linkage, because the call with a buffer
/// has the C name.
/// \return the value of "UserName".
ZEBCOMN_EXPORT std::wstring tivmcomn_get_user_name();

#endif  // ZEBCOMN_SYSPROPS_SYSPROPS_API_H_
