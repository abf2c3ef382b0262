#ifndef ZEBCOMN_SYSPROPS_SYSPROPS_API_H_
#define ZEBCOMN_SYSPROPS_SYSPROPS_API_H_

/// \file
/// One property per call, without an `ISysProps` of the caller's own.
///
/// Every call but the last four collects the group of its property once, on an object that lives
/// for the call, and gives the value that `ISysProps::GetOneSystemProperty` gives; nothing is
/// cached. A caller that needs many values is better served by `ISysProps::GetAllSystemProperties`.
/// The text belongs to the caller. No call touches the last error. A lack of memory is reported as
/// std::bad_alloc. Any thread may call, at any time but that of `tivmcomn_set_local_ip_addr`.
///
/// The names have C linkage, yet only callers with the library's C++ string type can use them.

#include <string>

#include "zebcomn/export.h"

#ifdef __clang__
#pragma clang diagnostic push
// The plain names are part of the binary interface; a C caller does not see this header.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

ZEBCOMN_BEGIN_C

ZEBCOMN_EXPORT std::wstring tivmcomn_get_cpu_type();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_cpu_speed();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_number_of_processors();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_cpu_serial_number();

ZEBCOMN_EXPORT std::wstring tivmcomn_get_domain_name();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_computer_name();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_ip_address();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_subnet_address();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_subnet_mask();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_mac_address();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_ipx_address();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_fqdn_address();

/// Bytes, decimal.
ZEBCOMN_EXPORT std::wstring tivmcomn_get_total_memory();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_free_memory();

/// Always empty: no group test accepts the count's name. Use
/// `ISysProps::GetOneDiskProperty(NumFileSystems_Key)`.
ZEBCOMN_EXPORT std::wstring tivmcomn_get_number_of_file_systems();
/// MB (2^20 bytes) with two decimals.
ZEBCOMN_EXPORT std::wstring tivmcomn_get_total_disk_space();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_free_disk_space();

ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_type();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_platform();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_version();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_service_pack();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_build_number();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_oem_id();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_os_platform_id();

ZEBCOMN_EXPORT std::wstring tivmcomn_get_time_zone();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_language();
ZEBCOMN_EXPORT std::wstring tivmcomn_get_last_update_time();

/// "N/A" whatever the argument is, and nothing is collected: single file systems are in the second
/// map of `ISysProps::GetAllSystemProperties`.
ZEBCOMN_EXPORT std::wstring tivmcomn_get_file_system_name(int index);
ZEBCOMN_EXPORT std::wstring tivmcomn_get_file_system_free_space_by_name(const std::wstring& name);
ZEBCOMN_EXPORT std::wstring tivmcomn_get_file_system_total_space_by_name(const std::wstring& name);

/// Sets the address that every later network collection in the process prefers
/// (`ISysProps::updateLocalIP`, whose rule on threads holds).
ZEBCOMN_EXPORT void tivmcomn_set_local_ip_addr(std::wstring ip);

ZEBCOMN_END_C

#ifdef __clang__
#pragma clang diagnostic pop
#endif

/// Name of the user that the process runs as. It has C++ linkage, because the call with a buffer
/// has the C name.
ZEBCOMN_EXPORT std::wstring tivmcomn_get_user_name();

#endif  // ZEBCOMN_SYSPROPS_SYSPROPS_API_H_
