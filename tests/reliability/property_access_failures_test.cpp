// One property by its name, and the call that each one has.
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "tests/reliability/out_of_memory.h"
#include "tests/reliability/sweep.h"
#include "tests/reliability/swept_host.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_api.h"

namespace {

using namespace quenty_com::pelu::sysprops;
using zebcomn_test::CallOrBadAlloc;
using zebcomn_test::CallThatMayThrow;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::PutSystem;
using zebcomn_test::Trial;

/// A call that gives one property, its value, and what it may give instead when a call fails.
struct Access {
  std::wstring (*get)();
  std::wstring value;
  std::vector<std::wstring> instead;
};

// In each run one of the calls may give something else, or throw, and no more than one.
void CheckAccess(Trial& trial, const std::vector<Access>& calls) {
  int others = 0;
  for (const Access& call : calls) {
    std::wstring value;
    if (!CallOrBadAlloc(trial, [&] { value = call.get(); })) {
      ++others;
      continue;
    }
    if (value == call.value) continue;
    ++others;
    EXPECT_TRUE(std::find(call.instead.begin(), call.instead.end(), value) != call.instead.end())
        << std::string(value.begin(), value.end());
  }
  EXPECT_LE(others, trial.Failed() ? 1 : 0);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(AccessFailures, Cpu, PutSystem, "tivmcomn_get_cpu_type", "tivmcomn_get_cpu_speed",
                 "tivmcomn_get_number_of_processors", "tivmcomn_get_cpu_serial_number") {
  CheckAccess(trial, {{tivmcomn_get_cpu_type, L" fixture,Board", {L""}},
                      {tivmcomn_get_cpu_speed, L" 1333.33MHz", {L""}},
                      {tivmcomn_get_number_of_processors, L"2", {L"0"}},
                      {tivmcomn_get_cpu_serial_number, L"N/A", {}}});
}

ZEBCOMN_HOST_USE(AccessFailures, Memory, PutSystem, "tivmcomn_get_total_memory",
                 "tivmcomn_get_free_memory") {
  CheckAccess(trial, {{tivmcomn_get_total_memory, L"1056182272", {L"0"}},
                      {tivmcomn_get_free_memory, L"83183616", {L"0"}}});
}

ZEBCOMN_HOST_USE(AccessFailures, Os, PutSystem, "tivmcomn_get_os_type", "tivmcomn_get_os_platform",
                 "tivmcomn_get_os_version", "tivmcomn_get_os_service_pack",
                 "tivmcomn_get_os_build_number", "tivmcomn_get_os_oem_id",
                 "tivmcomn_get_os_platform_id") {
  CheckAccess(trial, {{tivmcomn_get_os_type, L"Linux", {}},
                      {tivmcomn_get_os_platform, L"Edge Router 2", {L"Embedded", L""}},
                      {tivmcomn_get_os_version, L"4.3.0.0_cgl", {L"N/A", L""}},
                      {tivmcomn_get_os_service_pack, L"0", {}},
                      {tivmcomn_get_os_build_number, L"N/A", {}},
                      {tivmcomn_get_os_oem_id, L"Wind River", {}},
                      {tivmcomn_get_os_platform_id, L"WRLNX", {}}});
}

std::wstring MbText(double mb) {
  std::array<wchar_t, 32> text{};
  std::swprintf(text.data(), text.size(), L"%0.2lf", mb);
  return text.data();
}

// Both entries of the table are the same file system; one of them may be left out.
ZEBCOMN_HOST_USE(AccessFailures, Disk, PutSystem, "tivmcomn_get_total_disk_space",
                 "tivmcomn_get_free_disk_space", "tivmcomn_get_number_of_file_systems") {
  struct statfs status = {};
  ASSERT_EQ(statfs("/mnt", &status), 0);
  constexpr double kBytesPerMb = 1048576.0;
  const double blocks_per_mb = kBytesPerMb / static_cast<double>(status.f_bsize);
  const double total = static_cast<double>(status.f_blocks) / blocks_per_mb;
  const double free = static_cast<double>(status.f_bfree) / blocks_per_mb;
  CheckAccess(trial,
              {{tivmcomn_get_total_disk_space, MbText(2 * total), {MbText(total), L"0.00", L"N/A"}},
               {tivmcomn_get_free_disk_space, MbText(2 * free), {MbText(free), L"0.00", L"N/A"}},
               {tivmcomn_get_number_of_file_systems, L"", {}}});
}

ZEBCOMN_USE(AccessFailures, Misc, "tivmcomn_get_user_name", "tivmcomn_get_time_zone",
            "tivmcomn_get_language") {
  CheckAccess(trial, {{tivmcomn_get_user_name, tivmcomn_get_user_name(), {L"root", L""}},
                      {tivmcomn_get_time_zone, tivmcomn_get_time_zone(), {L""}},
                      {tivmcomn_get_language, tivmcomn_get_language(), {}}});
}

ZEBCOMN_USE(AccessFailures, LastUpdate, "tivmcomn_get_last_update_time") {
  std::wstring time;
  if (!CallOrBadAlloc(trial, [&] { time = tivmcomn_get_last_update_time(); })) return;
  EXPECT_EQ(time == DefaultProp_Val, trial.FailedIn("localtime_r"));
  EXPECT_EQ(time.size(), trial.FailedIn("localtime_r") ? 3U : 19U);
}

ZEBCOMN_USE_WITHOUT_CALLS(AccessFailures, SingleFileSystems, "tivmcomn_get_file_system_name",
                          "tivmcomn_get_file_system_free_space_by_name",
                          "tivmcomn_get_file_system_total_space_by_name") {
  const std::wstring name = L"/";
  trial.Call([&] {
    EXPECT_EQ(tivmcomn_get_file_system_name(0), DefaultProp_Val);
    EXPECT_EQ(tivmcomn_get_file_system_free_space_by_name(name), DefaultProp_Val);
    EXPECT_EQ(tivmcomn_get_file_system_total_space_by_name(name), DefaultProp_Val);
  });
}

ZEBCOMN_HOST_USE(AccessFailures, ComputerName, PutSystem, "tivmcomn_get_computer_name",
                 "tivmcomn_get_ipx_address") {
  CheckAccess(trial, {{tivmcomn_get_computer_name, L"alpha", {L"N/A", L""}},
                      {tivmcomn_get_ipx_address, L"N/A", {}}});
}

ZEBCOMN_HOST_USE(AccessFailures, DomainName, PutSystem, "tivmcomn_get_domain_name") {
  CheckAccess(trial,
              {{tivmcomn_get_domain_name, L"nis.example.org", {L"long-name.example.net", L""}}});
}

ZEBCOMN_HOST_USE(AccessFailures, FullName, PutSystem, "tivmcomn_get_fqdn_address") {
  CheckAccess(trial, {{tivmcomn_get_fqdn_address,
                       L"alpha.long-name.example.net",
                       {L"alpha.nis.example.org", L"N/A", L""}}});
}

ZEBCOMN_HOST_USE(AccessFailures, Address, PutSystem, "tivmcomn_get_ip_address",
                 "tivmcomn_get_mac_address") {
  CheckAccess(trial, {{tivmcomn_get_ip_address, L"192.0.2.7", {L"192.0.2.200", L"N/A", L""}},
                      {tivmcomn_get_mac_address, L"021a2b3c4d5e", {L"N/A", L""}}});
}

ZEBCOMN_HOST_USE(AccessFailures, Subnet, PutSystem, "tivmcomn_get_subnet_address",
                 "tivmcomn_get_subnet_mask") {
  CheckAccess(trial,
              {{tivmcomn_get_subnet_address, L"192.0.2.0", {L"192.0.2.128", L"N/A", L""}},
               {tivmcomn_get_subnet_mask, L"255.255.255.0", {L"255.255.255.128", L"N/A", L""}}});
}

ZEBCOMN_USE_WITHOUT_CALLS(LookupFailures, Groups, "ISysProps::IsCPUProperty",
                          "ISysProps::IsDiskProperty", "ISysProps::IsMemoryProperty",
                          "ISysProps::IsMiscProperty", "ISysProps::IsNetworkProperty",
                          "ISysProps::IsOSProperty") {
  ISysProps properties;
  trial.Call([&] {
    EXPECT_TRUE(properties.IsCPUProperty(CPUType_Key));
    EXPECT_TRUE(properties.IsDiskProperty(FreeDiskSpace_Key));
    EXPECT_TRUE(properties.IsMemoryProperty(FreeMemory_Key));
    EXPECT_TRUE(properties.IsMiscProperty(UserName_Key));
    EXPECT_TRUE(properties.IsNetworkProperty(IPAddress_Key));
    EXPECT_FALSE(properties.IsOSProperty(SystemInfo_Key));
  });
}

/// Looks one property up by `name` in a new object.
template <std::wstring (ISysProps::*get)(const std::wstring&), const std::wstring& name>
std::wstring LookUp() {
  ISysProps properties;
  return (properties.*get)(name);
}

ZEBCOMN_HOST_USE(LookupFailures, ByName, PutSystem, "ISysProps::GetOneSystemProperty",
                 "ISysProps::GetOneCPUProperty", "ISysProps::GetOneMemoryProperty",
                 "ISysProps::GetOneDiskProperty", "ISysProps::GetOneMiscProperty",
                 "ISysProps::GetOneNetworkProperty", "ISysProps::GetOneOSProperty") {
  CheckAccess(
      trial,
      {{LookUp<&ISysProps::GetOneSystemProperty, OSVersion_Key>, L"4.3.0.0_cgl", {L"N/A", L""}},
       {LookUp<&ISysProps::GetOneCPUProperty, NumOfCPU_Key>, L"2", {L"0"}},
       {LookUp<&ISysProps::GetOneMemoryProperty, FreeMemory_Key>, L"83183616", {L"0"}},
       {LookUp<&ISysProps::GetOneDiskProperty, NumFileSystems_Key>, L"2", {L"0", L"1", L"N/A"}},
       {LookUp<&ISysProps::GetOneMiscProperty, SystemInfo_Key>, L"N/A", {}},
       {LookUp<&ISysProps::GetOneNetworkProperty, IPXAddress_Key>, L"N/A", {}},
       {LookUp<&ISysProps::GetOneOSProperty, OSType_Key>, L"Linux", {}}});
}

// Without memory the last address that was set stays.
ZEBCOMN_USE(LookupFailures, LastKnownAddress, "ISysProps::updateLocalIP",
            "ISysProps::GetLastKnownLocalIP", "tivmcomn_set_local_ip_addr") {
  const std::wstring first = L"192.0.2.7";
  std::wstring second = L"2001:db8:1111:2222:3333:4444:5555:6666";
  const std::wstring expected = second;
  std::wstring value;
  const bool done = CallThatMayThrow(trial, [&] {
    ISysProps::updateLocalIP(first);
    tivmcomn_set_local_ip_addr(std::move(second));
    value = ISysProps::GetLastKnownLocalIP();
  });
  EXPECT_EQ(value, done ? expected : L"");
  const std::wstring& held = ISysProps::m_wstrLastKnownLocalIP;
  EXPECT_TRUE(held.empty() || held == first || held == expected);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  std::wstring().swap(ISysProps::m_wstrLastKnownLocalIP);
}

}  // namespace
