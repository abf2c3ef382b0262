// The choice of the local address, on interface lists of the test's own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "zebcomn/sysprops/sysprops_comn_internal.h"

namespace {

using quenty_com::pelu::sysprops::NetworkInformation;

IPAddress Address(unsigned int family, const std::string& text) {
  IPAddress address;
  address.setOption(IP_FAMILY, family);
  address.setOption(IP_ADDRESS, text);
  address.setOption(IP_SUBNETADDR, "net-" + text);
  address.setOption(IP_SUBNETMASK, "mask-" + text);
  return address;
}

void AddInterface(NetInterfaceList& list, unsigned int index,
                  const std::vector<IPAddress>& addresses) {
  NetInterface& entry = list.getNetInterface(index);
  entry.setOption(NETINTERFACE_INDEX, index);
  entry.setOption(NETINTERFACE_MACADDRESS, "mac" + std::to_string(index));
  for (const IPAddress& address : addresses) entry.setOption(NETINTERFACE_IPADDRESS, address);
}

NetworkInformation Choose(const std::string& last_known, NetInterfaceList& list) {
  NetworkInformation info;
  zebcomn::ChooseLocalAddress(last_known, list, info);
  return info;
}

void ExpectChosen(const NetworkInformation& info, const std::wstring& address,
                  const std::wstring& mac) {
  EXPECT_EQ(info.m_wstrIPAddress, address);
  EXPECT_EQ(info.m_wstrNETAddress, mac);
  EXPECT_EQ(info.m_wstrSubnetAddress, L"net-" + address);
  EXPECT_EQ(info.m_wstrSubnetMask, L"mask-" + address);
}

void ExpectUntouched(const NetworkInformation& info) {
  EXPECT_EQ(info.m_wstrIPAddress, L"N/A");
  EXPECT_EQ(info.m_wstrNETAddress, L"N/A");
  EXPECT_EQ(info.m_wstrSubnetAddress, L"N/A");
  EXPECT_EQ(info.m_wstrSubnetMask, L"N/A");
}

class LocalAddressChoice : public ::testing::Test {
 protected:
  LocalAddressChoice() : list_(false) {
    AddInterface(list_, 7, {Address(2, "10.0.7.1"), Address(2, "10.0.7.2"), Address(10, "fe80:7")});
    AddInterface(list_, 3, {Address(10, "fe80:3"), Address(2, "10.0.3.1"), Address(2, "10.0.3.2")});
    AddInterface(list_, 2, {Address(10, "fe80:2")});
  }

  NetInterfaceList list_;
};

TEST_F(LocalAddressChoice, LastKnownAddressOfAnInterfaceIsTaken) {
  ExpectChosen(Choose("10.0.7.2", list_), L"10.0.7.2", L"mac7");
  ExpectChosen(Choose("fe80:7", list_), L"fe80:7", L"mac7");
}

TEST_F(LocalAddressChoice, WithNoneKnownTheFirstIpv4ByIndexIsTaken) {
  ExpectChosen(Choose("", list_), L"10.0.3.1", L"mac3");
}

TEST_F(LocalAddressChoice, LostIpv4AddressFallsBackToTheFirstIpv4) {
  ExpectChosen(Choose("192.0.2.1", list_), L"10.0.3.1", L"mac3");
  ExpectChosen(Choose("not an address", list_), L"10.0.3.1", L"mac3");
}

TEST_F(LocalAddressChoice, LostIpv6AddressMakesOnlyIpv6Candidates) {
  ExpectChosen(Choose("fe80::1", list_), L"fe80:2", L"mac2");
}

TEST_F(LocalAddressChoice, WithoutTheFamilyTheFirstInterfacesFirstAddressIsTaken) {
  NetInterfaceList only_v6(false);
  AddInterface(only_v6, 5, {Address(10, "fe80:5"), Address(10, "fe80:55")});
  AddInterface(only_v6, 9, {Address(10, "fe80:9")});
  ExpectChosen(Choose("", only_v6), L"fe80:5", L"mac5");
  NetInterfaceList only_v4(false);
  AddInterface(only_v4, 4, {Address(2, "10.4")});
  ExpectChosen(Choose("::1", only_v4), L"10.4", L"mac4");
}

TEST_F(LocalAddressChoice, FirstInterfaceWithoutAnyAddressLeavesTheFields) {
  NetInterfaceList bare(false);
  AddInterface(bare, 4, {});
  ExpectUntouched(Choose("", bare));
  AddInterface(bare, 6, {Address(10, "fe80:6")});
  ExpectUntouched(Choose("10.0.0.1", bare));
}

TEST_F(LocalAddressChoice, EmptyListLeavesTheFields) {
  NetInterfaceList empty(false);
  ExpectUntouched(Choose("", empty));
  ExpectUntouched(Choose("10.0.0.1", empty));
}

TEST_F(LocalAddressChoice, OfEqualAddressesTheLastGivesTheSubnet) {
  NetInterfaceList twice(false);
  IPAddress second = Address(2, "10.1");
  second.setOption(IP_SUBNETADDR, "second net");
  second.setOption(IP_SUBNETMASK, "second mask");
  AddInterface(twice, 1, {Address(2, "10.1"), second, Address(2, "10.2")});
  const NetworkInformation info = Choose("10.1", twice);
  EXPECT_EQ(info.m_wstrSubnetAddress, L"second net");
  EXPECT_EQ(info.m_wstrSubnetMask, L"second mask");
}

TEST_F(LocalAddressChoice, HolderIsTheFirstInterfaceByIndex) {
  NetInterfaceList shared(false);
  AddInterface(shared, 8, {Address(2, "10.1")});
  AddInterface(shared, 4, {Address(2, "10.9"), Address(2, "10.1")});
  ExpectChosen(Choose("10.1", shared), L"10.1", L"mac4");
}

}  // namespace
