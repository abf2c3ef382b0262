// End to end: the public interface on private hosts with known links, addresses, names and peers.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/network/interface_lines.h"
#include "tests/network/listener.h"
#include "tests/network/remote_peer.h"
#include "tests/support/descriptors.h"
#include "tests/support/private_host.h"
#include "zebcomn/network/host_names.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/network_util.h"

namespace {

using zebcomn_test::Describe;
using zebcomn_test::Listener;
using zebcomn_test::MakeIpv6Predictable;
using zebcomn_test::OpenDescriptorCount;
using zebcomn_test::PrivateHost;
using zebcomn_test::RemotePeer;
using zebcomn_test::RunInPrivateHost;

std::string Narrow(const std::wstring& text) {
  return std::string(text.begin(), text.end());
}

/// Every line that the enumeration gives, without the index at its front.
std::string Enumerate(bool include_loopback) {
  NetInterfaceList list(include_loopback);
  const int result = list.initialize();
  std::ostringstream text;
  text << "result " << result << "\n";
  for (const std::string& line : Describe(list)) text << line.substr(line.find(' ') + 1) << "\n";
  return text.str();
}

class NetworkHost : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
    const std::string ipv6 = RunInPrivateHost(
        [](PrivateHost&) { return std::string(MakeIpv6Predictable() ? "yes" : "no"); });
    if (ipv6 != "yes") GTEST_SKIP() << "this kernel has no IPv6";
  }

  /// One link, port0, with an address of each kind; the loopback link is up.
  static void AddPort0(PrivateHost& host) {
    MakeIpv6Predictable();
    host.Ip("link set lo up");
    host.AddVeth("port0");
    host.Ip("link set port0 address 02:1a:2b:3c:4d:5e");
    host.Ip("addr add 192.0.2.7/24 dev port0");
    host.AddIpv6("2001:db8::7/64", "port0");
    host.AddIpv6("fe80::7/64", "port0");
  }
  static void UseHostsFile(PrivateHost& host, const std::string& text) {
    host.PutFile("/etc/nsswitch.conf", "hosts: files\n");
    host.PutFile("/etc/host.conf", "multi on\n");
    host.PutFile("/etc/hosts", text);
  }
  /// The result and the text of a call for a local address.
  static std::string LocalAddress(const std::string& peer, const std::string& port,
                                  bool ipv4_only = false) {
    const int before = OpenDescriptorCount();
    std::string local = "untouched";
    const int result = ANetworkUtil().zebGetLocalIPAddress(peer, port, local, ipv4_only, 1);
    const char* leak = OpenDescriptorCount() == before ? "" : " and a descriptor is left open";
    return std::to_string(result) + " " + local + leak;
  }
};

TEST_F(NetworkHost, ALoneLoopbackInterfaceIsListedOnlyWhenAskedFor) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.Ip("link set lo up");
    NetInterfaceList list(true);
    getNetInterfacesList(list);
    return Enumerate(false) + Enumerate(true) + std::to_string(list.getIndexes().at(0));
  });
  EXPECT_EQ(seen,
            "result 0\n"
            "result 1\n"
            "lo 000000000000 127.0.0.1 255.0.0.0 127.0.0.0 2\n"
            "lo 000000000000 0:0:0:0:0:0:0:1 ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff "
            "0:0:0:0:0:0:0:1 10\n"
            "1");
}

TEST_F(NetworkHost, AHostWithNothingUpHasNothing) {
  EXPECT_EQ(RunInPrivateHost([](PrivateHost&) { return Enumerate(true); }), "result 0\n");
}

TEST_F(NetworkHost, AnInterfaceIsOneRecordWithAllItsAddresses) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    host.Ip("addr add 198.51.100.9/28 dev port0");
    return Enumerate(false);
  });
  EXPECT_EQ(seen,
            "result 1\n"
            "port0 021a2b3c4d5e 192.0.2.7 255.255.255.0 192.0.2.0 2\n"
            "port0 021a2b3c4d5e 198.51.100.9 255.255.255.240 198.51.100.0 2\n"
            "port0 021a2b3c4d5e 2001:db8:0:0:0:0:0:7 ffff:ffff:ffff:ffff:0:0:0:0 "
            "2001:db8:0:0:0:0:0:0 10\n"
            "port0 021a2b3c4d5e fe80:0:0:0:0:0:0:7 ffff:ffff:ffff:ffff:0:0:0:0 "
            "fe80:0:0:0:0:0:0:0 10\n");
}

TEST_F(NetworkHost, AnIpv6AddressIsFoundByItsCanonicalTextOnly) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    NetInterfaceList list(false);
    getNetInterfacesList(list);
    std::string mac = "untouched";
    std::string text = std::to_string(getMACAddressFromIPAddress(mac, "fe80::7", list)) + mac;
    text += std::to_string(getMACAddressFromIPAddress(mac, "fe80:0:0:0:0:0:0:7", list)) + mac;
    return text;
  });
  EXPECT_EQ(seen, "0untouched1021a2b3c4d5e");
}

TEST_F(NetworkHost, ADownInterfaceHasNothing) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    host.AddVeth("port1");
    host.Ip("addr add 203.0.113.5/25 dev port1");
    host.Ip("link set port0 down");
    return Enumerate(false);
  });
  EXPECT_NE(seen.find(" 203.0.113.5 255.255.255.128 203.0.113.0 2\n"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("port0 "), std::string::npos) << seen;
}

TEST_F(NetworkHost, ALabelledAddressKeepsItsLabelAsTheInterfacesName) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    MakeIpv6Predictable();
    host.AddVeth("port0");
    host.Ip("link set port0 address 02:00:00:00:00:01");
    host.Ip("addr add 192.0.2.7/24 dev port0");
    host.Ip("addr add 192.0.2.8/24 dev port0 label port0:1");
    return Enumerate(false);
  });
  EXPECT_EQ(seen,
            "result 1\n"
            "port0:1 020000000001 192.0.2.7 255.255.255.0 192.0.2.0 2\n"
            "port0:1 020000000001 192.0.2.8 255.255.255.0 192.0.2.0 2\n");
}

TEST_F(NetworkHost, ANameOfFifteenCharactersIsWhole) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.Ip("link add fifteen-letters type veth peer name other-end");
    host.Ip("link set fifteen-letters address 02:00:00:00:00:0f");
    host.Ip("link set fifteen-letters up");
    host.Ip("addr add 192.0.2.7/32 dev fifteen-letters");
    return Enumerate(false);
  });
  EXPECT_NE(seen.find("fifteen-letters 02000000000f 192.0.2.7 255.255.255.255 192.0.2.7 2\n"),
            std::string::npos)
      << seen;
}

TEST_F(NetworkHost, TheLocalAddressFacesThePeer) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    host.AddVeth("port1");
    host.Ip("addr add 198.51.100.7/24 dev port1");
    host.AddIpv6("2001:db8:1::7/64", "port1");
    const RemotePeer near(host, "port0", {"192.0.2.8/24"}, "192.0.2.8");
    const RemotePeer far(host, "port1", {"2001:db8:1::8/64"}, "2001:db8:1::8");
    return LocalAddress("192.0.2.8", near.port()) + "\n" +
           LocalAddress("[2001:db8:1::8]", far.port()) + "\n" +
           LocalAddress("192.0.2.8", near.port(), true);
  });
  EXPECT_EQ(seen, "0 192.0.2.7\n0 2001:db8:1:0:0:0:0:7\n0 192.0.2.7");
}

TEST_F(NetworkHost, ALinkLocalPeerIsReachedWithoutAScopeInItsName) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    const RemotePeer peer(host, "port0", {"fe80::8/64"}, "fe80::8%port0-peer");
    unsigned int scope = 0;
    ANetworkUtil util;
    const int found = util.zebGetScopeId("fe80::8", scope);
    NetInterfaceList list(false);
    getNetInterfacesList(list);
    const bool lowest = found == 1 && scope == list.getIndexes().at(0);
    return std::string(lowest ? "lowest\n" : "other\n") + LocalAddress("fe80::8", peer.port()) +
           "\n" + LocalAddress("[fe80::8%nonsense]", peer.port());
  });
  EXPECT_EQ(seen, "lowest\n0 fe80:0:0:0:0:0:0:7\n0 fe80:0:0:0:0:0:0:7");
}

TEST_F(NetworkHost, ALinkLocalPeerBehindAnotherThanTheFirstInterfaceIsNotReached) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    host.AddVeth("port1");
    host.AddIpv6("fe80::17/64", "port1");
    const RemotePeer peer(host, "port1", {"fe80::18/64"}, "fe80::18%port1-peer");
    // The first interface has no neighbour to ask, so the attempt need not wait for an answer.
    host.Ip("link set port0-peer down");
    host.Ip("route del fe80::/64 dev port0 metric 256");
    return LocalAddress("fe80::18%port1", peer.port());
  });
  EXPECT_EQ(seen, "-1 untouched");
}

TEST_F(NetworkHost, UnreachableAndClosedPeersFail) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    const std::string closed = Listener("192.0.2.7").port();
    return LocalAddress("203.0.113.1", "80") + "\n" + LocalAddress("2001:db8:9::1", "80") + "\n" +
           LocalAddress("192.0.2.7", closed) + "\n" + LocalAddress("", closed);
  });
  EXPECT_EQ(seen, "-1 untouched\n-1 untouched\n-1 untouched\n-1 untouched");
}

TEST_F(NetworkHost, AnUnreachableFirstPeerLeavesTheChoiceToTheSecond) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    const RemotePeer peer(host, "port0", {"192.0.2.8/24"}, "192.0.2.8");
    std::string local = "untouched";
    ANetworkUtil util;
    const int before = OpenDescriptorCount();
    const int result = util.zebGetLocalIPAddressFromList("203.0.113.1;192.0.2.8;not.asked",
                                                         peer.port(), local, false, 0);
    return std::to_string(result) + " " + local + " " +
           std::to_string(OpenDescriptorCount() - before);
  });
  EXPECT_EQ(seen, "0 192.0.2.7 0");
}

TEST_F(NetworkHost, ANamedPeerIsTriedAtEachOfItsAddresses) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    UseHostsFile(host,
                 "203.0.113.1 peer.example\n2001:db8:9::1 peer.example\n192.0.2.8 peer.example\n");
    const RemotePeer peer(host, "port0", {"192.0.2.8/24"}, "192.0.2.8");
    return LocalAddress("peer.example", peer.port());
  });
  EXPECT_EQ(seen, "0 192.0.2.7");
}

TEST_F(NetworkHost, ANameWithTwentyAddressesGivesFourteenTexts) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    std::string hosts;
    for (int i = 1; i <= 20; ++i) hosts += "192.0.2." + std::to_string(i) + " many.example\n";
    UseHostsFile(host, hosts);
    ANetworkUtil util;
    std::vector<char*> addresses;
    std::string text = std::to_string(util.zebGetAddrinfo("many.example", "80", addresses, 1));
    std::vector<std::string> texts(addresses.begin(), addresses.end());
    util.zebFreeAddrinfo(addresses);
    text += " " + std::to_string(texts.size());
    const bool right = std::all_of(texts.begin(), texts.end(), [](const std::string& each) {
      return each.rfind("192.0.2.", 0) == 0;
    });
    std::sort(texts.begin(), texts.end());
    const bool unique = std::adjacent_find(texts.begin(), texts.end()) == texts.end();
    return text + (right && unique ? " all different" : " wrong");
  });
  EXPECT_EQ(seen, "0 14 all different");
}

TEST_F(NetworkHost, AnUnknownNameGivesTheResolversError) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    UseHostsFile(host, "127.0.0.1 localhost\n");
    ANetworkUtil util;
    std::vector<char*> addresses;
    const int result = util.zebGetAddrinfo("nobody.example", "80", addresses, 1);
    return std::string(result == EAI_NONAME || result == EAI_NODATA ? "no such name" : "other") +
           (addresses.empty() ? "" : " but texts");
  });
  EXPECT_EQ(seen, "no such name");
}

TEST_F(NetworkHost, APeersNameDenotesEachOfItsAddresses) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    UseHostsFile(host, "192.0.2.8 peer.example\n2001:db8::8 peer.example\n");
    ANetworkUtil util;
    std::string text;
    for (const char* address :
         {"192.0.2.8", "[2001:db8::8%x]:443", "192.0.2.9", "2001:db8:0:0:0:0:0:8"}) {
      text += std::to_string(util.zebCompareAddressFromPeerAddress("peer.example", "80", address));
    }
    return text;
  });
  EXPECT_EQ(seen, "1100");
}

TEST_F(NetworkHost, WithoutASystemDomainTheHostsFileGivesBothNames) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.SetNodeName("alpha");
    host.SetNisDomain("");
    UseHostsFile(host, "192.0.2.7 alpha.example.net alpha\n");
    return Narrow(getDomainName()) + " " + Narrow(getFqdnAddress());
  });
  EXPECT_EQ(seen, "example.net alpha.example.net");
}

TEST_F(NetworkHost, ASystemDomainGoesBeforeTheResolvers) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.SetNodeName("alpha");
    UseHostsFile(host, "192.0.2.7 alpha.example.net alpha\n");
    std::string text;
    for (const char* domain : {"nis.example", "(none)"}) {
      host.SetNisDomain(domain);
      text += Narrow(getDomainName()) + " " + Narrow(getFqdnAddress()) + "\n";
    }
    return text;
  });
  EXPECT_EQ(seen, "nis.example alpha.example.net\n(none) alpha.example.net\n");
}

TEST_F(NetworkHost, AHostThatCannotResolveItsOwnNameHasNoDomainAndADotAtItsEnd) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.SetNodeName("lonely");
    host.SetNisDomain("");
    UseHostsFile(host, "127.0.0.1 localhost\n");
    std::string text = Narrow(getDomainName()) + " " + Narrow(getFqdnAddress()) + "\n";
    host.SetNisDomain("nis.example");
    return text + Narrow(getDomainName()) + " " + Narrow(getFqdnAddress());
  });
  EXPECT_EQ(seen, "N/A lonely.\nnis.example lonely.nis.example");
}

TEST_F(NetworkHost, AnOfficialNameWithoutTheHostNameGivesAnEmptyDomain) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.SetNodeName("alpha");
    host.SetNisDomain("");
    UseHostsFile(host, "192.0.2.7 beta.example.net alpha\n");
    return "[" + Narrow(getDomainName()) + "] " + Narrow(getFqdnAddress());
  });
  EXPECT_EQ(seen, "[] beta.example.net");
}

TEST_F(NetworkHost, NamesMayBeAskedForBySeveralThreadsAtOnce) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.SetNodeName("alpha");
    host.SetNisDomain("");
    UseHostsFile(host, "192.0.2.7 alpha.example.net alpha\n");
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&wrong] {
        for (int round = 0; round < 20; ++round) {
          if (getDomainName() != L"example.net") ++wrong;
          if (getFqdnAddress() != L"alpha.example.net") ++wrong;
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    return std::to_string(wrong);
  });
  EXPECT_EQ(seen, "0");
}

}  // namespace
