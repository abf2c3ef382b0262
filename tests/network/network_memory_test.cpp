// Every call of the network subsystem with each of its allocations failing in turn: it returns its
// failure or its right answer, throws nothing, and gives back what it took.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/network/listener.h"
#include "tests/support/descriptors.h"
#include "tests/support/failing_allocation.h"
#include "zebcomn/network/ipv6_text.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/netinterface_linux.h"
#include "zebcomn/network/network_util.h"

namespace {

using zebcomn_test::Listener;
using zebcomn_test::OpenDescriptorCount;

/// Text that no string holds without an allocation.
const std::string kLongHost = "127.0.0.1%" + std::string(64, 'x');
const std::string kLongAddress =
    "[2001:db8:1111:2222::8:800:200c:417a%" + std::string(64, 'x') + "]";

class NetworkMemory : public ::testing::Test {
 protected:
  /// Runs `call` with its first allocation failing, then its second, until none fails any more.
  /// `call` returns whether its result is the failure or the right answer.
  static void FailEachAllocationOf(const std::function<bool()>& call) {
    const int before = OpenDescriptorCount();
    EXPECT_TRUE(call()) << "without a failure";
    int nth = 1;
    for (;; ++nth) {
      bool right = false;
      EXPECT_NO_THROW({
        zebcomn_test::FailThrowingAllocation(nth);
        right = call();
      }) << nth;
      zebcomn_test::FailThrowingAllocation(0);
      EXPECT_TRUE(right) << nth;
      EXPECT_EQ(OpenDescriptorCount(), before) << nth;
      if (zebcomn_test::TakeFailedAllocations() == 0) break;
    }
    EXPECT_GT(nth, 1) << "no allocation was made";
  }

  /// Calls a text function with its argument made before an allocation can fail.
  static void FailEachAllocationOfText(std::string (*function)(std::string),
                                       const std::string& text) {
    const std::string expected = function(text);
    std::vector<std::string> copies(64, text);
    size_t next = 0;
    FailEachAllocationOf([&] {
      const std::string result = function(std::move(copies.at(next++)));
      return result.empty() || result == expected;
    });
  }

  ANetworkUtil util_;
};

TEST_F(NetworkMemory, TextFunctionsGiveTheEmptyText) {
  FailEachAllocationOfText(&expandIPV6Address, "2001:db8:1111:2222:3333::8:800:200c");
  FailEachAllocationOfText(&convertV6AddrToLiteralFormat, "2001:db8::8:800:200c:417a:1234:5678");
  const std::string address = "2001:db8:1111:2222:8:800:200c:417a";
  FailEachAllocationOf([&] {
    const std::string subnet = calculateSubNetAddrForV6(address, address);
    return subnet.empty() || subnet == address;
  });
}

TEST_F(NetworkMemory, BracketsAndScopesGiveTheEmptyText) {
  std::vector<std::string> copies(64, kLongAddress);
  const std::string expected = "[2001:db8:1111:2222::8:800:200c:417a]";
  size_t next = 0;
  FailEachAllocationOf([&] {
    const std::string result = util_.formatV6addr(std::move(copies.at(next++)), true);
    return result.empty() || result == expected;
  });
  copies.assign(64, kLongAddress);
  next = 0;
  FailEachAllocationOf([&] {
    const std::string result = util_.formatV6addrWithScope(std::move(copies.at(next++)), true);
    return result.empty() || result == expected;
  });
}

TEST_F(NetworkMemory, TextWithoutBracketsToPutBackNeedsNoMemory) {
  std::string copy = kLongAddress;
  zebcomn_test::FailThrowingAllocation(1);
  const std::string bare = util_.formatV6addr(std::move(copy), false);
  zebcomn_test::FailThrowingAllocation(0);
  EXPECT_EQ(zebcomn_test::TakeFailedAllocations(), 0);
  EXPECT_EQ(bare, "2001:db8:1111:2222::8:800:200c:417a");
}

/// The address that text names, in both forms that a call may want.
struct Ipv6Address {
  explicit Ipv6Address(const char* text) {
    value.sin6_family = AF_INET6;
    inet_pton(AF_INET6, text, &value.sin6_addr);
  }
  sockaddr* generic() { return reinterpret_cast<sockaddr*>(&value); }
  sockaddr_in6 value{};
};

TEST_F(NetworkMemory, AnAddressThatCannotBeWrittenLeavesTheTextUntouched) {
  const std::string text = "2001:db8:1111:2222:3333:8:800:200c";
  Ipv6Address address(text.c_str());
  FailEachAllocationOf([&] {
    std::string out = "untouched";
    return getIPAddress(address.generic(), out) ? out == text : out == "untouched";
  });
  FailEachAllocationOf([&] {
    std::string out = "untouched";
    return getNetMask(AF_INET6, address.generic(), out) ? out == text : out == "untouched";
  });
}

TEST_F(NetworkMemory, ALookupThatCannotBeMadeFindsNothing) {
  const std::string name = "an-interface-with-a-long-name";
  const std::string text = "fe80:0:0:0:1111:2222:3333:4444";
  NetInterfaceList list(false);
  NetInterface& held = list.getNetInterface(3);
  held.setOption(NETINTERFACE_INDEXNAME, name);
  held.setOption(NETINTERFACE_MACADDRESS, name);
  IPAddress address;
  address.setOption(IP_ADDRESS, text);
  held.setOption(NETINTERFACE_IPADDRESS, address);
  const auto whole = [&](int found, NetInterface& out) {
    if (found == 0) return out.getIndexName().empty() && out.getIPAddress().empty();
    return out.getIndexName() == name && out.getIPAddress().size() == 1;
  };
  // The records are looked at where no allocation can fail.
  std::vector<NetInterface> outs(64);
  std::vector<int> found;
  found.reserve(outs.size());
  FailEachAllocationOf([&] {
    found.push_back(list.getNetInterface(3, outs.at(found.size())));
    return true;
  });
  for (size_t i = 0; i < found.size(); ++i) EXPECT_TRUE(whole(found[i], outs[i])) << i;
  outs.assign(64, NetInterface());
  found.clear();
  FailEachAllocationOf([&] {
    found.push_back(getNetInterfaceFromIPAddress(outs.at(found.size()), text, list));
    return true;
  });
  for (size_t i = 0; i < found.size(); ++i) EXPECT_TRUE(whole(found[i], outs[i])) << i;
  FailEachAllocationOf([&] {
    std::string mac;
    const int result = getMACAddressFromIPAddress(mac, text, list);
    return mac.compare(result == 1 ? name.c_str() : "") == 0;
  });
}

TEST_F(NetworkMemory, AScopeThatCannotBeLookedUpIsNone) {
  const std::string address = "fe80::1%" + std::string(64, 'x');
  FailEachAllocationOf([&] {
    unsigned int scope = 77;
    const int found = util_.zebGetScopeId(address, scope);
    return found == 1 || scope == 77U;
  });
}

TEST_F(NetworkMemory, ALocalAddressIsWholeOrUntouched) {
  const Listener peer("127.0.0.1");
  const std::string peers = kLongHost + ";" + kLongHost;
  FailEachAllocationOf([&] {
    std::string local;
    const int result = util_.zebGetLocalIPAddress(kLongHost, peer.port(), local, true, 1);
    return local == (result == 0 ? "127.0.0.1" : "");
  });
  FailEachAllocationOf([&] {
    std::string local;
    const int result = util_.zebGetLocalIPAddressFromList(peers, peer.port(), local, true, 0);
    return local == (result == 0 ? "127.0.0.1" : "");
  });
}

TEST_F(NetworkMemory, AComparisonThatCannotBeMadeIsNoMatch) {
  std::vector<std::string> peers(64, kLongHost);
  std::vector<std::string> addresses(64, "[192.0.2.1%" + std::string(64, 'y') + "]");
  size_t next = 0;
  FailEachAllocationOf([&] {
    const size_t at = next++;
    const int result = util_.zebCompareAddressFromPeerAddress(std::move(peers.at(at)), "",
                                                              std::move(addresses.at(at)));
    return result == 0;
  });
}

TEST_F(NetworkMemory, AResolvedHostHasTextsOrAnError) {
  FailEachAllocationOf([&] {
    std::vector<char*> addresses;
    const int result = util_.zebGetAddrinfo(kLongHost, "", addresses, NI_NUMERICHOST);
    const bool right = (result == 0) == !addresses.empty();
    util_.zebFreeAddrinfo(addresses);
    return right;
  });
}

}  // namespace
