#include "zebcomn/sysprops/sysprops_api.h"

#include "zebcomn/sysprops/sysprops.h"

using quenty_com::pelu::sysprops::ISysProps;
namespace sysprops = quenty_com::pelu::sysprops;

namespace {

std::wstring CollectOne(const std::wstring& name) {
  ISysProps properties;
  return properties.GetOneSystemProperty(name);
}

}  // namespace

std::wstring tivmcomn_get_cpu_type() {
  return CollectOne(sysprops::CPUType_Key);
}

std::wstring tivmcomn_get_cpu_speed() {
  return CollectOne(sysprops::CPUSpeed_Key);
}

std::wstring tivmcomn_get_number_of_processors() {
  return CollectOne(sysprops::NumOfCPU_Key);
}

std::wstring tivmcomn_get_cpu_serial_number() {
  return CollectOne(sysprops::CPUSerialNumber_Key);
}

std::wstring tivmcomn_get_domain_name() {
  return CollectOne(sysprops::DomainName_Key);
}

std::wstring tivmcomn_get_computer_name() {
  return CollectOne(sysprops::ComputerName_Key);
}

std::wstring tivmcomn_get_ip_address() {
  return CollectOne(sysprops::IPAddress_Key);
}

std::wstring tivmcomn_get_subnet_address() {
  return CollectOne(sysprops::SubnetAddress_Key);
}

std::wstring tivmcomn_get_subnet_mask() {
  return CollectOne(sysprops::SubnetMask_Key);
}

std::wstring tivmcomn_get_mac_address() {
  return CollectOne(sysprops::NETAddress_Key);
}

std::wstring tivmcomn_get_ipx_address() {
  return CollectOne(sysprops::IPXAddress_Key);
}

std::wstring tivmcomn_get_fqdn_address() {
  return CollectOne(sysprops::IPHostName_Key);
}

std::wstring tivmcomn_get_total_memory() {
  return CollectOne(sysprops::TotalPhysicalMemory_Key);
}

std::wstring tivmcomn_get_free_memory() {
  return CollectOne(sysprops::FreeMemory_Key);
}

// Kept: the count belongs to no group, so that this is empty on every system.
std::wstring tivmcomn_get_number_of_file_systems() {
  return CollectOne(sysprops::NumFileSystems_Key);
}

std::wstring tivmcomn_get_total_disk_space() {
  return CollectOne(sysprops::TotalDiskSpace_Key);
}

std::wstring tivmcomn_get_free_disk_space() {
  return CollectOne(sysprops::FreeDiskSpace_Key);
}

std::wstring tivmcomn_get_os_type() {
  return CollectOne(sysprops::OSType_Key);
}

std::wstring tivmcomn_get_os_platform() {
  return CollectOne(sysprops::OSPlatform_Key);
}

std::wstring tivmcomn_get_os_version() {
  return CollectOne(sysprops::OSVersion_Key);
}

std::wstring tivmcomn_get_os_service_pack() {
  return CollectOne(sysprops::OSCsdVersion_Key);
}

std::wstring tivmcomn_get_os_build_number() {
  return CollectOne(sysprops::OSBuildNum_Key);
}

std::wstring tivmcomn_get_os_oem_id() {
  return CollectOne(sysprops::OSOEMId_Key);
}

std::wstring tivmcomn_get_os_platform_id() {
  return CollectOne(sysprops::PlatformId_Key);
}

std::wstring tivmcomn_get_user_name() {
  return CollectOne(sysprops::UserName_Key);
}

std::wstring tivmcomn_get_time_zone() {
  return CollectOne(sysprops::TimeZone_Key);
}

std::wstring tivmcomn_get_language() {
  return CollectOne(sysprops::DefaultLangID_Key);
}

std::wstring tivmcomn_get_last_update_time() {
  return CollectOne(sysprops::LastUpdate_Key);
}

// Kept: single file systems were never reported through these three; callers know "N/A".
std::wstring tivmcomn_get_file_system_name(int /*index*/) {
  return sysprops::DefaultProp_Val;
}

std::wstring tivmcomn_get_file_system_free_space_by_name(const std::wstring& /*name*/) {
  return sysprops::DefaultProp_Val;
}

std::wstring tivmcomn_get_file_system_total_space_by_name(const std::wstring& /*name*/) {
  return sysprops::DefaultProp_Val;
}

// By value, because callers' object files hold this signature.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void tivmcomn_set_local_ip_addr(std::wstring ip) {
  ISysProps::updateLocalIP(ip);
}
