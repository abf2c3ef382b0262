// End to end: the public interface on the real paths of a host that the test makes up.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "tests/sysprops/made_up_host.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_api.h"
#include "zebcomn/sysprops/sysprops_comn.h"

namespace {

namespace sysprops = quenty_com::pelu::sysprops;
using sysprops::ISysProps;
using sysprops::sysprops_wide_to_ansi;
using zebcomn_test::AddMadeUpLinks;
using zebcomn_test::Lines;
using zebcomn_test::MadeUpValues;
using zebcomn_test::PrivateHost;
using zebcomn_test::PutMadeUpFiles;
using zebcomn_test::RunInPrivateHost;
using zebcomn_test::ValueIn;
using zebcomn_test::Values;

std::string CollectAll() {
  ISysProps properties;
  sysprops::PropertyMap props;
  properties.GetAllSystemProperties(props);
  return Lines(props);
}

void ExpectValues(const std::string& lines, const Values& expected) {
  for (const auto& [name, value] : expected) EXPECT_EQ(ValueIn(lines, name), value) << name;
}

class SyspropsHost : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  }
};

TEST_F(SyspropsHost, WholeCatalogueOfAMadeUpHost) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    PutMadeUpFiles(host);
    AddMadeUpLinks(host);
    unsetenv("LANG");
    return CollectAll();
  });
  ExpectValues(lines, MadeUpValues());
  ExpectValues(lines, {{"FileSystem\"/made-up/root\" Total_Disk_Space_in_MB", "1024.00"},
                       {"FileSystem\"/made-up/root\" Free_Disk_Space_in_MB", "512.00"},
                       {"FileSystem\"/made-up/var\" Total_Disk_Space_in_MB", "100.00"},
                       {"FileSystem\"/made-up/var\" Free_Disk_Space_in_MB", "50.00"},
                       {"IsPortable", "missing"}});
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 33);
}

TEST_F(SyspropsHost, FileSystemsTravelInTheSecondMap) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    PutMadeUpFiles(host);
    ISysProps properties;
    sysprops::PropertyMap props;
    sysprops::FileSystemMap file_systems;
    properties.GetAllSystemProperties(props, file_systems);
    std::string text = std::to_string(props.size());
    for (const auto& [mount_point, space] : file_systems) {
      text += " " + sysprops_wide_to_ansi(mount_point + L" " + space.first + L" " + space.second);
    }
    return text;
  });
  EXPECT_EQ(seen, "30 /made-up/root 1024.00 512.00 /made-up/var 100.00 50.00");
}

/// What a network collection gives after this address was set as the last known one.
std::string NetworkWith(const std::wstring& last_known) {
  return RunInPrivateHost([&](PrivateHost& host) {
    PutMadeUpFiles(host);
    AddMadeUpLinks(host);
    tivmcomn_set_local_ip_addr(last_known);
    return CollectAll();
  });
}

TEST_F(SyspropsHost, LastKnownAddressIsPreferred) {
  ExpectValues(NetworkWith(L"198.51.100.9"), {{"IPAddress", "198.51.100.9"},
                                              {"NETAddress", "020000000001"},
                                              {"SubnetAddress", "198.51.0.0"},
                                              {"SubnetMask", "255.255.0.0"}});
}

TEST_F(SyspropsHost, SubnetIsThatOfTheLastKnownAddressAmongSeveral) {
  ExpectValues(NetworkWith(L"192.0.2.200"), {{"IPAddress", "192.0.2.200"},
                                             {"SubnetAddress", "192.0.2.128"},
                                             {"SubnetMask", "255.255.255.128"}});
}

TEST_F(SyspropsHost, LastKnownIpv6AddressIsPreferred) {
  ExpectValues(NetworkWith(L"2001:db8:0:0:0:0:0:9"), {{"IPAddress", "2001:db8:0:0:0:0:0:9"},
                                                      {"NETAddress", "020000000001"},
                                                      {"SubnetAddress", "2001:db8:0:0:0:0:0:0"},
                                                      {"SubnetMask", "ffff:ffff:0:0:0:0:0:0"}});
}

TEST_F(SyspropsHost, LostIpv6AddressChoosesAmongIpv6) {
  const std::string lines = NetworkWith(L"fe80::1");
  EXPECT_NE(ValueIn(lines, "IPAddress").find(':'), std::string::npos) << lines;
}

TEST_F(SyspropsHost, LoopbackIsNoLocalAddress) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    PutMadeUpFiles(host);
    ISysProps properties;
    sysprops::NetworkInformation network;
    const int result = properties.GetNetworkInformation(network);
    return std::to_string(result) + "\n" + CollectAll();
  });
  EXPECT_EQ(lines[0], '0');
  ExpectValues(lines, {{"ComputerName", "alpha"},
                       {"IPHostName", "alpha.example.net"},
                       {"IPAddress", "N/A"},
                       {"NETAddress", "N/A"},
                       {"SubnetAddress", "N/A"},
                       {"SubnetMask", "N/A"}});
}

TEST_F(SyspropsHost, NodeNameWithADotGivesItsFirstLabel) {
  const std::string name = RunInPrivateHost([](PrivateHost& host) {
    host.SetNodeName("alpha.beta");
    return sysprops_wide_to_ansi(tivmcomn_get_computer_name());
  });
  EXPECT_EQ(name, "alpha");
}

TEST_F(SyspropsHost, HostThatCannotResolveItsOwnNameStillHasNames) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    PutMadeUpFiles(host);
    host.PutFile("/etc/hosts", "127.0.0.1 localhost\n");
    return CollectAll();
  });
  ExpectValues(lines, {{"ComputerName", "alpha"}, {"IPHostName", "alpha.nis.example"}});
}

TEST_F(SyspropsHost, MissingFilesGiveTheDefaults) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    PutMadeUpFiles(host);
    for (const char* file : {"/etc/fstab", "/etc/wrs-release", "/etc/zebosplatform.conf"}) {
      host.RemoveEtcFile(file);
    }
    host.PutEmptyDirectory("/proc");
    return CollectAll();
  });
  ExpectValues(lines, {{"OSPlatform", "Embedded"},
                       {"OSVersion", "N/A"},
                       {"NumberOfFileSystems", "N/A"},
                       {"TotalDiskSpace", "N/A"},
                       {"CPUType", ""},
                       {"CPUSpeed", ""},
                       {"NumOfCPU", "0"},
                       {"TotalPhysicalMemory", "0"},
                       {"FreeMemory", "0"}});
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 29);
}

TEST_F(SyspropsHost, EmptyFilesGiveTheDefaults) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    for (const char* file : {"/proc/cpuinfo", "/proc/meminfo", "/etc/fstab", "/etc/wrs-release",
                             "/etc/zebosplatform.conf"}) {
      host.PutFile(file, "");
    }
    return CollectAll();
  });
  ExpectValues(lines, {{"OSPlatform", "Embedded"},
                       {"OSVersion", "N/A"},
                       {"NumberOfFileSystems", "0"},
                       {"TotalDiskSpace", "0.00"},
                       {"FreeDiskSpace", "0.00"},
                       {"NumOfCPU", "0"},
                       {"TotalPhysicalMemory", "0"}});
}

TEST_F(SyspropsHost, LinesWithoutEndKeepWhatCameBefore) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    const std::string endless(300000, 'e');
    host.PutFile("/proc/cpuinfo", "processor : 0\nmodel : kept\n" + endless + "\nprocessor : 1\n");
    host.PutFile("/proc/meminfo", "MemTotal: 8 kB\nMemFree: 4 kB " + endless);
    host.PutFile("/etc/fstab", "a /made-up/var ext3\nb " + endless + " ext3\nc /made-up/root ext3");
    host.PutFile("/etc/wrs-release", endless + "Wind River Linux 1.0 " + endless);
    host.PutFile("/etc/zebosplatform.conf", endless);
    return CollectAll();
  });
  ExpectValues(lines, {{"CPUType", " kept"},
                       {"NumOfCPU", "1"},
                       {"TotalPhysicalMemory", "8192"},
                       {"FreeMemory", "0"},
                       {"NumberOfFileSystems", "2"},
                       {"OSVersion", "1.0"},
                       {"OSPlatform", std::string(300000, 'e')}});
}

TEST_F(SyspropsHost, InvalidUtf8EndsAValue) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    host.PutFile("/proc/cpuinfo", "model : ok\xFFlost\n");
    host.PutFile("/etc/zebosplatform.conf", "plat\xC3(lost\n");
    host.PutFile("/etc/wrs-release", "Wind River Linux 5\xE2\x82 x\n");
    return CollectAll();
  });
  ExpectValues(lines, {{"CPUType", " ok"}, {"OSPlatform", "plat"}, {"OSVersion", "5"}});
}

TEST_F(SyspropsHost, WhatACollectionDoesNotWriteKeepsItsEarlierValue) {
  const std::string lines = RunInPrivateHost([](PrivateHost& host) {
    PutMadeUpFiles(host);
    AddMadeUpLinks(host);
    ISysProps properties;
    sysprops::PropertyMap props;
    properties.GetAllSystemProperties(props);
    host.RemoveEtcFile("/etc/wrs-release");
    host.RemoveEtcFile("/etc/fstab");
    host.RemoveEtcFile("/etc/zebosplatform.conf");
    for (const char* link : {"port0", "port0-peer", "port1", "port1-peer"}) {
      host.Ip(std::string("link set ") + link + " down");
    }
    properties.GetAllSystemProperties(props);
    return Lines(props);
  });
  ExpectValues(lines, {{"OSVersion", "4.3.0.0_cgl"},
                       {"OSPlatform", "Embedded"},
                       {"NumberOfFileSystems", "2"},
                       {"TotalDiskSpace", "1124.00"},
                       {"IPAddress", "192.0.2.7"}});
}

/// What two lookups give when the release file and the mount table go between them: what the second
/// still knows, the first has collected.
std::string LookUpAroundALoss(std::wstring (ISysProps::*first)(const std::wstring&),
                              const std::wstring& name) {
  return RunInPrivateHost([&](PrivateHost& host) {
    PutMadeUpFiles(host);
    ISysProps properties;
    const std::wstring value = (properties.*first)(name);
    host.RemoveEtcFile("/etc/wrs-release");
    host.RemoveEtcFile("/etc/fstab");
    return sysprops_wide_to_ansi(value + L"|" + properties.GetOneOSProperty(L"OSVersion") + L"|" +
                                 properties.GetOneDiskProperty(L"NumberOfFileSystems"));
  });
}

TEST_F(SyspropsHost, GroupLookupCollectsItsGroupOnlyAndForAnUnknownNameToo) {
  EXPECT_EQ(LookUpAroundALoss(&ISysProps::GetOneOSProperty, L"nonsense"), "N/A|4.3.0.0_cgl|N/A");
  EXPECT_EQ(LookUpAroundALoss(&ISysProps::GetOneDiskProperty, L"nonsense"), "N/A|N/A|2");
  EXPECT_EQ(LookUpAroundALoss(&ISysProps::GetOneCPUProperty, L"NumOfCPU"), "2|N/A|N/A");
}

TEST_F(SyspropsHost, LookupOfANameOfNoGroupCollectsNothing) {
  for (const wchar_t* name : {L"NumberOfFileSystems", L"SystemInfo", L"osversion"}) {
    EXPECT_EQ(LookUpAroundALoss(&ISysProps::GetOneSystemProperty, name), "|N/A|N/A");
  }
  EXPECT_EQ(LookUpAroundALoss(&ISysProps::GetOneSystemProperty, L"OSType"),
            "Linux|4.3.0.0_cgl|N/A");
}

}  // namespace
