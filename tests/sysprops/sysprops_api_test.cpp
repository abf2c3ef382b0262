// The flat calls, one property each.
#include "zebcomn/sysprops/sysprops_api.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>

#include "tests/sysprops/made_up_host.h"
#include "zebcomn/sysprops/sysprops_comn.h"
#include "zebcomn/util/user_name.h"

namespace {

using quenty_com::pelu::sysprops::ISysProps;
using zebcomn_test::MadeUpValues;
using zebcomn_test::PrivateHost;

struct Accessor {
  const char* property;
  std::wstring (*call)();
};

const Accessor kAccessors[] = {
    {"CPUType", tivmcomn_get_cpu_type},
    {"CPUSpeed", tivmcomn_get_cpu_speed},
    {"NumOfCPU", tivmcomn_get_number_of_processors},
    {"CPUSerialNumber", tivmcomn_get_cpu_serial_number},
    {"DomainName", tivmcomn_get_domain_name},
    {"ComputerName", tivmcomn_get_computer_name},
    {"IPAddress", tivmcomn_get_ip_address},
    {"SubnetAddress", tivmcomn_get_subnet_address},
    {"SubnetMask", tivmcomn_get_subnet_mask},
    {"NETAddress", tivmcomn_get_mac_address},
    {"IPXAddress", tivmcomn_get_ipx_address},
    {"IPHostName", tivmcomn_get_fqdn_address},
    {"TotalPhysicalMemory", tivmcomn_get_total_memory},
    {"FreeMemory", tivmcomn_get_free_memory},
    {"TotalDiskSpace", tivmcomn_get_total_disk_space},
    {"FreeDiskSpace", tivmcomn_get_free_disk_space},
    {"OSType", tivmcomn_get_os_type},
    {"OSPlatform", tivmcomn_get_os_platform},
    {"OSVersion", tivmcomn_get_os_version},
    {"OSCsdVersion", tivmcomn_get_os_service_pack},
    {"OSBuildNum", tivmcomn_get_os_build_number},
    {"OSOEMId", tivmcomn_get_os_oem_id},
    {"PlatformID", tivmcomn_get_os_platform_id},
    {"DefaultLangID", tivmcomn_get_language},
};

TEST(FlatAccessors, EachCallGivesItsProperty) {
  if (std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string lines = zebcomn_test::RunInPrivateHost([](PrivateHost& host) {
    zebcomn_test::PutMadeUpFiles(host);
    zebcomn_test::AddMadeUpLinks(host);
    unsetenv("LANG");
    quenty_com::pelu::sysprops::PropertyMap props;
    for (const Accessor& accessor : kAccessors) {
      const std::string name = accessor.property;
      props[std::wstring(name.begin(), name.end())] = accessor.call();
    }
    return zebcomn_test::Lines(props);
  });
  for (const Accessor& accessor : kAccessors) {
    EXPECT_EQ(zebcomn_test::ValueIn(lines, accessor.property), MadeUpValues().at(accessor.property))
        << accessor.property;
  }
}

TEST(FlatAccessors, MiscCallsGiveTheirProperties) {
  ISysProps properties;
  EXPECT_EQ(tivmcomn_get_user_name(), properties.GetOneSystemProperty(L"UserName"));
  EXPECT_EQ(tivmcomn_get_time_zone(), properties.GetOneSystemProperty(L"TimeZone"));
  EXPECT_EQ(tivmcomn_get_last_update_time().size(), 19u);
}

TEST(FlatAccessors, UserNameIsThatOfTheCallWithABuffer) {
  std::array<char, 256> name{};
  ASSERT_EQ(tivmcomn_get_user_name(name.data(), name.size()), 0u);
  EXPECT_EQ(tivmcomn_get_user_name(),
            quenty_com::pelu::sysprops::sysprops_ansi_to_wide(name.data()));
}

TEST(FlatAccessors, NumberOfFileSystemsIsAlwaysEmpty) {
  EXPECT_EQ(tivmcomn_get_number_of_file_systems(), L"");
}

TEST(FlatAccessors, SingleFileSystemsAreNotAvailable) {
  for (const int index : {0, -1, 1, 1000}) {
    EXPECT_EQ(tivmcomn_get_file_system_name(index), L"N/A");
  }
  for (const wchar_t* mount_point : {L"/", L"", L"/made-up/root"}) {
    EXPECT_EQ(tivmcomn_get_file_system_free_space_by_name(mount_point), L"N/A");
    EXPECT_EQ(tivmcomn_get_file_system_total_space_by_name(mount_point), L"N/A");
  }
}

TEST(FlatAccessors, SettingTheLocalAddressSteersTheNextCollection) {
  if (std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string seen = zebcomn_test::RunInPrivateHost([](PrivateHost& host) {
    zebcomn_test::AddMadeUpLinks(host);
    tivmcomn_set_local_ip_addr(L"198.51.100.9");
    const bool taken = tivmcomn_get_ip_address() == L"198.51.100.9" &&
                       ISysProps::GetLastKnownLocalIP() == L"198.51.100.9";
    tivmcomn_set_local_ip_addr(L"");
    return std::string(taken && tivmcomn_get_ip_address() == L"192.0.2.7" ? "both" : "no");
  });
  EXPECT_EQ(seen, "both");
}

}  // namespace
