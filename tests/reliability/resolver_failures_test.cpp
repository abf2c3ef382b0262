// Socket addresses as texts, and the resolver.
#include <arpa/inet.h>
#include <netinet/in.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/reliability/sweep.h"
#include "zebcomn/network/netinterface_linux.h"
#include "zebcomn/network/network_util.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
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

void CheckHostTexts(Trial& trial, int family, const char* address_text, const char* mask_text) {
  SocketAddress address(family, address_text);
  SocketAddress mask(family, mask_text);
  std::string text = "as it was";
  std::string text_of_mask = "as it was";
  bool read = false;
  bool read_mask = false;
  trial.Call([&] { read = getIPAddress(address.get(), text); });
  const bool first_failed = trial.Failed();
  trial.Call(
      [&] { read_mask = getNetMask(static_cast<unsigned>(family), mask.get(), text_of_mask); });
  EXPECT_EQ(read, !first_failed);
  EXPECT_EQ(text, first_failed ? "as it was" : address_text);
  EXPECT_EQ(read_mask, first_failed || !trial.Failed());
  EXPECT_EQ(text_of_mask, read_mask ? mask_text : "as it was");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(SocketAddressFailures, HostTexts, "getIPAddress", "getNetMask") {
  CheckHostTexts(trial, AF_INET6, kFullAddress, "ffff:ffff:ffff:ffff::");
}

ZEBCOMN_USE(SocketAddressFailures, HostTextsOfIpv4, "getIPAddress", "getNetMask") {
  CheckHostTexts(trial, AF_INET, "192.168.101.102", "255.255.255.0");
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

ZEBCOMN_USE_WITHOUT_CALLS(SocketAddressFailures, NetworkPartOfIpv6, "getNetAddr") {
  SocketAddress address(AF_INET6, kFullAddress);
  SocketAddress mask(AF_INET6, "ffff:ffff:ffff:ffff::");
  std::string text = "as it was";
  trial.Call([&] { EXPECT_TRUE(getNetAddr(AF_INET6, address.get(), mask.get(), text)); });
  EXPECT_EQ(text, "N/A");
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

/// A host with an address of each family.
void PutTwin(PrivateHost& host) {
  host.PutFile("/etc/nsswitch.conf", "hosts: files\n");
  host.PutFile("/etc/hosts", "192.0.2.7 twin\n2001:db8::7 twin\n");
}

// An address without a text is passed over; one that there is no memory for ends the list.
ZEBCOMN_HOST_USE(ResolverFailures, TextsOfTwoAddresses, PutTwin, "ANetworkUtil::zebGetAddrinfo",
                 "ANetworkUtil::zebFreeAddrinfo") {
  ANetworkUtil util;
  std::vector<char*> addresses;
  int result = 77;
  trial.Call([&] { result = util.zebGetAddrinfo("twin", "", addresses, NI_NUMERICHOST); });
  size_t texts = 2;
  if (trial.FailedIn("getnameinfo") || trial.FailedIn("operator new")) texts = 1;
  if (trial.FailedIn("getaddrinfo") || trial.FailedIn("operator new", 1)) texts = 0;
  EXPECT_EQ(addresses.size(), texts);
  const int without = trial.FailedIn("getaddrinfo") ? trial.error() : -1;
  EXPECT_EQ(result, texts == 0 ? without : 0);
  trial.Call([&] { util.zebFreeAddrinfo(addresses); });
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

}  // namespace
