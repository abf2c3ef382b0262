// Address texts and the records that hold them: nothing here but memory can fail.
#include <string>
#include <utility>
#include <vector>

#include "tests/reliability/out_of_memory.h"
#include "tests/reliability/sweep.h"
#include "zebcomn/network/ipv6_text.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/netinterface_linux.h"
#include "zebcomn/network/network_util.h"

namespace {

using zebcomn_test::CallThatMayThrow;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::Trial;

// Longer than a string holds without an allocation.
const std::string kAddress = "2001:db8:1111:2222:3333:4444:5555:6666";

/// Checks a function of one text: without memory it gives the empty text.
void CheckText(Trial& trial, std::string (*function)(std::string), std::string text,
               const std::string& expected) {
  std::string result = "as it was";
  trial.Call([&] { result = function(std::move(text)); });
  EXPECT_EQ(result, trial.Failed() ? "" : expected);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(AddressTextFailures, Expansion, "expandIPV6Address") {
  CheckText(trial, expandIPV6Address, "2001:db8:1111:2222:3333::6666:7777%eth0",
            "2001:db8:1111:2222:3333:0:6666:7777");
}

ZEBCOMN_USE(AddressTextFailures, ToALiteral, "convertV6AddrToLiteralFormat") {
  CheckText(trial, convertV6AddrToLiteralFormat, "2001:db8::1", "2001-db8--1.ipv6-literal.net");
}

ZEBCOMN_USE_WITHOUT_CALLS(AddressTextFailures, InPlace, "convertLiteralFormatToV6Addr",
                          "findNthOccuranceOf", "noOfOccurences", "formatMACAddress") {
  std::string literal = "2001-db8--1s4.ipv6-literal.net";
  std::string address;
  std::string mac;
  const std::string colon = ":";
  unsigned char bytes[] = {0, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E};
  trial.Call([&] {
    address = convertLiteralFormatToV6Addr(std::move(literal));
    mac = formatMACAddress(bytes);
    EXPECT_EQ(findNthOccuranceOf(kAddress, colon, 2), 8U);
    EXPECT_EQ(noOfOccurences(kAddress, ':', 9), 7);
  });
  EXPECT_EQ(address, "2001:db8::1");
  EXPECT_EQ(mac, "001a2b3c4d5e");
}

ZEBCOMN_USE(AddressTextFailures, NthOfALongText, "findNthOccuranceOf") {
  const std::string text(1000, 'a');
  const std::string pattern(900, 'a');
  size_t place = 0;
  trial.Call([&] { place = findNthOccuranceOf(text, pattern, 3); });
  EXPECT_EQ(place, 2U) << "without the table too";
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(AddressTextFailures, Subnet, "calculateSubNetAddrForV6") {
  // A group with a blank goes through a text of its own.
  const std::string mask = "ffff:ffff:ffff:ffff:ffff:ffff: 00000000000000000000ffff:0";
  std::string subnet = "as it was";
  trial.Call([&] { subnet = calculateSubNetAddrForV6(kAddress, mask); });
  EXPECT_EQ(subnet, trial.Failed() ? "" : "2001:db8:1111:2222:3333:4444:5555:0");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(AddressTextFailures, WithoutScope, "ANetworkUtil::formatV6addr",
            "ANetworkUtil::formatV6addrWithScope") {
  ANetworkUtil util;
  std::string address = "[" + kAddress + "%eth0]:80";
  std::string other = address;
  std::string kept = "as it was";
  std::string scoped = "as it was";
  trial.Call([&] { kept = util.formatV6addr(std::move(address), true); });
  trial.Call([&] { scoped = util.formatV6addrWithScope(std::move(other), true); });
  const std::string expected = "[" + kAddress + "]";
  EXPECT_TRUE(kept == expected || (trial.Failed() && kept.empty())) << kept;
  // The look for a scope does without memory: it finds none.
  EXPECT_TRUE(scoped == expected || (trial.Failed() && scoped.empty())) << scoped;
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// A record with texts of some length.
IPAddress Record(const std::string& address) {
  IPAddress record;
  record.setOption(IP_ADDRESS, address);
  record.setOption(IP_FAMILY, 10U);
  record.setOption(IP_SUBNETMASK, "ffff:ffff:ffff:ffff:0:0:0:0");
  record.setOption(IP_SUBNETADDR, "2001:db8:1111:2222:0:0:0:0");
  return record;
}

/// An interface with a name that no system has, so that it takes memory.
NetInterface Interface(unsigned int index, const std::string& address) {
  NetInterface interface;
  interface.setOption(NETINTERFACE_INDEX, index);
  interface.setOption(NETINTERFACE_INDEXNAME, "interface of a long name");
  interface.setOption(NETINTERFACE_MACADDRESS, "001a2b3c4d5e and some more");
  interface.setOption(NETINTERFACE_IPADDRESS, Record(address));
  return interface;
}

ZEBCOMN_USE_WITHOUT_CALLS(RecordFailures, Setting, "IPAddress::IPAddress", "IPAddress::setOption",
                          "IPAddress::getIPFamily", "NetInterface::NetInterface",
                          "NetInterface::setOption", "NetInterface::getIndex",
                          "NetInterfaceList::NetInterfaceList", "ANetworkUtil::ANetworkUtil",
                          "ANetworkUtil::~ANetworkUtil") {
  std::string text = kAddress;
  std::string name = kAddress;
  trial.Call([&] {
    IPAddress record;
    record.setOption(IP_ADDRESS, std::move(text));
    record.setOption(IP_FAMILY, 10U);
    EXPECT_EQ(record.getIPFamily(), 10U);
    NetInterface interface;
    interface.setOption(NETINTERFACE_INDEXNAME, std::move(name));
    interface.setOption(NETINTERFACE_INDEX, 7U);
    EXPECT_EQ(interface.getIndex(), 7U);
    const NetInterfaceList list(true);
    const ANetworkUtil util;
  });
}

ZEBCOMN_USE(RecordFailures, AddressTexts, "IPAddress::getIPAddress", "IPAddress::getSubNetMask",
            "IPAddress::getSubNetAddr") {
  IPAddress record = Record(kAddress);
  std::string texts[3];
  const bool done = CallThatMayThrow(trial, [&] {
    texts[0] = record.getIPAddress();
    texts[1] = record.getSubNetMask();
    texts[2] = record.getSubNetAddr();
  });
  if (done) {
    EXPECT_EQ(texts[0], kAddress);
    EXPECT_EQ(texts[1], "ffff:ffff:ffff:ffff:0:0:0:0");
  }
  EXPECT_EQ(texts[2], done ? "2001:db8:1111:2222:0:0:0:0" : "");
  EXPECT_EQ(record.getIPAddress(), kAddress) << "as it was";
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(RecordFailures, InterfaceTexts, "NetInterface::getIPAddress",
            "NetInterface::getMACAddress", "NetInterface::getIndexName") {
  NetInterface interface = Interface(7, kAddress);
  std::vector<IPAddress> addresses;
  std::string name;
  std::string mac;
  const bool done = CallThatMayThrow(trial, [&] {
    mac = interface.getMACAddress();
    name = interface.getIndexName();
    addresses = interface.getIPAddress();
  });
  if (done) {
    EXPECT_EQ(mac, "001a2b3c4d5e and some more");
    EXPECT_EQ(name, "interface of a long name");
  }
  EXPECT_EQ(addresses.size(), done ? 1U : 0U);
  EXPECT_EQ(interface.getIndexName(), "interface of a long name") << "as it was";
}

ZEBCOMN_USE(RecordFailures, AppendedAddress, "NetInterface::setOption") {
  NetInterface interface = Interface(7, kAddress);
  const IPAddress more = Record("2001:db8:1111:2222:3333:4444:5555:7777");
  const bool done =
      CallThatMayThrow(trial, [&] { interface.setOption(NETINTERFACE_IPADDRESS, more); });
  std::vector<IPAddress> addresses = interface.getIPAddress();
  ASSERT_EQ(addresses.size(), done ? 2U : 1U);
  EXPECT_EQ(addresses.front().getIPAddress(), kAddress) << "as it was";
}

/// A list of three interfaces; the last two have the same address.
NetInterfaceList ListOfThree() {
  NetInterfaceList list(false);
  list.getNetInterface(2) = Interface(2, "2001:db8:1111:2222:3333:4444:5555:2222");
  list.getNetInterface(5) = Interface(5, kAddress);
  list.getNetInterface(9) = Interface(9, kAddress);
  return list;
}

ZEBCOMN_USE(RecordFailures, Entries, "NetInterfaceList::getNetInterface",
            "NetInterfaceList::getIndexes") {
  NetInterfaceList list = ListOfThree();
  std::vector<unsigned int> indexes;
  const bool done = CallThatMayThrow(trial, [&] {
    indexes = list.getIndexes();
    list.getNetInterface(3).setOption(NETINTERFACE_INDEX, 3U);
  });
  EXPECT_TRUE(indexes.empty() || indexes == std::vector<unsigned int>({2, 5, 9}));
  EXPECT_EQ(list.getIndexes().size(), done ? 4U : 3U);
}

ZEBCOMN_USE(RecordFailures, CopiedEntry, "NetInterfaceList::getNetInterface") {
  NetInterfaceList list = ListOfThree();
  NetInterface out = Interface(1, "as it was");
  int found = 77;
  trial.Call([&] { found = list.getNetInterface(5U, out); });
  EXPECT_EQ(found, trial.Failed() ? 0 : 1);
  EXPECT_EQ(out.getIndex(), trial.Failed() ? 1U : 5U);
  EXPECT_EQ(out.getIPAddress().front().getIPAddress(), trial.Failed() ? "as it was" : kAddress);
}

// An interface that cannot be copied is passed over, and the next one has the address too.
ZEBCOMN_USE(RecordFailures, Lookup, "getNetInterfaceFromIPAddress") {
  NetInterfaceList list = ListOfThree();
  NetInterface out = Interface(1, "as it was");
  int found = 77;
  trial.Call([&] { found = getNetInterfaceFromIPAddress(out, kAddress, list); });
  if (found == 0) {
    EXPECT_TRUE(trial.FailedInAllocation());
    EXPECT_EQ(out.getIndex(), 1U);
    EXPECT_EQ(out.getIPAddress().front().getIPAddress(), "as it was");
  } else {
    EXPECT_EQ(found, 1);
    EXPECT_TRUE(out.getIndex() == 5 || (trial.Failed() && out.getIndex() == 9)) << out.getIndex();
    EXPECT_EQ(out.getIPAddress().front().getIPAddress(), kAddress);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(RecordFailures, HardwareAddressLookup, "getMACAddressFromIPAddress") {
  NetInterfaceList list(false);
  list.getNetInterface(5) = Interface(5, kAddress);
  std::string mac = "as it was";
  int found = 77;
  trial.Call([&] { found = getMACAddressFromIPAddress(mac, kAddress, list); });
  EXPECT_EQ(found, trial.Failed() ? 0 : 1);
  EXPECT_EQ(mac, trial.Failed() ? "as it was" : "001a2b3c4d5e and some more");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

}  // namespace
