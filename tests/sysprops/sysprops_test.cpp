// ISysProps: which names belong where, and what the aggregations and lookups hold, on whatever host
// the test runs.
#include "zebcomn/sysprops/sysprops.h"

#include <gtest/gtest.h>

#include <ctime>
#include <set>
#include <string>
#include <vector>

#include "zebcomn/sysprops/sysprops_comn.h"

namespace sysprops = quenty_com::pelu::sysprops;
using sysprops::FileSystemMap;
using sysprops::ISysProps;
using sysprops::PropertyMap;

namespace {

struct Group {
  const char* name;
  bool (ISysProps::*accepts)(const std::wstring&);
  std::wstring (ISysProps::*lookup)(const std::wstring&);
  std::vector<std::wstring> names;
};

const std::vector<Group> kGroups = {
    {"network",
     &ISysProps::IsNetworkProperty,
     &ISysProps::GetOneNetworkProperty,
     {L"ComputerName", L"DomainName", L"IPAddress", L"IPHostName", L"IPXAddress", L"NETAddress",
      L"SubnetAddress", L"SubnetMask"}},
    {"CPU",
     &ISysProps::IsCPUProperty,
     &ISysProps::GetOneCPUProperty,
     {L"CPUType", L"NumOfCPU", L"CPUSpeed", L"IsPortable", L"CPUSerialNumber"}},
    {"OS",
     &ISysProps::IsOSProperty,
     &ISysProps::GetOneOSProperty,
     {L"OSType", L"OSBitMode", L"OSPlatform", L"OSVersion", L"OSBuildNum", L"OSCsdVersion",
      L"OSOEMId", L"PlatformID"}},
    {"memory",
     &ISysProps::IsMemoryProperty,
     &ISysProps::GetOneMemoryProperty,
     {L"TotalPhysicalMemory", L"FreeMemory"}},
    {"disk",
     &ISysProps::IsDiskProperty,
     &ISysProps::GetOneDiskProperty,
     {L"FreeDiskSpace", L"TotalDiskSpace"}},
    {"misc",
     &ISysProps::IsMiscProperty,
     &ISysProps::GetOneMiscProperty,
     {L"UserName", L"TimeZone", L"DefaultLangID", L"LastUpdate"}},
};

const std::vector<std::wstring> kNamesOfNoGroup = {L"NumberOfFileSystems",
                                                   L"SystemInfo",
                                                   L"FileSystem",
                                                   L"Free_Disk_Space_in_MB",
                                                   L"FileSystem\"/\" Total_Disk_Space_in_MB",
                                                   L"cputype",
                                                   L"CPUTYPE",
                                                   L"CPUType ",
                                                   L" CPUType",
                                                   L"CPUTyp",
                                                   L"",
                                                   L"N/A",
                                                   std::wstring(L"CPUType\0", 8)};

std::set<std::wstring> AllNames() {
  std::set<std::wstring> names = {L"NumberOfFileSystems"};
  for (const Group& group : kGroups) names.insert(group.names.begin(), group.names.end());
  return names;
}

std::set<std::wstring> NamesOf(const PropertyMap& props) {
  std::set<std::wstring> names;
  for (const auto& [name, value] : props) names.insert(name);
  return names;
}

std::string Narrow(const std::wstring& text) {
  return sysprops::sysprops_wide_to_ansi(text);
}

TEST(ISysProps, EachGroupAcceptsItsOwnNamesOnly) {
  ISysProps properties;
  for (const Group& tested : kGroups) {
    for (const Group& group : kGroups) {
      for (const std::wstring& name : group.names) {
        EXPECT_EQ((properties.*tested.accepts)(name), &tested == &group)
            << tested.name << " of " << Narrow(name);
      }
    }
  }
}

TEST(ISysProps, NamesOfNoGroupAreAcceptedNowhere) {
  ISysProps properties;
  for (const Group& group : kGroups) {
    for (const std::wstring& name : kNamesOfNoGroup) {
      EXPECT_FALSE((properties.*group.accepts)(name)) << group.name << " of " << Narrow(name);
    }
  }
}

TEST(ISysProps, LookupOfANameOfNoGroupIsEmpty) {
  ISysProps properties;
  for (const std::wstring& name : kNamesOfNoGroup) {
    EXPECT_EQ(properties.GetOneSystemProperty(name), L"") << Narrow(name);
  }
}

TEST(ISysProps, FileSystemCountIsKnownToTheDiskLookupOnly) {
  ISysProps properties;
  EXPECT_FALSE(properties.IsDiskProperty(L"NumberOfFileSystems"));
  EXPECT_EQ(properties.GetOneSystemProperty(L"NumberOfFileSystems"), L"");
  sysprops::DiskInformation disk;
  properties.GetDiskInformation(disk);
  EXPECT_EQ(properties.GetOneDiskProperty(L"NumberOfFileSystems"), disk.m_wstrNumberOfFileSystems);
}

TEST(ISysProps, GroupLookupOfAStrangeNameIsNotAvailable) {
  ISysProps properties;
  for (const Group& tested : kGroups) {
    for (const Group& group : kGroups) {
      if (&tested == &group) continue;
      for (const std::wstring& name : group.names) {
        EXPECT_EQ((properties.*tested.lookup)(name), L"N/A") << tested.name << " " << Narrow(name);
      }
    }
    EXPECT_EQ((properties.*tested.lookup)(L"SystemInfo"), L"N/A");
    EXPECT_EQ((properties.*tested.lookup)(L""), L"N/A");
  }
}

TEST(ISysProps, OneMapHolds29NamesAndTwoForEachFileSystem) {
  ISysProps properties;
  PropertyMap props;
  EXPECT_EQ(properties.GetAllSystemProperties(props), 1);
  std::set<std::wstring> names = AllNames();
  names.erase(L"IsPortable");
  EXPECT_EQ(names.size(), 29u);
  PropertyMap unused;
  FileSystemMap file_systems;
  properties.GetAllSystemProperties(unused, file_systems);
  for (const auto& [mount_point, space] : file_systems) {
    const std::wstring prefix = L"FileSystem\"" + mount_point + L"\" ";
    names.insert(prefix + L"Total_Disk_Space_in_MB");
    names.insert(prefix + L"Free_Disk_Space_in_MB");
  }
  EXPECT_EQ(NamesOf(props), names);
}

TEST(ISysProps, TwoMapsHold30NamesAndTheFileSystems) {
  ISysProps properties;
  PropertyMap props;
  FileSystemMap file_systems = {{L"old", {L"1", L"2"}}};
  EXPECT_EQ(properties.GetAllSystemProperties(props, file_systems), 1);
  EXPECT_EQ(NamesOf(props), AllNames());
  EXPECT_EQ(props.size(), 30u);
  EXPECT_EQ(props[L"IsPortable"], L"-1");
  EXPECT_EQ(file_systems.count(L"old"), 0u);
}

TEST(ISysProps, OldEntriesOfAMapAreGone) {
  ISysProps properties;
  PropertyMap props = {{L"old", L"1"}, {L"CPUSerialNumber", L"mine"}};
  properties.GetAllSystemProperties(props);
  EXPECT_EQ(props.count(L"old"), 0u);
  EXPECT_EQ(props[L"CPUSerialNumber"], L"N/A");
  props = {{L"old", L"1"}, {L"CPUSerialNumber", L"mine"}};
  FileSystemMap file_systems;
  properties.GetAllSystemProperties(props, file_systems);
  EXPECT_EQ(props.count(L"old"), 0u);
  EXPECT_EQ(props[L"CPUSerialNumber"], L"N/A");
}

TEST(ISysProps, LookupsGiveTheValuesOfTheMap) {
  tzset();  // No collection sets up the time zone, but the first one that asks for the time does.
  ISysProps properties;
  PropertyMap props;
  FileSystemMap file_systems;
  properties.GetAllSystemProperties(props, file_systems);
  const std::set<std::wstring> kMoving = {L"FreeMemory", L"FreeDiskSpace", L"LastUpdate",
                                          L"CPUSpeed"};
  for (const Group& group : kGroups) {
    for (const std::wstring& name : group.names) {
      ISysProps fresh;
      const std::wstring value = fresh.GetOneSystemProperty(name);
      if (kMoving.count(name) != 0) {
        EXPECT_EQ(value.empty(), props[name].empty()) << Narrow(name);
        continue;
      }
      EXPECT_EQ(value, props[name]) << Narrow(name);
      EXPECT_EQ((fresh.*group.lookup)(name), props[name]) << Narrow(name);
    }
  }
}

TEST(ISysProps, CollectorsTakeAnyRecord) {
  ISysProps properties;
  sysprops::CPUInformation cpu;
  EXPECT_EQ(properties.GetCPUInformation(cpu), 1);
  EXPECT_EQ(cpu.m_wstrIsPortable, L"-1");
  sysprops::MemoryInformation memory;
  EXPECT_EQ(properties.GetMemoryInformation(memory), 1);
  EXPECT_NE(memory.m_wstrTotalPhysicalMemory, L"N/A");
  sysprops::MiscInformation misc;
  EXPECT_EQ(properties.GetMiscInformation(misc), 1);
  EXPECT_NE(misc.m_wstrUserName, L"N/A");
  sysprops::OSInformation os;
  properties.GetOSInformation(os);
  EXPECT_EQ(os.m_wstrPlatformID, L"WRLNX");
}

TEST(ISysProps, LastKnownLocalIpIsOneForTheProcess) {
  EXPECT_EQ(ISysProps::GetLastKnownLocalIP(), L"");
  ISysProps::updateLocalIP(L"192.0.2.1");
  EXPECT_EQ(ISysProps::GetLastKnownLocalIP(), L"192.0.2.1");
  EXPECT_EQ(ISysProps::m_wstrLastKnownLocalIP, L"192.0.2.1");
  ISysProps properties;
  PropertyMap props;
  properties.GetAllSystemProperties(props);
  EXPECT_EQ(ISysProps::GetLastKnownLocalIP(), L"192.0.2.1") << "collecting never changes it";
  ISysProps::updateLocalIP(L"");
  EXPECT_EQ(ISysProps::GetLastKnownLocalIP(), L"");
}

}  // namespace
