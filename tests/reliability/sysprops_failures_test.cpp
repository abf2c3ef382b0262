// The collectors of the system properties, the records that they fill, and the whole catalogue.
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "tests/reliability/out_of_memory.h"
#include "tests/reliability/sweep.h"
#include "tests/reliability/swept_host.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_comn.h"

namespace {

using namespace quenty_com::pelu::sysprops;
using zebcomn_test::CallOrBadAlloc;
using zebcomn_test::CallThatMayThrow;
using zebcomn_test::FailedInConversion;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::PrivateHost;
using zebcomn_test::PutSystem;
using zebcomn_test::Trial;

ZEBCOMN_USE_WITHOUT_CALLS(RecordOfPropertiesFailures, Made, "CPUInformation::CPUInformation",
                          "CPUInformation::~CPUInformation", "DiskInformation::DiskInformation",
                          "DiskInformation::~DiskInformation",
                          "MemoryInformation::MemoryInformation",
                          "MemoryInformation::~MemoryInformation",
                          "MiscInformation::MiscInformation", "MiscInformation::~MiscInformation",
                          "NetworkInformation::NetworkInformation",
                          "NetworkInformation::~NetworkInformation", "OSInformation::OSInformation",
                          "OSInformation::~OSInformation", "ISysProps::ISysProps",
                          "ISysProps::~ISysProps") {
  trial.Call([] {
    const CPUInformation cpu;
    const DiskInformation disk;
    const MemoryInformation memory;
    const MiscInformation misc;
    const NetworkInformation network;
    const OSInformation os;
    const ISysProps properties;
    EXPECT_EQ(cpu.m_wstrCPUType, DefaultProp_Val);
    EXPECT_EQ(disk.m_wstrNumberOfFileSystems, DefaultProp_Val);
    EXPECT_EQ(memory.m_wstrFreeMemory, DefaultProp_Val);
    EXPECT_EQ(misc.m_wstrUserName, DefaultProp_Val);
    EXPECT_EQ(network.m_wstrIPAddress, DefaultProp_Val);
    EXPECT_EQ(os.m_wstrOSVersion, DefaultProp_Val);
  });
}

const std::string kNarrow = "Text of some length, with a Euro: \u20ac";
const std::wstring kWide = L"Text of some length, with a Euro: \u20ac";

ZEBCOMN_USE(PropertyTextFailures, Conversions, "sysprops_ansi_to_wide", "sysprops_wide_to_ansi") {
  std::string narrow_argument = kNarrow;
  std::wstring wide_argument = kWide;
  std::wstring wide = L"as it was";
  std::string narrow = "as it was";
  trial.Call([&] { wide = sysprops_ansi_to_wide(std::move(narrow_argument)); });
  const bool first_failed = FailedInConversion(trial);
  trial.Call([&] { narrow = sysprops_wide_to_ansi(std::move(wide_argument)); });
  EXPECT_EQ(wide, first_failed ? L"" : kWide);
  EXPECT_EQ(narrow, !first_failed && FailedInConversion(trial) ? "" : kNarrow);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

void PutLongNodeName(PrivateHost& host) {
  host.SetNodeName("a-name-that-takes-memory.example.net");
}

ZEBCOMN_HOST_USE(PropertyTextFailures, ComputerName, PutLongNodeName, "getComputerName") {
  std::string name = "as it was";
  int result = 77;
  trial.Call([&] { result = getComputerName(name); });
  EXPECT_EQ(result, trial.Failed() ? 0 : 1);
  EXPECT_EQ(name, trial.Failed() ? "as it was" : "a-name-that-takes-memory");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// A last read that fails has nothing left to read.
ZEBCOMN_HOST_USE(CollectorFailures, Cpu, PutSystem, "ISysProps::GetCPUInformation") {
  ISysProps properties;
  CPUInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetCPUInformation(info); })) return;
  EXPECT_EQ(result, 1);
  const bool unread = trial.FailedIn("open") || trial.FailedIn("read", 1);
  EXPECT_EQ(info.m_wstrNumOfCPU, unread ? L"0" : L"2");
  EXPECT_EQ(info.m_wstrIsPortable, L"-1");
  if (!FailedInConversion(trial)) {
    EXPECT_EQ(info.m_wstrCPUType, unread ? L"" : L" fixture,Board");
    EXPECT_EQ(info.m_wstrCPUSpeed, unread ? L"" : L" 1333.33MHz");
  } else {
    EXPECT_NE(info.m_wstrCPUType.empty(), info.m_wstrCPUSpeed.empty()) << "one of the two is lost";
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

constexpr int kManyProcessors = 1000;

/// A system with more processors than one block of their file tells of.
void PutManyProcessors(PrivateHost& host) {
  PutSystem(host);
  std::string text;
  for (int i = 0; i < kManyProcessors; ++i) {
    text += "processor\t: " + std::to_string(i) + "\nclock\t\t: 1333.33MHz\nmodel\t\t: Board\n\n";
  }
  host.PutFile("/proc/cpuinfo", text);
}

// What has been read before a read fails counts.
ZEBCOMN_HOST_USE(CollectorFailures, CpuOfManyProcessors, PutManyProcessors,
                 "ISysProps::GetCPUInformation") {
  ISysProps properties;
  CPUInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetCPUInformation(info); })) return;
  EXPECT_EQ(result, 1);
  const int found = std::stoi(info.m_wstrNumOfCPU);
  if (trial.FailedIn("open") || trial.FailedIn("read", 1)) {
    EXPECT_EQ(found, 0);
  } else if (trial.FailedIn("read", 2)) {
    EXPECT_GT(found, 0);
    EXPECT_LT(found, kManyProcessors);
  } else if (!trial.FailedIn("read")) {
    EXPECT_EQ(found, kManyProcessors);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(CollectorFailures, Memory, PutSystem, "ISysProps::GetMemoryInformation") {
  ISysProps properties;
  MemoryInformation info;
  int result = 77;
  if (!CallThatMayThrow(trial, [&] { result = properties.GetMemoryInformation(info); })) return;
  EXPECT_EQ(result, 1);
  const bool unread = trial.FailedIn("open") || trial.FailedIn("read", 1);
  EXPECT_EQ(info.m_wstrTotalPhysicalMemory, unread ? L"0" : L"1056182272");
  EXPECT_EQ(info.m_wstrFreeMemory, unread ? L"0" : L"83183616");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(CollectorFailures, Os, PutSystem, "ISysProps::GetOSInformation") {
  ISysProps properties;
  OSInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetOSInformation(info); })) return;
  const bool no_platform = trial.FailedIn("open", 1) || trial.FailedIn("read", 1);
  // The second read of the first file finds its end.
  const bool no_version = trial.FailedIn("open", 2) || trial.FailedIn("read", 3);
  EXPECT_EQ(result, no_version ? 0 : 1);
  EXPECT_EQ(info.m_wstrPlatformID, platform_wrlinux);
  EXPECT_EQ(info.m_wstrOSType, os_linux);
  EXPECT_EQ(info.m_wstrOSOEMId, wrlinux_distribution);
  if (!FailedInConversion(trial)) {
    EXPECT_EQ(info.m_wstrOSPlatform, no_platform ? p_embedded : L"Edge Router 2");
    EXPECT_EQ(info.m_wstrOSVersion, no_version ? DefaultProp_Val : L"4.3.0.0_cgl");
  } else {
    EXPECT_NE(info.m_wstrOSPlatform.empty(), info.m_wstrOSVersion.empty()) << "one is lost";
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// An entry that cannot be measured is left out; one whose name cannot be converted has none.
ZEBCOMN_HOST_USE(CollectorFailures, Disk, PutSystem, "ISysProps::GetDiskInformation") {
  ISysProps properties;
  DiskInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetDiskInformation(info); })) return;
  const bool no_table = trial.FailedIn("setmntent");
  EXPECT_EQ(result, no_table ? 0 : 1);
  size_t found = 2;
  if (no_table || trial.FailedIn("getmntent_r", 1)) found = 0;
  if (trial.FailedIn("getmntent_r", 2) || trial.FailedIn("statfs")) found = 1;
  EXPECT_EQ(info.m_mapFileSystems.size(), found);
  EXPECT_EQ(info.m_wstrNumberOfFileSystems, no_table ? DefaultProp_Val : std::to_wstring(found));
  EXPECT_EQ(info.m_wstrTotalDiskSpace == DefaultProp_Val, no_table);
  EXPECT_EQ(info.m_mapFileSystems.count(L""), FailedInConversion(trial) ? 1U : 0U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(CollectorFailures, Misc, "ISysProps::GetMiscInformation") {
  const passwd* const entry = getpwuid(getuid());
  const std::string user = entry == nullptr ? "root" : entry->pw_name;
  ISysProps properties;
  MiscInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetMiscInformation(info); })) return;
  EXPECT_EQ(result, 1);
  if (!FailedInConversion(trial)) {
    EXPECT_EQ(info.m_wstrUserName,
              trial.FailedIn("getpwuid_r") ? L"root" : std::wstring(user.begin(), user.end()));
    EXPECT_FALSE(info.m_wstrTimeZone.empty());
  } else {
    EXPECT_NE(info.m_wstrUserName.empty(), info.m_wstrTimeZone.empty()) << "one is lost";
  }
  EXPECT_EQ(info.m_wstrLastUpdate == DefaultProp_Val, trial.FailedIn("localtime_r"));
  EXPECT_EQ(info.m_wstrDefaultLangID.size(), 4U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// Sets the last known local IP for the length of a run.
class LastKnown {
 public:
  explicit LastKnown(const wchar_t* ip) { ISysProps::updateLocalIP(ip); }
  ~LastKnown() { std::wstring().swap(ISysProps::m_wstrLastKnownLocalIP); }
  LastKnown(const LastKnown&) = delete;
  LastKnown& operator=(const LastKnown&) = delete;
};

// An address of which something cannot be read does not count, and the other one is taken.
void CheckNetwork(Trial& trial, const std::wstring& expected, const std::wstring& other) {
  ISysProps properties;
  NetworkInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetNetworkInformation(info); })) return;
  EXPECT_EQ(info.m_wstrIPXAddress, DefaultProp_Val);
  if (result == 0) {
    EXPECT_TRUE(trial.FailedIn("getifaddrs") || trial.FailedInAllocation());
    EXPECT_EQ(info.m_wstrIPAddress, DefaultProp_Val);
    EXPECT_EQ(info.m_wstrNETAddress, DefaultProp_Val);
    return;
  }
  EXPECT_EQ(result, 1);
  const std::wstring& ip = info.m_wstrIPAddress;
  if (FailedInConversion(trial)) {
    EXPECT_TRUE(ip.empty() || ip == expected || ip == other);
  } else {
    // Without an index an address stands under number 0, the first.
    const bool moved = trial.FailedIn("getnameinfo") || trial.FailedIn("socket") ||
                       trial.FailedIn("ioctl") || trial.FailedIn("inet_ntop") ||
                       trial.FailedIn("if_nametoindex");
    EXPECT_TRUE(ip == expected || (moved && ip == other));
    EXPECT_EQ(info.m_wstrNETAddress, L"021a2b3c4d5e");
    EXPECT_EQ(info.m_wstrComputerName, trial.FailedIn("uname") ? DefaultProp_Val : L"alpha");
    EXPECT_EQ(info.m_wstrSubnetMask, ip == L"192.0.2.7" ? L"255.255.255.0" : L"255.255.255.128");
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(CollectorFailures, Network, PutSystem, "ISysProps::GetNetworkInformation") {
  CheckNetwork(trial, L"192.0.2.7", L"192.0.2.200");
}

/// A system whose only link has no address but an IPv6 one.
void PutSystemWithoutIpv4(PrivateHost& host) {
  PutSystem(host);
  host.Ip("addr flush dev port0");
  host.AddIpv6("2001:db8:1111:2222:3333:4444:5555:9/64", "port0");
}

// No address is of the family that is looked for, so the first one is taken.
ZEBCOMN_HOST_USE(CollectorFailures, NetworkOfAnotherFamily, PutSystemWithoutIpv4,
                 "ISysProps::GetNetworkInformation") {
  ISysProps properties;
  NetworkInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetNetworkInformation(info); })) return;
  const std::wstring address = L"2001:db8:1111:2222:3333:4444:5555:9";
  const std::wstring& ip = info.m_wstrIPAddress;
  EXPECT_TRUE(ip == address || (trial.Failed() && (ip.empty() || ip == DefaultProp_Val)));
  if (result == 0) {
    EXPECT_TRUE(trial.Failed());
    EXPECT_EQ(ip, DefaultProp_Val);
  } else if (ip == address && !FailedInConversion(trial)) {
    EXPECT_EQ(info.m_wstrSubnetMask, L"ffff:ffff:ffff:ffff:0:0:0:0");
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(CollectorFailures, NetworkWithALastKnownAddress, PutSystem,
                 "ISysProps::GetNetworkInformation") {
  const LastKnown last_known(L"192.0.2.200");
  CheckNetwork(trial, L"192.0.2.200", L"192.0.2.7");
}

// An IPv6 address that nobody has: no address is of its family, and the first one is taken.
ZEBCOMN_HOST_USE(CollectorFailures, NetworkWithALastKnownAddressOfNobody, PutSystem,
                 "ISysProps::GetNetworkInformation") {
  const LastKnown last_known(L"2001:db8:1111:2222:3333:4444:5555:7777");
  CheckNetwork(trial, L"192.0.2.7", L"192.0.2.200");
}

void PutSystemWithoutAddresses(PrivateHost& host) {
  PutSystem(host);
  host.Ip("addr flush dev port0");
}

// The names are there all the same.
ZEBCOMN_HOST_USE(CollectorFailures, NetworkWithoutAddresses, PutSystemWithoutAddresses,
                 "ISysProps::GetNetworkInformation") {
  ISysProps properties;
  NetworkInformation info;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetNetworkInformation(info); })) return;
  EXPECT_EQ(result, 0);
  EXPECT_EQ(info.m_wstrIPAddress, DefaultProp_Val);
  EXPECT_EQ(info.m_wstrIPXAddress, DefaultProp_Val);
  if (!FailedInConversion(trial)) {
    EXPECT_EQ(info.m_wstrComputerName, trial.FailedIn("uname") ? DefaultProp_Val : L"alpha");
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// Whether every property but the file systems' own is there.
void ExpectAllNames(const PropertyMap& props, bool with_portable) {
  for (const std::wstring* name : {&ComputerName_Key,
                                   &DomainName_Key,
                                   &IPAddress_Key,
                                   &IPHostName_Key,
                                   &IPXAddress_Key,
                                   &NETAddress_Key,
                                   &SubnetAddress_Key,
                                   &SubnetMask_Key,
                                   &CPUType_Key,
                                   &NumOfCPU_Key,
                                   &CPUSpeed_Key,
                                   &CPUSerialNumber_Key,
                                   &TotalPhysicalMemory_Key,
                                   &FreeMemory_Key,
                                   &TotalDiskSpace_Key,
                                   &FreeDiskSpace_Key,
                                   &NumFileSystems_Key,
                                   &PlatformId_Key,
                                   &OSType_Key,
                                   &OSBitMode_Key,
                                   &OSPlatform_Key,
                                   &OSVersion_Key,
                                   &OSBuildNum_Key,
                                   &OSCsdVersion_Key,
                                   &OSOEMId_Key,
                                   &UserName_Key,
                                   &LastUpdate_Key,
                                   &TimeZone_Key,
                                   &DefaultLangID_Key}) {
    EXPECT_EQ(props.count(*name), 1U) << name->size();
  }
  EXPECT_EQ(props.count(CPUPortable_Key), with_portable ? 1U : 0U);
}

// Whatever a collector meets, all names are there, or the lack of memory is told.
ZEBCOMN_HOST_USE(CatalogueFailures, Whole, PutSystem, "ISysProps::GetAllSystemProperties") {
  ISysProps properties;
  PropertyMap props;
  int result = 77;
  if (!CallOrBadAlloc(trial, [&] { result = properties.GetAllSystemProperties(props); })) return;
  EXPECT_EQ(result, 1);
  ExpectAllNames(props, false);
  const bool all_disks = !trial.FailedIn("setmntent") && !trial.FailedIn("getmntent_r", 1) &&
                         !trial.FailedIn("getmntent_r", 2) && !trial.FailedIn("statfs");
  EXPECT_EQ(props.size() == 29 + 2 * 2, all_disks);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(CatalogueFailures, WithFileSystemsApart, PutSystem,
                 "ISysProps::GetAllSystemProperties") {
  ISysProps properties;
  PropertyMap props;
  FileSystemMap file_systems;
  int result = 77;
  if (!CallOrBadAlloc(trial,
                      [&] { result = properties.GetAllSystemProperties(props, file_systems); })) {
    return;
  }
  EXPECT_EQ(result, 1);
  ExpectAllNames(props, true);
  EXPECT_EQ(props.size(), 30U);
  if (!trial.Failed()) {
    EXPECT_EQ(file_systems.size(), 2U);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

}  // namespace
