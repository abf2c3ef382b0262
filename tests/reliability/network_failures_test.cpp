// The interfaces of a host, the resolver, and the connection that finds the local address.
#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tests/network/interface_lines.h"
#include "tests/network/listener.h"
#include "tests/network/remote_peer.h"
#include "tests/reliability/out_of_memory.h"
#include "tests/reliability/sweep.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/netinterface_linux.h"
#include "zebcomn/network/network_util.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::Listener;
using zebcomn_test::PrivateHost;
using zebcomn_test::Trial;

constexpr char kFullAddress[] = "2001:db8:1111:2222:3333:4444:5555:6666";

/// A socket address as large as any.
class SocketAddress {
 public:
  SocketAddress(int family, const char* text) {
    void* const bits = family == AF_INET
                           ? static_cast<void*>(&reinterpret_cast<sockaddr_in*>(&all_)->sin_addr)
                           : &reinterpret_cast<sockaddr_in6*>(&all_)->sin6_addr;
    all_.ss_family = static_cast<sa_family_t>(family);
    EXPECT_EQ(inet_pton(family, text, bits), 1);
  }
  sockaddr* get() { return reinterpret_cast<sockaddr*>(&all_); }

 private:
  sockaddr_storage all_{};
};

ZEBCOMN_USE(SocketAddressFailures, HostTexts, "getIPAddress", "getNetMask") {
  SocketAddress address(AF_INET6, kFullAddress);
  SocketAddress mask(AF_INET6, "ffff:ffff:ffff:ffff::");
  std::string text = "as it was";
  std::string mask_text = "as it was";
  bool read = false;
  bool read_mask = false;
  trial.Call([&] { read = getIPAddress(address.get(), text); });
  const bool first_failed = trial.Failed();
  trial.Call([&] { read_mask = getNetMask(AF_INET6, mask.get(), mask_text); });
  EXPECT_EQ(read, !first_failed);
  EXPECT_EQ(text, first_failed ? "as it was" : kFullAddress);
  EXPECT_EQ(read_mask, first_failed || !trial.Failed());
  EXPECT_EQ(mask_text, read_mask ? "ffff:ffff:ffff:ffff::" : "as it was");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(SocketAddressFailures, NetworkPart, "getNetAddr") {
  SocketAddress address(AF_INET, "192.168.101.102");
  SocketAddress mask(AF_INET, "255.255.255.0");
  std::string text = "as it was";
  bool read = false;
  trial.Call([&] { read = getNetAddr(AF_INET, address.get(), mask.get(), text); });
  EXPECT_EQ(read, !trial.Failed());
  EXPECT_EQ(text, trial.Failed() ? "as it was" : "192.168.101.0");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(SocketAddressFailures, HardwareAddress, "getMacAddress") {
  const std::string loopback = "lo";
  std::string mac = "as it was";
  bool read = false;
  trial.Call([&] { read = getMacAddress(AF_INET, loopback, mac); });
  const bool fails = trial.FailedIn("socket") || trial.FailedIn("ioctl");
  EXPECT_EQ(read, !fails);
  EXPECT_EQ(mac, fails ? "as it was" : "000000000000");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// One link with an address of each kind: three lines in all.
void PutOneLink(PrivateHost& host) {
  zebcomn_test::MakeIpv6Predictable();
  host.PutFile("/etc/nsswitch.conf", "hosts: files\n");
  host.Ip("link set lo up");
  host.AddVeth("port0");
  host.Ip("addr add 192.0.2.7/24 dev port0");
  host.AddIpv6("2001:db8:1111:2222:3333::9/64", "port0");
  host.AddIpv6("fe80::1234:5678:9abc:def0/64", "port0");
}

std::vector<std::string> InterfaceLines() {
  NetInterfaceList list(false);
  EXPECT_TRUE(getNetInterfacesList(list));
  return zebcomn_test::Describe(list);
}

/// The line without the index at its front.
std::string WithoutIndex(const std::string& line) {
  return line.substr(line.find(' '));
}

/// How many of the lines are there, whatever their index is. Any other line is a fault.
size_t CountKnownLines(const std::vector<std::string>& all, NetInterfaceList& list) {
  const std::vector<std::string> lines = zebcomn_test::Describe(list);
  for (const std::string& line : lines) {
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const std::string& known) {
      return WithoutIndex(known) == WithoutIndex(line);
    })) << line;
  }
  return lines.size();
}

// An address of which something cannot be read is left out; without memory the reading ends.
ZEBCOMN_HOST_USE(EnumerationFailures, Interfaces, PutOneLink, "NetInterfaceList::initialize",
                 "getNetInterfacesList") {
  const std::vector<std::string> all = InterfaceLines();
  ASSERT_EQ(all.size(), 3U);
  NetInterfaceList list(false);
  bool filled = false;
  trial.Call([&] { filled = getNetInterfacesList(list); });
  const size_t found = CountKnownLines(all, list);
  EXPECT_EQ(filled, found > 0);
  if (trial.FailedIn("getifaddrs")) {
    EXPECT_EQ(found, 0U);
  } else if (trial.FailedInAllocation()) {
    EXPECT_LT(found, 3U);
  } else {
    const bool left_out = trial.FailedIn("getnameinfo") || trial.FailedIn("socket") ||
                          trial.FailedIn("ioctl") || trial.FailedIn("inet_ntop");
    EXPECT_EQ(found, left_out ? 2U : 3U);
  }
  EXPECT_EQ(list.getIndexes().size() == 2, trial.FailedIn("if_nametoindex"));
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// A link-local address is looked up among the interfaces. One of three addresses may be left out
// and the interface is still there; an interface without an index is taken for number 0.
ZEBCOMN_HOST_USE(ScopeFailures, Scope, PutOneLink, "ANetworkUtil::zebGetScopeId") {
  const std::string address = "fe80::1234:5678:9abc:def0";
  ANetworkUtil util;
  unsigned int scope = 77;
  int found = 77;
  trial.Call([&] { found = util.zebGetScopeId(address, scope); });
  if (found == 1) {
    EXPECT_EQ(scope, trial.FailedIn("if_nametoindex") ? 0 : if_nametoindex("port0"));
  } else {
    EXPECT_EQ(found, 0);
    EXPECT_EQ(scope, 77U);
  }
  const bool fails = trial.FailedIn("getifaddrs") || trial.FailedIn("getaddrinfo");
  if (!trial.FailedInAllocation()) {
    EXPECT_EQ(found, fails ? 0 : 1);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(ScopeFailures, AddressWithScope, PutOneLink,
                 "ANetworkUtil::formatV6addrWithScope") {
  const std::string bare = "fe80::1234:5678:9abc:def0";
  const std::string scoped = bare + "%" + std::to_string(if_nametoindex("port0"));
  ANetworkUtil util;
  std::string address = bare;
  std::string result = "as it was";
  trial.Call([&] { result = util.formatV6addrWithScope(std::move(address), false); });
  if (trial.FailedInAllocation()) {
    EXPECT_TRUE(result.empty() || result == bare || result == scoped) << result;
  } else if (trial.FailedIn("if_nametoindex")) {
    EXPECT_EQ(result, bare + "%0");
  } else {
    const bool fails = trial.FailedIn("getifaddrs") || trial.FailedIn("getaddrinfo");
    EXPECT_EQ(result, fails ? bare : scoped);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ResolverFailures, List, "ANetworkUtil::zebCreateAddrinfo") {
  ANetworkUtil util;
  const std::string host = kFullAddress;
  const std::string port = "80";
  addrinfo* list = nullptr;
  int result = 77;
  trial.Call([&] { result = util.zebCreateAddrinfo(host, port, &list, false); });
  if (trial.FailedIn("getaddrinfo")) {
    EXPECT_EQ(result, trial.error());
  } else {
    // The look for a scope does without memory: it finds none.
    EXPECT_TRUE(result == 0 || (trial.Failed() && result == EAI_MEMORY)) << result;
  }
  EXPECT_EQ(list == nullptr, result != 0);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  if (list != nullptr) freeaddrinfo(list);
}

// The array for a text is asked for again when there is no memory.
ZEBCOMN_USE(ResolverFailures, Texts, "ANetworkUtil::zebGetAddrinfo",
            "ANetworkUtil::zebFreeAddrinfo") {
  ANetworkUtil util;
  const std::string host = "192.0.2.7";
  std::vector<char*> addresses;
  int result = 77;
  trial.Call([&] { result = util.zebGetAddrinfo(host, "", addresses, NI_NUMERICHOST); });
  if (trial.FailedIn("getaddrinfo")) {
    EXPECT_EQ(result, trial.error());
  } else {
    const bool fails = trial.FailedIn("getnameinfo") || trial.FailedIn("operator new");
    EXPECT_EQ(result, fails ? -1 : 0);
  }
  ASSERT_EQ(addresses.size(), result == 0 ? 1U : 0U);
  if (result == 0) {
    EXPECT_EQ(addresses.front(), host);
  }
  trial.Call([&] { util.zebFreeAddrinfo(addresses); });
  EXPECT_TRUE(addresses.empty());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ResolverFailures, TextOfAnAddress, "ANetworkUtil::zebNetToString") {
  ANetworkUtil util;
  SocketAddress address(AF_INET6, kFullAddress);
  std::string host = "as it was";
  std::string service = "as it was";
  trial.Call([&] { host = util.zebNetToString(address.get(), NI_NUMERICHOST); });
  const bool first_failed = trial.Failed();
  trial.Call([&] { service = util.zebNetToString(address.get(), NI_NUMERICSERV); });
  EXPECT_EQ(host, first_failed ? "" : kFullAddress);
  EXPECT_EQ(service, trial.Failed() && !first_failed ? "" : "0");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ResolverFailures, Comparison, "ANetworkUtil::zebCompareAddressFromPeerAddress") {
  ANetworkUtil util;
  std::string peer = "2001:db8:1111:2222:3333:0:0:9";
  std::string address = "[2001:db8:1111:2222:3333::9]";
  int same = 77;
  trial.Call([&] {
    same = util.zebCompareAddressFromPeerAddress(std::move(peer), "", std::move(address));
  });
  EXPECT_TRUE(same == 1 || (trial.Failed() && same == 0)) << same;
  if (trial.FailedIn("getaddrinfo") || trial.FailedIn("getnameinfo")) {
    EXPECT_EQ(same, 0);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// A peer of the host's own.
ZEBCOMN_HOST_USE(LocalAddressFailures, OneAddress, PutOneLink,
                 "ANetworkUtil::zebGetLocalIPAddress") {
  const std::string peer = "2001:db8:1111:2222:3333::9";
  const Listener listener(peer);
  ANetworkUtil util;
  std::string port = listener.port();
  std::string local = "as it was";
  int result = 77;
  trial.Call([&] {
    result = util.zebGetLocalIPAddress(peer, std::move(port), local, false, NI_NUMERICHOST);
  });
  const bool unreached = trial.FailedIn("socket") || trial.FailedIn("connect") ||
                         trial.FailedIn("getsockname") || trial.FailedIn("getnameinfo", 2);
  if (trial.FailedIn("getaddrinfo")) {
    EXPECT_EQ(result, trial.error());
  } else if (trial.FailedInAllocation()) {
    EXPECT_TRUE(result == EAI_MEMORY || result == -1 || result == 0) << result;
  } else {
    EXPECT_EQ(result, unreached ? -1 : 0);
  }
  EXPECT_EQ(local, result == 0 ? "2001:db8:1111:2222:3333:0:0:9" : "as it was");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// The scope is found twice, once for the resolver and once for its answer.
ZEBCOMN_HOST_USE(LocalAddressFailures, LinkLocal, PutOneLink,
                 "ANetworkUtil::zebGetLocalIPAddress") {
  const std::string peer = "fe80::1234:5678:9abc:def0";
  const Listener listener(peer + "%port0");
  ANetworkUtil util;
  std::string port = listener.port();
  std::string local = "as it was";
  int result = 77;
  trial.Call([&] {
    result = util.zebGetLocalIPAddress(peer, std::move(port), local, false, NI_NUMERICHOST);
  });
  if (result == 0) {
    EXPECT_EQ(local, "fe80:0:0:0:1234:5678:9abc:def0");
  } else {
    EXPECT_TRUE(trial.Failed());
    EXPECT_EQ(local, "as it was");
  }
  for (const char* harmless : {"getifaddrs", "ioctl", "close"}) {
    if (trial.FailedIn(harmless)) {
      EXPECT_EQ(result, 0) << harmless;
    }
  }
  for (const char* fatal : {"connect", "getsockname"}) {
    if (trial.FailedIn(fatal)) {
      EXPECT_EQ(result, -1) << fatal;
    }
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// Where the first peer fails, the second is tried.
ZEBCOMN_HOST_USE(LocalAddressFailures, ListOfPeers, PutOneLink,
                 "ANetworkUtil::zebGetLocalIPAddressFromList") {
  const Listener listener("192.0.2.7");
  ANetworkUtil util;
  const std::string peers = "192.0.2.7;192.0.2.7";
  std::string port = listener.port();
  std::string local = "as it was";
  int result = 77;
  trial.Call(
      [&] { result = util.zebGetLocalIPAddressFromList(peers, std::move(port), local, true, 0); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(local, "192.0.2.7");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// The last peer's failure is the list's; a long name takes memory of the list's own.
ZEBCOMN_HOST_USE(LocalAddressFailures, LastPeerOfAList, PutOneLink,
                 "ANetworkUtil::zebGetLocalIPAddressFromList") {
  const Listener listener("2001:db8:1111:2222:3333::9");
  ANetworkUtil util;
  const std::string peers = "2001:db8:1111:2222:3333::9;";
  std::string port = listener.port();
  std::string local = "as it was";
  int result = 77;
  trial.Call(
      [&] { result = util.zebGetLocalIPAddressFromList(peers, std::move(port), local, false, 0); });
  if (trial.FailedIn("getaddrinfo")) {
    EXPECT_EQ(result, trial.error());
  }
  if (trial.FailedIn("connect")) {
    EXPECT_EQ(result, -1);
  }
  if (trial.FailedInAllocation()) {
    EXPECT_TRUE(result == EAI_MEMORY || result == -1 || result == 0) << result;
  }
  EXPECT_EQ(local, result == 0 ? "2001:db8:1111:2222:3333:0:0:9" : "as it was");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

}  // namespace
