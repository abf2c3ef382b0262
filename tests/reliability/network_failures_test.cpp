// The interfaces of a host, and the connection that finds the local address.
#include <net/if.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tests/network/interface_lines.h"
#include "tests/network/listener.h"
#include "tests/network/remote_peer.h"
#include "tests/reliability/sweep.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/netinterface_linux.h"
#include "zebcomn/network/network_util.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::Listener;
using zebcomn_test::PrivateHost;
using zebcomn_test::Trial;

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

std::vector<std::string> InterfaceLines(bool include_loopback) {
  NetInterfaceList list(include_loopback);
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

// An address of which something cannot be read is left out; without memory the reading ends. An
// address whose interface has no index stands under number 0.
void CheckEnumeration(Trial& trial, bool include_loopback, size_t lines, size_t interfaces) {
  const std::vector<std::string> all = InterfaceLines(include_loopback);
  ASSERT_EQ(all.size(), lines);
  NetInterfaceList list(include_loopback);
  bool filled = false;
  trial.Call([&] { filled = getNetInterfacesList(list); });
  const size_t found = CountKnownLines(all, list);
  EXPECT_EQ(filled, found > 0);
  if (trial.FailedIn("getifaddrs")) {
    EXPECT_EQ(found, 0U);
  } else if (trial.FailedInAllocation()) {
    EXPECT_LT(found, lines);
  } else {
    const bool left_out = trial.FailedIn("getnameinfo") || trial.FailedIn("socket") ||
                          trial.FailedIn("ioctl") || trial.FailedIn("inet_ntop");
    EXPECT_EQ(found, left_out ? lines - 1 : lines);
  }
  EXPECT_EQ(list.getIndexes().size() > interfaces, trial.FailedIn("if_nametoindex"));
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(EnumerationFailures, Interfaces, PutOneLink, "NetInterfaceList::initialize",
                 "getNetInterfacesList") {
  CheckEnumeration(trial, false, 3, 1);
}

// The loopback link has an address of each family.
ZEBCOMN_HOST_USE(EnumerationFailures, InterfacesAndLoopback, PutOneLink,
                 "NetInterfaceList::initialize", "getNetInterfacesList") {
  CheckEnumeration(trial, true, 5, 2);
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
