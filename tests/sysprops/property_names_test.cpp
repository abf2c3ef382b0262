// Each name and fixed text of the property vocabulary beside what the management server expects.
#include "zebcomn/sysprops/property_names.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/named_text.h"

namespace sysprops = quenty_com::pelu::sysprops;

namespace {

using zebcomn_test::ExpectTexts;
using zebcomn_test::NamedText;

const NamedText<std::wstring> kWideTexts[] = {
    {"SystemInfo_Key", &sysprops::SystemInfo_Key, L"SystemInfo"},
    {"PlatformId_Key", &sysprops::PlatformId_Key, L"PlatformID"},
    {"ComputerName_Key", &sysprops::ComputerName_Key, L"ComputerName"},
    {"UserName_Key", &sysprops::UserName_Key, L"UserName"},
    {"DomainName_Key", &sysprops::DomainName_Key, L"DomainName"},
    {"CPUPortable_Key", &sysprops::CPUPortable_Key, L"IsPortable"},
    {"CPUType_Key", &sysprops::CPUType_Key, L"CPUType"},
    {"NumOfCPU_Key", &sysprops::NumOfCPU_Key, L"NumOfCPU"},
    {"CPUSpeed_Key", &sysprops::CPUSpeed_Key, L"CPUSpeed"},
    {"CPUSerialNumber_Key", &sysprops::CPUSerialNumber_Key, L"CPUSerialNumber"},
    {"OSType_Key", &sysprops::OSType_Key, L"OSType"},
    {"OSBitMode_Key", &sysprops::OSBitMode_Key, L"OSBitMode"},
    {"OSPlatform_Key", &sysprops::OSPlatform_Key, L"OSPlatform"},
    {"OSVersion_Key", &sysprops::OSVersion_Key, L"OSVersion"},
    {"OSBuildNum_Key", &sysprops::OSBuildNum_Key, L"OSBuildNum"},
    {"OSCsdVersion_Key", &sysprops::OSCsdVersion_Key, L"OSCsdVersion"},
    {"OSOEMId_Key", &sysprops::OSOEMId_Key, L"OSOEMId"},
    {"TotalPhysicalMemory_Key", &sysprops::TotalPhysicalMemory_Key, L"TotalPhysicalMemory"},
    {"FreeMemory_Key", &sysprops::FreeMemory_Key, L"FreeMemory"},
    {"IPAddress_Key", &sysprops::IPAddress_Key, L"IPAddress"},
    {"IPHostName_Key", &sysprops::IPHostName_Key, L"IPHostName"},
    {"IPXAddress_Key", &sysprops::IPXAddress_Key, L"IPXAddress"},
    {"NETAddress_Key", &sysprops::NETAddress_Key, L"NETAddress"},
    {"SubnetAddress_Key", &sysprops::SubnetAddress_Key, L"SubnetAddress"},
    {"SubnetMask_Key", &sysprops::SubnetMask_Key, L"SubnetMask"},
    {"LastUpdate_Key", &sysprops::LastUpdate_Key, L"LastUpdate"},
    {"TimeZone_Key", &sysprops::TimeZone_Key, L"TimeZone"},
    {"DefaultLangID_Key", &sysprops::DefaultLangID_Key, L"DefaultLangID"},
    {"TotalDiskSpace_Key", &sysprops::TotalDiskSpace_Key, L"TotalDiskSpace"},
    {"FreeDiskSpace_Key", &sysprops::FreeDiskSpace_Key, L"FreeDiskSpace"},
    {"NumFileSystems_Key", &sysprops::NumFileSystems_Key, L"NumberOfFileSystems"},
    {"FileSystemName", &sysprops::FileSystemName, L"FileSystem"},
    {"FileSystemFreeSpace", &sysprops::FileSystemFreeSpace, L"Free_Disk_Space_in_MB"},
    {"FileSystemTotalSpace", &sysprops::FileSystemTotalSpace, L"Total_Disk_Space_in_MB"},
    {"DefaultProp_Val", &sysprops::DefaultProp_Val, L"N/A"},
    {"suse_distribution", &sysprops::suse_distribution, L"SuSE"},
    {"redhat_distribution", &sysprops::redhat_distribution, L"redhat"},
    {"novell_distribution", &sysprops::novell_distribution, L"Novell"},
    {"wrlinux_distribution", &sysprops::wrlinux_distribution, L"Wind River"},
    {"platform_linux", &sysprops::platform_linux, L"LINUX"},
    {"platform_wrlinux", &sysprops::platform_wrlinux, L"WRLNX"},
    {"platform_mac", &sysprops::platform_mac, L"MAC"},
    {"platform_tvn", &sysprops::platform_tvn, L"TVN"},
    {"platform_solaris", &sysprops::platform_solaris, L"SLR"},
    {"platform_hpux", &sysprops::platform_hpux, L"HPUX"},
    {"platform_aix", &sysprops::platform_aix, L"AIX"},
    {"unknown", &sysprops::unknown, L"Unknown"},
    {"os_linux", &sysprops::os_linux, L"Linux"},
    {"os_mac", &sysprops::os_mac, L"Mac OS X"},
    {"os_solaris", &sysprops::os_solaris, L"SunOS Sparc"},
    {"os_hpux", &sysprops::os_hpux, L"HP-UX"},
    {"os_aix", &sysprops::os_aix, L"AIX"},
    {"os_tvn", &sysprops::os_tvn, L"Tarvelin"},
    {"workstation", &sysprops::workstation, L"Linux"},
    {"p_workstation", &sysprops::p_workstation, L"Workstation"},
    {"p_server", &sysprops::p_server, L"Server"},
    {"p_embedded", &sysprops::p_embedded, L"Embedded"},
    {"os_mac_oemid", &sysprops::os_mac_oemid, L"Apple Macintosh"},
    {"os_solaris_oemid", &sysprops::os_solaris_oemid, L"Solaris Sparc"},
    {"os_hpux_oemid", &sysprops::os_hpux_oemid, L"Hpux PA-RISC"},
    {"os_aix_oemid", &sysprops::os_aix_oemid, L"AIX PowerPC"},
    {"os_platform_ini", &sysprops::os_platform_ini, L"/etc/pelu.d/osinfo.ini"},
};

const NamedText<std::string> kNarrowTexts[] = {
    {"redhat_release_file", &sysprops::redhat_release_file, "/etc/redhat-release"},
    {"ubuntu_release_file", &sysprops::ubuntu_release_file, "/etc/lsb-release"},
    {"suse_release_file", &sysprops::suse_release_file, "/etc/SuSE-release"},
    {"server_strings", &sysprops::server_strings, ", Server , Enterprise , AS , ES , WS "},
};

TEST(PropertyNames, EveryWideConstantHasItsText) {
  ExpectTexts(kWideTexts);
}

TEST(PropertyNames, EveryNarrowConstantHasItsText) {
  ExpectTexts(kNarrowTexts);
}

TEST(PropertyNames, ConstantNamedWorkstationHoldsLinux) {
  EXPECT_EQ(sysprops::workstation, L"Linux");
  EXPECT_EQ(sysprops::p_workstation, L"Workstation");
}

TEST(PropertyNames, ServerStringsIsThirtySevenCharactersAndEndsInABlank) {
  EXPECT_EQ(sysprops::server_strings.size(), 37u);
  EXPECT_EQ(sysprops::server_strings.back(), ' ');
}

TEST(PropertyNames, RepeatedTextsAreSeparateObjects) {
  EXPECT_EQ(sysprops::os_linux, sysprops::workstation);
  EXPECT_NE(&sysprops::os_linux, &sysprops::workstation);
  EXPECT_EQ(sysprops::platform_aix, sysprops::os_aix);
  EXPECT_NE(&sysprops::platform_aix, &sysprops::os_aix);
}

}  // namespace
