#include "zebcomn/network/netinterface.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

IPAddress Address(const std::string& text, unsigned int family = 2) {
  IPAddress address;
  address.setOption(IP_ADDRESS, text);
  address.setOption(IP_FAMILY, family);
  return address;
}

std::vector<std::string> Texts(NetInterface& interface) {
  std::vector<std::string> texts;
  for (IPAddress& address : interface.getIPAddress()) texts.push_back(address.getIPAddress());
  return texts;
}

TEST(IPAddress, IsEmptyAtFirst) {
  IPAddress address;
  EXPECT_EQ(address.getIPAddress(), "");
  EXPECT_EQ(address.getSubNetMask(), "");
  EXPECT_EQ(address.getSubNetAddr(), "");
  EXPECT_EQ(address.getIPFamily(), 0U);
}

TEST(IPAddress, ParametersHaveTheirFixedValues) {
  EXPECT_EQ(static_cast<int>(IP_ADDRESS), 0);
  EXPECT_EQ(static_cast<int>(IP_FAMILY), 1);
  EXPECT_EQ(static_cast<int>(IP_SUBNETMASK), 2);
  EXPECT_EQ(static_cast<int>(IP_SUBNETADDR), 3);
  EXPECT_EQ(static_cast<int>(NETINTERFACE_MACADDRESS), 0);
  EXPECT_EQ(static_cast<int>(NETINTERFACE_INDEXNAME), 1);
  EXPECT_EQ(static_cast<int>(NETINTERFACE_INDEX), 2);
  EXPECT_EQ(static_cast<int>(NETINTERFACE_IPADDRESS), 3);
}

TEST(IPAddress, EachParameterWritesItsOwnField) {
  IPAddress address;
  address.setOption(IP_ADDRESS, std::string("a"));
  address.setOption(IP_SUBNETMASK, std::string("m"));
  address.setOption(IP_SUBNETADDR, std::string("s"));
  address.setOption(IP_FAMILY, 10U);
  EXPECT_EQ(address.getIPAddress(), "a");
  EXPECT_EQ(address.getSubNetMask(), "m");
  EXPECT_EQ(address.getSubNetAddr(), "s");
  EXPECT_EQ(address.getIPFamily(), 10U);
}

TEST(IPAddress, AParameterOfTheOtherKindChangesNothing) {
  IPAddress address = Address("a", 2);
  address.setOption(IP_FAMILY, std::string("10"));
  address.setOption(static_cast<IP_PARAM>(4), std::string("x"));
  address.setOption(static_cast<IP_PARAM>(0xFFFFFFFFU), std::string("x"));
  for (const IP_PARAM param :
       {IP_ADDRESS, IP_SUBNETMASK, IP_SUBNETADDR, static_cast<IP_PARAM>(4)}) {
    address.setOption(param, 7U);
  }
  EXPECT_EQ(address.getIPAddress(), "a");
  EXPECT_EQ(address.getSubNetMask(), "");
  EXPECT_EQ(address.getSubNetAddr(), "");
  EXPECT_EQ(address.getIPFamily(), 2U);
}

TEST(NetInterface, IsEmptyAtFirst) {
  NetInterface interface;
  EXPECT_EQ(interface.getIndex(), 0U);
  EXPECT_EQ(interface.getMACAddress(), "");
  EXPECT_EQ(interface.getIndexName(), "");
  EXPECT_TRUE(interface.getIPAddress().empty());
}

TEST(NetInterface, EachParameterWritesItsOwnField) {
  NetInterface interface;
  interface.setOption(NETINTERFACE_MACADDRESS, std::string("001a2b3c4d5e"));
  interface.setOption(NETINTERFACE_INDEXNAME, std::string("eth0"));
  interface.setOption(NETINTERFACE_INDEX, 5U);
  interface.setOption(NETINTERFACE_IPADDRESS, Address("10.0.0.1"));
  EXPECT_EQ(interface.getMACAddress(), "001a2b3c4d5e");
  EXPECT_EQ(interface.getIndexName(), "eth0");
  EXPECT_EQ(interface.getIndex(), 5U);
  EXPECT_EQ(Texts(interface), std::vector<std::string>{"10.0.0.1"});
}

TEST(NetInterface, AParameterOfAnotherKindChangesNothing) {
  NetInterface interface;
  const auto beyond = static_cast<NETINTERFACE_PARAM>(4);
  for (const NETINTERFACE_PARAM param : {NETINTERFACE_INDEX, NETINTERFACE_IPADDRESS, beyond}) {
    interface.setOption(param, std::string("x"));
  }
  for (const NETINTERFACE_PARAM param :
       {NETINTERFACE_MACADDRESS, NETINTERFACE_INDEXNAME, NETINTERFACE_IPADDRESS, beyond}) {
    interface.setOption(param, 7U);
  }
  for (const NETINTERFACE_PARAM param :
       {NETINTERFACE_MACADDRESS, NETINTERFACE_INDEXNAME, NETINTERFACE_INDEX, beyond}) {
    interface.setOption(param, Address("x"));
  }
  EXPECT_EQ(interface.getIndex(), 0U);
  EXPECT_EQ(interface.getMACAddress(), "");
  EXPECT_EQ(interface.getIndexName(), "");
  EXPECT_TRUE(interface.getIPAddress().empty());
}

TEST(NetInterface, AddressesAccumulateInOrderWithoutRemovingDuplicates) {
  NetInterface interface;
  for (const char* text : {"b", "a", "b"}) {
    interface.setOption(NETINTERFACE_IPADDRESS, Address(text));
  }
  EXPECT_EQ(Texts(interface), (std::vector<std::string>{"b", "a", "b"}));
}

TEST(NetInterface, HoldsACopyOfTheAddressAndHandsOutCopies) {
  NetInterface interface;
  IPAddress address = Address("before");
  interface.setOption(NETINTERFACE_IPADDRESS, address);
  address.setOption(IP_ADDRESS, std::string("after"));
  interface.getIPAddress().clear();
  EXPECT_EQ(Texts(interface), std::vector<std::string>{"before"});
}

TEST(NetRecords, ArePlainCopyableValues) {
  EXPECT_FALSE(std::is_polymorphic_v<IPAddress>);
  EXPECT_FALSE(std::is_polymorphic_v<NetInterface>);
  EXPECT_FALSE(std::is_polymorphic_v<NetInterfaceList>);
  NetInterfaceList list(false);
  list.getNetInterface(3).setOption(NETINTERFACE_INDEXNAME, std::string("eth3"));
  NetInterfaceList copy = list;
  copy.getNetInterface(3).setOption(NETINTERFACE_INDEXNAME, std::string("other"));
  EXPECT_EQ(list.getNetInterface(3).getIndexName(), "eth3");
  list = copy;
  EXPECT_EQ(list.getNetInterface(3).getIndexName(), "other");
}

TEST(NetInterfaceList, IsEmptyAtFirst) {
  EXPECT_TRUE(NetInterfaceList(true).getIndexes().empty());
  EXPECT_TRUE(NetInterfaceList(false).getIndexes().empty());
}

TEST(NetInterfaceList, ACopyingLookupOfAMissingIndexLeavesTheRecordAlone) {
  NetInterfaceList list(false);
  NetInterface out;
  out.setOption(NETINTERFACE_INDEXNAME, std::string("mine"));
  EXPECT_EQ(list.getNetInterface(5, out), 0);
  EXPECT_EQ(out.getIndexName(), "mine");
  EXPECT_TRUE(list.getIndexes().empty());
}

TEST(NetInterfaceList, AReferenceToAMissingIndexCreatesAnEntryWithIndexZero) {
  NetInterfaceList list(false);
  NetInterface& created = list.getNetInterface(5);
  EXPECT_EQ(created.getIndex(), 0U);
  EXPECT_EQ(created.getIndexName(), "");
  EXPECT_EQ(created.getMACAddress(), "");
  EXPECT_EQ(list.getIndexes(), std::vector<unsigned int>{5});
  created.setOption(NETINTERFACE_INDEX, 5U);
  NetInterface out;
  EXPECT_EQ(list.getNetInterface(5, out), 1);
  EXPECT_EQ(out.getIndex(), 5U);
}

TEST(NetInterfaceList, IndexesAreAscending) {
  NetInterfaceList list(false);
  for (const unsigned int index : {7U, 0U, 4294967295U, 2U}) list.getNetInterface(index);
  EXPECT_EQ(list.getIndexes(), (std::vector<unsigned int>{0, 2, 7, 4294967295U}));
}

/// Two interfaces; "10.0.0.9" is on both.
class LookupTest : public ::testing::Test {
 protected:
  LookupTest() : list_(false) {
    Add(9, "eth9", "000000000009", {"10.0.0.9", "fe80:0:0:0:0:0:0:1"});
    Add(2, "eth2", "000000000002", {"10.0.0.2", "10.0.0.9"});
  }

  void Add(unsigned int index, const std::string& name, const std::string& mac,
           const std::vector<std::string>& addresses) {
    NetInterface& interface = list_.getNetInterface(index);
    interface.setOption(NETINTERFACE_INDEX, index);
    interface.setOption(NETINTERFACE_INDEXNAME, name);
    interface.setOption(NETINTERFACE_MACADDRESS, mac);
    for (const std::string& text : addresses) {
      interface.setOption(NETINTERFACE_IPADDRESS, Address(text));
    }
  }

  NetInterfaceList list_;
  NetInterface out_;
  std::string mac_ = "untouched";
};

TEST_F(LookupTest, FindsTheWholeInterface) {
  EXPECT_EQ(getNetInterfaceFromIPAddress(out_, "fe80:0:0:0:0:0:0:1", list_), 1);
  EXPECT_EQ(out_.getIndex(), 9U);
  EXPECT_EQ(out_.getIndexName(), "eth9");
  EXPECT_EQ(Texts(out_), (std::vector<std::string>{"10.0.0.9", "fe80:0:0:0:0:0:0:1"}));
  EXPECT_EQ(getMACAddressFromIPAddress(mac_, "fe80:0:0:0:0:0:0:1", list_), 1);
  EXPECT_EQ(mac_, "000000000009");
}

TEST_F(LookupTest, TheLowestIndexWins) {
  EXPECT_EQ(getNetInterfaceFromIPAddress(out_, "10.0.0.9", list_), 1);
  EXPECT_EQ(out_.getIndex(), 2U);
  EXPECT_EQ(getMACAddressFromIPAddress(mac_, "10.0.0.9", list_), 1);
  EXPECT_EQ(mac_, "000000000002");
}

TEST_F(LookupTest, TextsAreComparedExactly) {
  for (const char* text : {"fe80::1", "FE80:0:0:0:0:0:0:1", "10.0.0.", "", "010.0.0.9"}) {
    EXPECT_EQ(getNetInterfaceFromIPAddress(out_, text, list_), 0) << text;
    EXPECT_EQ(getMACAddressFromIPAddress(mac_, text, list_), 0) << text;
  }
}

TEST_F(LookupTest, NothingFoundLeavesTheOutputUntouched) {
  out_.setOption(NETINTERFACE_INDEXNAME, std::string("untouched"));
  EXPECT_EQ(getNetInterfaceFromIPAddress(out_, "10.9.9.9", list_), 0);
  EXPECT_EQ(out_.getIndexName(), "untouched");
  EXPECT_EQ(getMACAddressFromIPAddress(mac_, "10.9.9.9", list_), 0);
  EXPECT_EQ(mac_, "untouched");
}

TEST_F(LookupTest, AnEmptyListHasNothing) {
  NetInterfaceList empty(true);
  EXPECT_EQ(getNetInterfaceFromIPAddress(out_, "10.0.0.9", empty), 0);
  EXPECT_EQ(getMACAddressFromIPAddress(mac_, "10.0.0.9", empty), 0);
}

}  // namespace
