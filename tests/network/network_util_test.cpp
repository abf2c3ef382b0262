#include "zebcomn/network/network_util.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/un.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "tests/network/listener.h"
#include "tests/support/descriptors.h"
#include "zebcomn/network/netinterface.h"

namespace {

using zebcomn_test::Listener;
using zebcomn_test::OpenDescriptorCount;

struct FormatCase {
  const char* input;
  const char* bare;
  const char* bracketed;
};

/// An object as memory that no constructor has seen would leave it.
class UninitialisedUtil {
 public:
  UninitialisedUtil() {
    static_assert(sizeof(ANetworkUtil) == sizeof(bool));
    const bool off = false;
    std::memcpy(static_cast<void*>(&util_), &off, sizeof off);
  }
  ANetworkUtil& get() { return util_; }

 private:
  ANetworkUtil util_;
};

/// Takes the texts that a call appended, and gives the arrays back.
std::vector<std::string> TakeTexts(ANetworkUtil& util, std::vector<char*>& addresses) {
  std::vector<std::string> texts(addresses.begin(), addresses.end());
  util.zebFreeAddrinfo(addresses);
  return texts;
}

sockaddr_in Ipv4(const char* text, uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  inet_pton(AF_INET, text, &address.sin_addr);
  return address;
}

TEST(FormatV6addr, TakesBracketsAndScopeOff) {
  const FormatCase cases[] = {
      {"[2001:db8::1]:80", "2001:db8::1", "[2001:db8::1]"},
      {"[fe80::1%eth0]", "fe80::1", "[fe80::1]"},
      {"[fe80::1]%eth0", "fe80::1", "[fe80::1]"},
      {"fe80::1%eth0", "fe80::1", "fe80::1"},
      {"2001:db8::1%2", "2001:db8::1", "2001:db8::1"},
      {"x[a]y[b]", "a", "[a]"},
      {"[]", "", "[]"},
      {"[%a]", "", "[]"},
      {"10.1.2.3", "10.1.2.3", "10.1.2.3"},
      {"", "", ""},
      {"[a", "[a", "[a"},
      {"]a[", "]a[", "]a["},
      {"%", "", ""},
  };
  ANetworkUtil util;
  for (const FormatCase& each : cases) {
    EXPECT_EQ(util.formatV6addr(each.input, false), each.bare) << each.input;
    EXPECT_EQ(util.formatV6addr(each.input, true), each.bracketed) << each.input;
  }
}

TEST(FormatV6addr, DoesNotExpandTheGap) {
  EXPECT_EQ(ANetworkUtil().formatV6addr("::", false), "::");
}

TEST(FormatV6addr, WorksOnAnUninitialisedObject) {
  UninitialisedUtil util;
  EXPECT_EQ(util.get().formatV6addr("[a%b]", true), "[a]");
}

TEST(FormatV6addrWithScope, OnlyLinkLocalTextGetsAScope) {
  ANetworkUtil util;
  for (const char* text : {"2001:db8::1", "fec0::1", "10.1.2.3", "", "FE80::1", "host"}) {
    EXPECT_EQ(util.formatV6addrWithScope(text, false), text);
    EXPECT_EQ(util.formatV6addrWithScope("[" + std::string(text) + "%3]:80", true),
              "[" + std::string(text) + "]");
  }
}

TEST(FormatV6addrWithScope, AnUninitialisedObjectAddsNoScope) {
  UninitialisedUtil util;
  EXPECT_EQ(util.get().formatV6addrWithScope("[fe80::1%eth0]", true), "[fe80::1]");
}

TEST(ZebGetScopeId, SiteLocalAndOtherAddressesHaveNone) {
  ANetworkUtil util;
  unsigned int scope = 77;
  for (const char* text : {"fec0::1", "2001:db8::1", "10.1.2.3", "", "xfe80::1", "FE80::1"}) {
    EXPECT_EQ(util.zebGetScopeId(text, scope), 0) << text;
  }
  EXPECT_EQ(scope, 77U);
}

TEST(ZebCreateAddrinfo, RefusesAnEmptyHostAndANullResult) {
  ANetworkUtil util;
  addrinfo* list = nullptr;
  EXPECT_EQ(util.zebCreateAddrinfo("", "80", &list, false), -1);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(util.zebCreateAddrinfo("127.0.0.1", "80", nullptr, false), -1);
}

TEST(ZebCreateAddrinfo, EmptyBracketsHandAnEmptyNodeToTheResolver) {
  ANetworkUtil util;
  addrinfo* list = nullptr;
  EXPECT_EQ(util.zebCreateAddrinfo("[]", "", &list, false), EAI_NONAME);
  EXPECT_EQ(list, nullptr);
}

TEST(ZebCreateAddrinfo, ResolvesForStreamSockets) {
  ANetworkUtil util;
  addrinfo* list = nullptr;
  ASSERT_EQ(util.zebCreateAddrinfo("[127.0.0.1]", "8080", &list, true), 0);
  EXPECT_EQ(list->ai_socktype, SOCK_STREAM);
  EXPECT_EQ(list->ai_family, AF_INET);
  EXPECT_EQ(list->ai_next, nullptr);
  EXPECT_EQ(util.zebNetToString(list->ai_addr, NI_NUMERICHOST), "127.0.0.1");
  EXPECT_EQ(util.zebNetToString(list->ai_addr, NI_NUMERICSERV), "8080");
  freeaddrinfo(list);
}

TEST(ZebCreateAddrinfo, AnIpv6AddressIsNoHostForIpv4Only) {
  ANetworkUtil util;
  addrinfo* list = nullptr;
  EXPECT_NE(util.zebCreateAddrinfo("2001:db8::1", "", &list, true), 0);
  ASSERT_EQ(util.zebCreateAddrinfo("2001:db8::1%9", "", &list, false), 0);
  EXPECT_EQ(list->ai_family, AF_INET6);
  freeaddrinfo(list);
}

TEST(ZebGetAddrinfo, GivesTheTextOfANumericHost) {
  ANetworkUtil util;
  std::vector<char*> addresses;
  EXPECT_EQ(util.zebGetAddrinfo("[2001:DB8::1]:80", "", addresses, NI_NUMERICHOST), 0);
  EXPECT_EQ(TakeTexts(util, addresses), std::vector<std::string>{"2001:db8::1"});
  EXPECT_TRUE(addresses.empty());
}

TEST(ZebGetAddrinfo, AppendsToWhatTheVectorHolds) {
  ANetworkUtil util;
  std::vector<char*> addresses;
  EXPECT_EQ(util.zebGetAddrinfo("192.0.2.1", "80", addresses, NI_NUMERICHOST), 0);
  EXPECT_EQ(util.zebGetAddrinfo("192.0.2.2", "80", addresses, NI_NUMERICHOST), 0);
  EXPECT_EQ(TakeTexts(util, addresses), (std::vector<std::string>{"192.0.2.1", "192.0.2.2"}));
}

TEST(ZebGetAddrinfo, PassesFailuresOfTheResolverThrough) {
  ANetworkUtil util;
  std::vector<char*> addresses;
  EXPECT_EQ(util.zebGetAddrinfo("", "80", addresses, NI_NUMERICHOST), -1);
  EXPECT_EQ(util.zebGetAddrinfo("127.0.0.1", "no-such-service!", addresses, NI_NUMERICHOST),
            EAI_SERVICE);
  EXPECT_TRUE(addresses.empty());
}

TEST(ZebGetAddrinfo, AnUninitialisedObjectFails) {
  UninitialisedUtil util;
  std::vector<char*> addresses;
  EXPECT_EQ(util.get().zebGetAddrinfo("127.0.0.1", "", addresses, NI_NUMERICHOST), -1);
  EXPECT_TRUE(addresses.empty());
}

TEST(ZebFreeAddrinfo, ReleasesEveryArrayAndPassesNullsOver) {
  ANetworkUtil util;
  std::vector<char*> addresses = {new char[1025], nullptr, new char[1025]};
  util.zebFreeAddrinfo(addresses);
  EXPECT_TRUE(addresses.empty());
  util.zebFreeAddrinfo(addresses);
  EXPECT_TRUE(addresses.empty());
}

TEST(ZebFreeAddrinfo, AnUninitialisedObjectReleasesNothing) {
  UninitialisedUtil util;
  char text[] = "mine";
  std::vector<char*> addresses = {text};
  util.get().zebFreeAddrinfo(addresses);
  EXPECT_EQ(addresses, std::vector<char*>{text});
}

TEST(ZebNetToString, OneFlagSelectsOnePart) {
  ANetworkUtil util;
  sockaddr_in address = Ipv4("192.0.2.9", 8081);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  EXPECT_EQ(util.zebNetToString(generic, 1), "192.0.2.9");
  EXPECT_EQ(util.zebNetToString(generic, 2), "8081");
}

TEST(ZebNetToString, WithBothFlagsTheServiceWins) {
  ANetworkUtil util;
  sockaddr_in address = Ipv4("192.0.2.9", 8081);
  EXPECT_EQ(util.zebNetToString(reinterpret_cast<sockaddr*>(&address), 3), "8081");
}

TEST(ZebNetToString, WithoutEitherFlagTheTextIsEmpty) {
  ANetworkUtil util;
  sockaddr_in address = Ipv4("192.0.2.9", 8081);
  EXPECT_EQ(util.zebNetToString(reinterpret_cast<sockaddr*>(&address), 0), "");
  EXPECT_EQ(util.zebNetToString(reinterpret_cast<sockaddr*>(&address), NI_NOFQDN), "");
}

TEST(ZebNetToString, ANullAddressAFailureAndAnUninitialisedObjectGiveTheEmptyText) {
  ANetworkUtil util;
  EXPECT_EQ(util.zebNetToString(nullptr, 1), "");
  sockaddr_storage unknown{};
  unknown.ss_family = AF_UNSPEC;
  EXPECT_EQ(util.zebNetToString(reinterpret_cast<sockaddr*>(&unknown), 1), "");
  sockaddr_in address = Ipv4("192.0.2.9", 8081);
  EXPECT_EQ(UninitialisedUtil().get().zebNetToString(reinterpret_cast<sockaddr*>(&address), 1), "");
}

TEST(ZebGetLocalIPAddress, IsTheAddressThatFacesThePeer) {
  const Listener peer("127.0.0.1");
  const int before = OpenDescriptorCount();
  std::string local;
  EXPECT_EQ(ANetworkUtil().zebGetLocalIPAddress("127.0.0.1", peer.port(), local, true, 1), 0);
  EXPECT_EQ(local, "127.0.0.1");
  EXPECT_EQ(OpenDescriptorCount(), before);
}

TEST(ZebGetLocalIPAddress, AClosedPortFailsAndLeavesTheTextUntouched) {
  const std::string port = Listener("127.0.0.1").port();
  const int before = OpenDescriptorCount();
  std::string local = "untouched";
  EXPECT_EQ(ANetworkUtil().zebGetLocalIPAddress("127.0.0.1", port, local, false, 1), -1);
  EXPECT_EQ(local, "untouched");
  EXPECT_EQ(OpenDescriptorCount(), before);
}

TEST(ZebGetLocalIPAddress, PassesFailuresOfTheResolverThrough) {
  ANetworkUtil util;
  std::string local = "untouched";
  EXPECT_EQ(util.zebGetLocalIPAddress("", "80", local, false, 1), -1);
  EXPECT_EQ(util.zebGetLocalIPAddress("127.0.0.1", "no-such-service!", local, false, 1),
            EAI_SERVICE);
  EXPECT_EQ(UninitialisedUtil().get().zebGetLocalIPAddress("127.0.0.1", "80", local, false, 1), -1);
  EXPECT_EQ(local, "untouched");
}

/// One peer that listens; the port is closed on every other loopback address.
class PeerListTest : public ::testing::Test {
 protected:
  int Ask(const std::string& peers, int flags = 1) {
    return util_.zebGetLocalIPAddressFromList(peers, peer_.port(), local_, false, flags);
  }

  ANetworkUtil util_;
  Listener peer_{"127.0.0.1"};
  std::string local_ = "untouched";
};

TEST_F(PeerListTest, TheFirstPeerThatAnswersDecides) {
  EXPECT_EQ(Ask("127.0.0.9;127.0.0.1;not-tried.invalid"), 0);
  EXPECT_EQ(local_, "127.0.0.1");
}

TEST_F(PeerListTest, OnePeerNeedsNoSeparator) {
  EXPECT_EQ(Ask("127.0.0.1"), 0);
  EXPECT_EQ(local_, "127.0.0.1");
}

TEST_F(PeerListTest, EmptyPeersAreRefusedAndPassedOver) {
  EXPECT_EQ(Ask(";;127.0.0.1;"), 0);
  EXPECT_EQ(local_, "127.0.0.1");
}

TEST_F(PeerListTest, AnEmptyListTriesOneEmptyPeer) {
  EXPECT_EQ(Ask(""), -1);
  EXPECT_EQ(local_, "untouched");
}

TEST_F(PeerListTest, TheLastPeersFailureIsReturned) {
  EXPECT_EQ(util_.zebGetLocalIPAddressFromList("127.0.0.9;127.0.0.1", "no-such-service!", local_,
                                               false, 1),
            EAI_SERVICE);
  EXPECT_EQ(Ask("[]"), EAI_NONAME);
  EXPECT_EQ(Ask("[];127.0.0.9"), -1);
  EXPECT_EQ(Ask("127.0.0.9;[]"), EAI_NONAME);
  EXPECT_EQ(local_, "untouched");
}

TEST_F(PeerListTest, ATrailingSeparatorTriesNoFurtherPeerButTwoDo) {
  EXPECT_EQ(Ask("[];"), EAI_NONAME);
  EXPECT_EQ(Ask("[];;"), -1);
}

TEST_F(PeerListTest, TheAnswerIsNumericWhateverTheFlagsSay) {
  EXPECT_EQ(Ask("127.0.0.1", 0), 0);
  EXPECT_EQ(local_, "127.0.0.1");
}

TEST(ZebCompareAddressFromPeerAddress, EqualTextsMatch) {
  ANetworkUtil util;
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("host", "", "host"), 1);
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("", "", ""), 1);
}

TEST(ZebCompareAddressFromPeerAddress, APeerThatTheAddressContainsMatches) {
  ANetworkUtil util;
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("10.1.2.3", "", "10.1.2.30"), 1);
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("", "", "10.1.2.30"), 1);
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("10.1.2.30", "80", "10.1.2.3"), 0);
}

TEST(ZebCompareAddressFromPeerAddress, BracketsAndScopeAreIgnored) {
  ANetworkUtil util;
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("[fe80::1%eth0]:80", "", "fe80::1%eth1"), 1);
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("[2001:db8::1]", "", "2001:db8::1"), 1);
}

TEST(ZebCompareAddressFromPeerAddress, ThePeerIsResolvedAndComparedAsText) {
  ANetworkUtil util;
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("2001:DB8:0::1", "80", "[2001:db8::1%3]"), 1);
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("2001:db8::2", "80", "2001:db8::1"), 0);
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("192.0.2.1", "no-such-service!", "192.0.2.2"), 0);
}

TEST(ZebCompareAddressFromPeerAddress, TheGapIsNotExpanded) {
  ANetworkUtil util;
  EXPECT_EQ(util.zebCompareAddressFromPeerAddress("2001:db8::1", "", "2001:db8:0:0:0:0:0:1"), 0);
}

TEST(ZebCompareAddressFromPeerAddress, AnUninitialisedObjectComparesTextsOnly) {
  UninitialisedUtil util;
  EXPECT_EQ(util.get().zebCompareAddressFromPeerAddress("10.1.2.3", "", "10.1.2.30"), 1);
  EXPECT_EQ(util.get().zebCompareAddressFromPeerAddress("[a]", "", "a"), 1);
  EXPECT_EQ(util.get().zebCompareAddressFromPeerAddress("2001:DB8::1", "", "2001:db8::1"), 0);
}

TEST(ANetworkUtil, IsUsableAsACopyToo) {
  ANetworkUtil util;
  ANetworkUtil copy = util;
  std::vector<char*> addresses;
  EXPECT_EQ(copy.zebGetAddrinfo("192.0.2.1", "", addresses, NI_NUMERICHOST), 0);
  util.zebFreeAddrinfo(addresses);
}

TEST(ANetworkUtil, ServesSeveralThreadsAtOnce) {
  const Listener peer("127.0.0.1");
  ANetworkUtil shared;
  std::vector<std::thread> threads;
  std::vector<int> wrong(4, 0);
  for (size_t i = 0; i < wrong.size(); ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 20; ++round) {
        std::string local;
        std::vector<char*> addresses;
        NetInterfaceList list(true);
        const bool right =
            shared.zebGetLocalIPAddress("127.0.0.1", peer.port(), local, true, 1) == 0 &&
            local == "127.0.0.1" && shared.zebGetAddrinfo("192.0.2.1", "", addresses, 1) == 0 &&
            getNetInterfacesList(list) &&
            shared.zebCompareAddressFromPeerAddress("2001:DB8::1", "", "2001:db8::1") == 1;
        shared.zebFreeAddrinfo(addresses);
        if (!right) ++wrong[i];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(wrong.size(), 0));
}

}  // namespace
