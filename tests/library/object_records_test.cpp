// The objects of the C++ interface, read through pointers to them and with the layout that callers'
// object files hold, which is written down here once more.
#include <gtest/gtest.h>
#include <signal.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/scratch_dir.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/network_util.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/util/filenameflattener.h"
#include "zebcomn/util/filenameresolver.h"
#include "zebcomn/util/sighandler.h"

namespace sysprops = quenty_com::pelu::sysprops;

namespace {

/// The object as a caller with its own declaration sees it. Both must have the same size.
template <typename Seen, typename Object>
const Seen& As(const Object& object) {
  static_assert(sizeof(Seen) == sizeof(Object));
  return *reinterpret_cast<const Seen*>(&object);
}

struct Address {
  std::string address;
  std::string mask;
  std::string subnet;
  unsigned int family;
};

struct Interface {
  unsigned int index;
  std::string hardware_address;
  std::string name;
  std::vector<Address> addresses;
};

struct Interfaces {
  std::map<unsigned int, Interface> by_index;
  bool include_loopback;
};

IPAddress MakeAddress() {
  IPAddress address;
  address.setOption(IP_ADDRESS, "192.0.2.2");
  address.setOption(IP_SUBNETMASK, "255.255.255.0");
  address.setOption(IP_SUBNETADDR, "192.0.2.0");
  address.setOption(IP_FAMILY, 2U);
  return address;
}

void ExpectMadeAddress(const Address& seen) {
  EXPECT_EQ(seen.address, "192.0.2.2");
  EXPECT_EQ(seen.mask, "255.255.255.0");
  EXPECT_EQ(seen.subnet, "192.0.2.0");
  EXPECT_EQ(seen.family, 2U);
}

TEST(NetworkRecordLayout, AddressIsThreeTextsAndAFamily) {
  const IPAddress address = MakeAddress();
  ExpectMadeAddress(As<Address>(address));
}

TEST(NetworkRecordLayout, InterfaceOfAListIsAnIndexTwoTextsAndAddresses) {
  NetInterfaceList list(true);
  NetInterface& interface = list.getNetInterface(7);
  interface.setOption(NETINTERFACE_INDEX, 7U);
  interface.setOption(NETINTERFACE_MACADDRESS, "02fc00000001");
  interface.setOption(NETINTERFACE_INDEXNAME, "eth0");
  interface.setOption(NETINTERFACE_IPADDRESS, MakeAddress());

  const auto& seen = As<Interface>(interface);
  EXPECT_EQ(seen.index, 7U);
  EXPECT_EQ(seen.hardware_address, "02fc00000001");
  EXPECT_EQ(seen.name, "eth0");
  ASSERT_EQ(seen.addresses.size(), 1U);
  ExpectMadeAddress(seen.addresses[0]);

  const auto& seen_list = As<Interfaces>(list);
  EXPECT_TRUE(seen_list.include_loopback);
  ASSERT_EQ(seen_list.by_index.count(7), 1U);
  EXPECT_EQ(seen_list.by_index.at(7).name, "eth0");
}

TEST(NetworkRecordLayout, NetworkUtilIsItsInitialisedFlag) {
  const ANetworkUtil util;
  EXPECT_TRUE(As<bool>(util));
}

struct SystemProperties {
  std::wstring cpu[5];
  std::wstring network[8];
  std::wstring memory[2];
  std::wstring os[8];
  std::wstring disk[3];
  sysprops::FileSystemMap file_systems;
  std::wstring misc[4];
};

TEST(SystemPropertiesLayout, ValuesStandWhereCallersLookForThem) {
  sysprops::ISysProps properties;
  sysprops::PropertyMap map;
  sysprops::FileSystemMap file_systems;
  ASSERT_EQ(properties.GetAllSystemProperties(map, file_systems), 1);
  const auto& seen = As<SystemProperties>(properties);

  const std::vector<const std::wstring*> cpu = {
      &sysprops::CPUType_Key, &sysprops::CPUSpeed_Key, &sysprops::NumOfCPU_Key,
      &sysprops::CPUSerialNumber_Key, &sysprops::CPUPortable_Key};
  for (size_t i = 0; i < cpu.size(); ++i) EXPECT_EQ(seen.cpu[i], map[*cpu[i]]) << i;

  const std::vector<const std::wstring*> network = {
      &sysprops::DomainName_Key,    &sysprops::ComputerName_Key, &sysprops::IPAddress_Key,
      &sysprops::SubnetAddress_Key, &sysprops::SubnetMask_Key,   &sysprops::NETAddress_Key,
      &sysprops::IPXAddress_Key,    &sysprops::IPHostName_Key};
  for (size_t i = 0; i < network.size(); ++i) EXPECT_EQ(seen.network[i], map[*network[i]]) << i;

  EXPECT_EQ(seen.memory[0], map[sysprops::TotalPhysicalMemory_Key]);
  EXPECT_EQ(seen.memory[1], map[sysprops::FreeMemory_Key]);

  const std::vector<const std::wstring*> os = {
      &sysprops::OSType_Key,       &sysprops::OSPlatform_Key, &sysprops::OSVersion_Key,
      &sysprops::OSCsdVersion_Key, &sysprops::OSBuildNum_Key, &sysprops::OSOEMId_Key,
      &sysprops::PlatformId_Key,   &sysprops::OSBitMode_Key};
  for (size_t i = 0; i < os.size(); ++i) EXPECT_EQ(seen.os[i], map[*os[i]]) << i;

  EXPECT_EQ(seen.disk[0], map[sysprops::TotalDiskSpace_Key]);
  EXPECT_EQ(seen.disk[1], map[sysprops::FreeDiskSpace_Key]);
  EXPECT_EQ(seen.disk[2], map[sysprops::NumFileSystems_Key]);
  EXPECT_EQ(seen.file_systems, file_systems);

  const std::vector<const std::wstring*> misc = {&sysprops::UserName_Key, &sysprops::TimeZone_Key,
                                                 &sysprops::DefaultLangID_Key,
                                                 &sysprops::LastUpdate_Key};
  for (size_t i = 0; i < misc.size(); ++i) EXPECT_EQ(seen.misc[i], map[*misc[i]]) << i;
}

TEST(PathObjectLayout, FlattenerIsAFlagAndThreeTexts) {
  struct Flattener {
    bool flat;
    std::string path;
    std::string flat_path;
    std::string base_directory;
  };
  const FileNameFlattener flattener("a/../b", "/base");
  const auto& seen = As<Flattener>(flattener);
  EXPECT_TRUE(seen.flat);
  EXPECT_EQ(seen.path, "a/../b");
  EXPECT_EQ(seen.flat_path, "/base/b");
  EXPECT_EQ(seen.base_directory, "/base");
}

TEST(PathObjectLayout, ResolverIsAFlagAndTwoTexts) {
  struct Resolver {
    bool resolved;
    std::string path;
    std::string absolute_path;
  };
  const zebcomn_test::ScratchDir scratch;
  const std::string path = scratch.Write("file", "");
  const FileNameResolver resolver(path);
  const auto& seen = As<Resolver>(resolver);
  EXPECT_TRUE(seen.resolved);
  EXPECT_EQ(seen.path, path);
  std::string resolved;
  EXPECT_TRUE(FileNameResolver(path).GetAbsolutePath(resolved));
  EXPECT_EQ(seen.absolute_path, resolved);
}

void OnSignal() {}

TEST(SignalHandlerLayout, IsASignalSetAndCallbacks) {
  struct Handler {
    sigset_t set;
    std::map<int, void (*)()> callbacks;
  };
  quenty_com::pelu::SignalHandler handler;
  ASSERT_EQ(handler.addSignalToBlock(SIGUSR2), 0);
  ASSERT_EQ(handler.registerOnSignalCallback(SIGUSR2, OnSignal), 0);
  const auto& seen = As<Handler>(handler);
  EXPECT_EQ(sigismember(&seen.set, SIGUSR2), 1);
  EXPECT_EQ(sigismember(&seen.set, SIGUSR1), 0);
  ASSERT_EQ(seen.callbacks.count(SIGUSR2), 1U);
  EXPECT_EQ(seen.callbacks.at(SIGUSR2), OnSignal);
  EXPECT_EQ(handler.unblockSignal(SIGUSR2), 0);
}

}  // namespace
