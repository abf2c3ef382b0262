// The resolver and the interfaces are answered by this executable, so that every failure can be had
// and everything that is taken can be counted when it is given back.
#include <gtest/gtest.h>
#include <netinet/in.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "tests/network/resolver_fixture.h"
#include "tests/support/failing_allocation.h"

namespace {

using zebcomn_test::FailNothrowAllocation;
using zebcomn_test::FailThrowingAllocation;
using zebcomn_test::FakeNetwork;
using zebcomn_test::Network;
using zebcomn_test::Question;
using zebcomn_test::RealGetnameinfo;
using zebcomn_test::ResolverTest;
using zebcomn_test::TakeFailedAllocations;
using zebcomn_test::Texts;

TEST_F(ResolverTest, HintsAskForStreamSocketsOfTheWantedFamilyAndNothingElse) {
  for (const bool ipv4_only : {false, true}) {
    addrinfo* list = nullptr;
    ASSERT_EQ(util_.zebCreateAddrinfo("[host%eth0]:80", "443", &list, ipv4_only), 0);
    freeaddrinfo(list);
    const Question& asked = questions_.back();
    EXPECT_EQ(asked.node, "host");
    EXPECT_EQ(asked.service, "443");
    EXPECT_EQ(asked.hints.ai_family, ipv4_only ? AF_INET : AF_UNSPEC);
    EXPECT_EQ(asked.hints.ai_socktype, SOCK_STREAM);
    EXPECT_EQ(asked.hints.ai_flags, 0);
    EXPECT_EQ(asked.hints.ai_protocol, 0);
    EXPECT_EQ(asked.hints.ai_addrlen, 0U);
    EXPECT_EQ(asked.hints.ai_addr, nullptr);
    EXPECT_EQ(asked.hints.ai_canonname, nullptr);
    EXPECT_EQ(asked.hints.ai_next, nullptr);
  }
}

TEST_F(ResolverTest, AnEmptyPortIsNoService) {
  addrinfo* list = nullptr;
  ASSERT_EQ(util_.zebCreateAddrinfo("host", "", &list, false), 0);
  freeaddrinfo(list);
  EXPECT_EQ(questions_.back().service, "(null)");
}

TEST_F(ResolverTest, ARefusedHostIsNotAsked) {
  addrinfo* list = nullptr;
  EXPECT_EQ(util_.zebCreateAddrinfo("", "80", &list, false), -1);
  EXPECT_EQ(util_.zebCreateAddrinfo("host", "80", nullptr, false), -1);
  EXPECT_TRUE(questions_.empty());
}

TEST_F(ResolverTest, EmptyBracketsAskForTheEmptyNode) {
  error_ = EAI_NONAME;
  addrinfo* list = nullptr;
  EXPECT_EQ(util_.zebCreateAddrinfo("[]", "80", &list, false), EAI_NONAME);
  EXPECT_EQ(Nodes(), Texts{""});
}

TEST_F(ResolverTest, EveryErrorPassesThrough) {
  std::vector<char*> addresses;
  std::string local = "untouched";
  for (const int error : {EAI_AGAIN, EAI_NONAME, EAI_FAIL, EAI_MEMORY, EAI_SYSTEM, EAI_SERVICE}) {
    error_ = error;
    addrinfo* list = nullptr;
    EXPECT_EQ(util_.zebCreateAddrinfo("host", "80", &list, false), error);
    EXPECT_EQ(util_.zebGetAddrinfo("host", "80", addresses, 1), error);
    EXPECT_EQ(util_.zebGetLocalIPAddress("host", "80", local, false, 1), error);
    EXPECT_EQ(util_.zebGetLocalIPAddressFromList("a;b", "80", local, false, 1), error);
    EXPECT_EQ(util_.zebCompareAddressFromPeerAddress("host", "80", "10.0.0.1"), 0);
  }
  EXPECT_TRUE(addresses.empty());
  EXPECT_EQ(local, "untouched");
}

TEST_F(ResolverTest, TheLowestIndexThatTheResolverAcceptsIsTheScope) {
  AddInterfaces();
  unsigned int scope = 0;
  EXPECT_EQ(util_.zebGetScopeId("[fe80::1%eth7]:80", scope), 1);
  EXPECT_EQ(scope, 2U);
  EXPECT_EQ(Nodes(), Texts{"fe80::1%2"});
  EXPECT_EQ(questions_[0].service, "(null)");
  EXPECT_EQ(questions_[0].hints.ai_family, AF_UNSPEC);
  EXPECT_EQ(questions_[0].hints.ai_socktype, SOCK_STREAM);
  EXPECT_EQ(questions_[0].hints.ai_flags, 0);
}

TEST_F(ResolverTest, OnlyTextThatBeginsWithTheWholePrefixHasAScope) {
  AddInterfaces();
  unsigned int scope = 77;
  for (const char* text :
       {"fe8", "fe8::1", "fe81::1", "fe8f::1", "fec0::1", "::fe80", "fe:80::1"}) {
    EXPECT_EQ(util_.zebGetScopeId(text, scope), 0) << text;
    EXPECT_EQ(util_.formatV6addrWithScope(text, false), text);
  }
  EXPECT_EQ(scope, 77U);
  EXPECT_TRUE(questions_.empty());
}

TEST_F(ResolverTest, IndexesThatTheResolverRefusesArePassedOver) {
  AddInterfaces();
  RefuseScopes(2);
  unsigned int scope = 0;
  EXPECT_EQ(util_.zebGetScopeId("fe80::1", scope), 1);
  EXPECT_EQ(scope, 9U);
  EXPECT_EQ(Nodes(), (Texts{"fe80::1%2", "fe80::1%5", "fe80::1%9"}));
}

TEST_F(ResolverTest, WithoutAnAcceptedIndexThereIsNoScope) {
  AddInterfaces();
  RefuseScopes(INT_MAX);
  unsigned int scope = 77;
  EXPECT_EQ(util_.zebGetScopeId("fe80::1", scope), 0);
  EXPECT_EQ(scope, 77U);
  EXPECT_EQ(util_.formatV6addrWithScope("[fe80::1%4]", true), "[fe80::1]");
}

TEST_F(ResolverTest, WithoutAnInterfaceThereIsNoScope) {
  unsigned int scope = 77;
  EXPECT_EQ(util_.zebGetScopeId("fe80::1", scope), 0);
  Network().getifaddrs = [](ifaddrs**) { return -1; };
  EXPECT_EQ(util_.zebGetScopeId("fe80::1", scope), 0);
  EXPECT_EQ(scope, 77U);
  EXPECT_TRUE(questions_.empty());
}

TEST_F(ResolverTest, TheLoopbackInterfaceIsNoScope) {
  chain_.Add("eth0", IFF_UP | IFF_LOOPBACK, "127.0.0.1", "255.0.0.0");
  chain_.Add("eth1", IFF_UP, "10.0.0.5", "255.0.0.0");
  unsigned int scope = 0;
  EXPECT_EQ(util_.zebGetScopeId("fe80::1", scope), 1);
  EXPECT_EQ(scope, 5U);
}

TEST_F(ResolverTest, ALinkLocalNodeIsAskedForWithItsScope) {
  AddInterfaces();
  EXPECT_EQ(util_.formatV6addrWithScope("fe80::1%eth7", false), "fe80::1%2");
  EXPECT_EQ(util_.formatV6addrWithScope("[fe80::1]:80", true), "[fe80::1%2]");
  questions_.clear();
  addrinfo* list = nullptr;
  ASSERT_EQ(util_.zebCreateAddrinfo("[fe80::1]", "80", &list, false), 0);
  freeaddrinfo(list);
  EXPECT_EQ(Nodes(), (Texts{"fe80::1%2", "fe80::1%2"}));
  EXPECT_EQ(questions_[1].service, "80");
}

TEST_F(ResolverTest, AHostNameThatBeginsLikeALinkLocalAddressIsAskedForWithAScopeFirst) {
  AddInterfaces();
  addrinfo* list = nullptr;
  ASSERT_EQ(util_.zebCreateAddrinfo("fe80.example", "80", &list, false), 0);
  freeaddrinfo(list);
  EXPECT_EQ(Nodes(), (Texts{"fe80.example%2", "fe80.example%2"}));
  questions_.clear();
  RefuseScopes(INT_MAX);
  ASSERT_EQ(util_.zebCreateAddrinfo("fe80.example", "80", &list, false), 0);
  freeaddrinfo(list);
  EXPECT_EQ(Nodes(), (Texts{"fe80.example%2", "fe80.example%5", "fe80.example%9", "fe80.example"}));
}

/// zebGetAddrinfo against lists of any length.
class AddressListTest : public ResolverTest {
 protected:
  void AnswerMany(int count) {
    answer_.clear();
    for (int i = 1; i <= count; ++i) answer_.push_back("192.0.2." + std::to_string(i));
  }
  /// Asks, checks the result, and returns the last bytes of the texts.
  std::vector<int> Ask(int expected_result) {
    std::vector<char*> addresses;
    EXPECT_EQ(util_.zebGetAddrinfo("host", "", addresses, NI_NUMERICHOST), expected_result);
    std::vector<int> numbers;
    for (const char* text : addresses) numbers.push_back(std::atoi(std::strrchr(text, '.') + 1));
    util_.zebFreeAddrinfo(addresses);
    return numbers;
  }
  static std::vector<int> Range(int first, int last) {
    std::vector<int> numbers;
    for (int i = first; i <= last; ++i) numbers.push_back(i);
    return numbers;
  }
};

TEST_F(AddressListTest, AtMostFourteenTextsAreProduced) {
  AnswerMany(13);
  EXPECT_EQ(Ask(0), Range(1, 13));
  AnswerMany(14);
  EXPECT_EQ(Ask(0), Range(1, 14));
  AnswerMany(15);
  EXPECT_EQ(Ask(0), Range(1, 14));
  AnswerMany(20);
  EXPECT_EQ(Ask(0), Range(1, 14));
}

TEST_F(AddressListTest, DuplicatesAreKept) {
  answer_ = {"192.0.2.1", "192.0.2.1", "192.0.2.2"};
  EXPECT_EQ(Ask(0), (std::vector<int>{1, 1, 2}));
}

TEST_F(AddressListTest, AFailedTextIsSkippedAndDoesNotCount) {
  AnswerMany(20);
  int call = 0;
  Network().getnameinfo = [&](auto... arguments) {
    ++call;
    return call == 2 || call == 5 ? EAI_FAIL : RealGetnameinfo(arguments...);
  };
  EXPECT_EQ(Ask(0), (std::vector<int>{1, 3, 4, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
}

TEST_F(AddressListTest, NoTextAtAllIsAFailure) {
  Network().getnameinfo = [](auto...) { return EAI_FAIL; };
  EXPECT_EQ(Ask(-1), std::vector<int>{});
}

TEST_F(AddressListTest, GetnameinfoGetsTheEntryTheWholeArrayAndTheCallersFlags) {
  answer_ = {"192.0.2.1", "2001:db8::1"};
  std::vector<std::tuple<socklen_t, socklen_t, bool, int>> calls;
  Network().getnameinfo = [&](const sockaddr* address, socklen_t length, char* host,
                              socklen_t host_length, char* service, socklen_t service_length,
                              int flags) {
    calls.emplace_back(length, host_length, service == nullptr && service_length == 0, flags);
    return RealGetnameinfo(address, length, host, host_length, service, service_length,
                           NI_NUMERICHOST);
  };
  std::vector<char*> addresses;
  EXPECT_EQ(util_.zebGetAddrinfo("host", "", addresses, NI_DGRAM | NI_NOFQDN), 0);
  util_.zebFreeAddrinfo(addresses);
  EXPECT_EQ(calls, (std::vector<std::tuple<socklen_t, socklen_t, bool, int>>{
                       {sizeof(sockaddr_in), 1025, true, NI_DGRAM | NI_NOFQDN},
                       {sizeof(sockaddr_in6), 1025, true, NI_DGRAM | NI_NOFQDN}}));
}

TEST_F(AddressListTest, AFailedAllocationIsTriedAgain) {
  AnswerMany(3);
  FailNothrowAllocation(2, 5);
  EXPECT_EQ(Ask(0), Range(1, 3));
  EXPECT_EQ(TakeFailedAllocations(), 5);
}

TEST_F(AddressListTest, MemoryThatNeverComesBackEndsInAFailure) {
  AnswerMany(2);
  FailNothrowAllocation(1, INT_MAX);
  EXPECT_EQ(Ask(-1), std::vector<int>{});
  FailNothrowAllocation(2, INT_MAX);
  EXPECT_EQ(Ask(0), Range(1, 1));
  FailNothrowAllocation(0);
  EXPECT_GT(TakeFailedAllocations(), 5);
}

TEST_F(AddressListTest, AVectorThatCannotGrowKeepsWhatItHas) {
  AnswerMany(3);
  Network().getaddrinfo = [](const char*, const char*, const addrinfo*, addrinfo** list) {
    *list = *Network().live_lists.begin();
    return 0;
  };
  for (int nth = 1; nth <= 3; ++nth) {
    Network().NewList(answer_, "80");
    std::vector<char*> addresses;
    FailThrowingAllocation(nth);
    const int result = util_.zebGetAddrinfo("host", "", addresses, NI_NUMERICHOST);
    FailThrowingAllocation(0);
    EXPECT_EQ(TakeFailedAllocations(), 1) << nth;
    EXPECT_EQ(result, nth == 1 ? -1 : 0);
    EXPECT_EQ(addresses.size(), static_cast<size_t>(nth - 1));
    util_.zebFreeAddrinfo(addresses);
    EXPECT_TRUE(Network().live_lists.empty());
  }
}

/// zebCompareAddressFromPeerAddress against the fake resolver.
class ComparisonTest : public ResolverTest {
 protected:
  int Compare(const std::string& peer, const std::string& address) {
    return util_.zebCompareAddressFromPeerAddress(peer, "443", address);
  }
};

TEST_F(ComparisonTest, AnyOfThePeersAddressesMatches) {
  answer_ = {"192.0.2.1", "2001:db8::1", "fe80::1%1"};
  EXPECT_EQ(Compare("peer", "192.0.2.1"), 1);
  EXPECT_EQ(Compare("peer", "2001:db8::1"), 1);
  EXPECT_EQ(Compare("peer", "[2001:db8::1%eth0]:80"), 1);
  EXPECT_EQ(Compare("peer", "fe80::1%eth7"), 1);
  EXPECT_EQ(Compare("peer", "2001:db8:0:0:0:0:0:1"), 0);
  EXPECT_EQ(Compare("peer", "192.0.2.10"), 0);
  EXPECT_EQ(questions_[0].service, "443");
  EXPECT_EQ(questions_[0].hints.ai_family, AF_UNSPEC);
}

TEST_F(ComparisonTest, TextStepsAskNobody) {
  EXPECT_EQ(Compare("10.1.2.3", "10.1.2.30"), 1);
  EXPECT_EQ(Compare("a", "a"), 1);
  EXPECT_EQ(Compare("[a%1]", "a"), 1);
  EXPECT_EQ(Compare("", "anything"), 1);
  EXPECT_TRUE(questions_.empty());
}

TEST_F(ComparisonTest, AnAddressWithoutTextIsPassedOver) {
  answer_ = {"192.0.2.1", "192.0.2.1", "192.0.2.2"};
  int call = 0;
  Network().getnameinfo = [&](auto... arguments) {
    return ++call == 1 ? EAI_FAIL : RealGetnameinfo(arguments...);
  };
  EXPECT_EQ(Compare("peer", "192.0.2.1"), 1);
  EXPECT_EQ(call, 2) << "the walk stops at the match";
  Network().getnameinfo = [&](auto...) { return EAI_FAIL; };
  EXPECT_EQ(Compare("peer", "192.0.2.1"), 0);
}

TEST_F(ComparisonTest, ThePeersTextIsNumeric) {
  std::vector<std::tuple<socklen_t, int>> calls;
  Network().getnameinfo = [&](const sockaddr*, socklen_t, char*, socklen_t host_length, char*,
                              socklen_t, int flags) {
    calls.emplace_back(host_length, flags);
    return EAI_FAIL;
  };
  EXPECT_EQ(Compare("peer", "192.0.2.1"), 0);
  EXPECT_EQ(calls, (std::vector<std::tuple<socklen_t, int>>{{1025, NI_NUMERICHOST}}));
}

TEST(NetToStringCalls, AskForOnePartInThousandAndTwentyFiveBytes) {
  Network() = FakeNetwork();
  std::vector<std::tuple<socklen_t, socklen_t, socklen_t, int>> calls;
  Network().getnameinfo = [&](const sockaddr*, socklen_t length, char* host, socklen_t host_length,
                              char* service, socklen_t service_length, int flags) {
    EXPECT_EQ(host == nullptr, host_length == 0);
    EXPECT_EQ(service == nullptr, service_length == 0);
    calls.emplace_back(length, host_length, service_length, flags);
    return EAI_FAIL;
  };
  ANetworkUtil util;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  for (const int flags : {0, 1, 2, 3, 4, 5, 6, 7}) {
    EXPECT_EQ(util.zebNetToString(reinterpret_cast<sockaddr*>(&address), flags), "");
  }
  EXPECT_EQ(calls,
            (std::vector<std::tuple<socklen_t, socklen_t, socklen_t, int>>{{128, 1025, 0, 1},
                                                                           {128, 0, 1025, 2},
                                                                           {128, 0, 1025, 3},
                                                                           {128, 1025, 0, 5},
                                                                           {128, 0, 1025, 6},
                                                                           {128, 0, 1025, 7}}));
  Network() = FakeNetwork();
}

}  // namespace
