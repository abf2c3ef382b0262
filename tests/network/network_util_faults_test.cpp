// The resolver, the sockets and the interfaces are answered by this executable, so that every
// failure can be had and everything that is taken can be counted when it is given back.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "tests/network/fake_network.h"
#include "tests/support/descriptors.h"
#include "tests/support/failing_allocation.h"
#include "zebcomn/network/network_util.h"

namespace {

using zebcomn_test::FailNothrowAllocation;
using zebcomn_test::FailThrowingAllocation;
using zebcomn_test::FakeChain;
using zebcomn_test::FakeNetwork;
using zebcomn_test::Network;
using zebcomn_test::OpenDescriptorCount;
using zebcomn_test::RealGetnameinfo;
using zebcomn_test::TakeFailedAllocations;

using Texts = std::vector<std::string>;

/// One question to the resolver.
struct Question {
  std::string node;
  std::string service;  ///< "(null)" for none.
  addrinfo hints;
};

/// A resolver that gives `answer` to everybody, or fails with `error`.
class ResolverTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Network() = FakeNetwork();
    Network().Serve(chain_, {{"eth0", 2}, {"eth1", 5}, {"eth2", 9}});
    Network().getaddrinfo = [this](const char* node, const char* service, const addrinfo* hints,
                                   addrinfo** list) {
      questions_.push_back({node, service == nullptr ? "(null)" : service, *hints});
      if (error_ != 0) return error_;
      *list = Network().NewList(answer_, service);
      return 0;
    };
    descriptors_ = OpenDescriptorCount();
  }
  void TearDown() override {
    EXPECT_TRUE(Network().live_lists.empty());
    EXPECT_EQ(OpenDescriptorCount(), descriptors_);
    Network() = FakeNetwork();
  }

  Texts Nodes() const {
    Texts nodes;
    for (const Question& question : questions_) nodes.push_back(question.node);
    return nodes;
  }
  void AddInterfaces() {
    chain_.Add("eth1", IFF_UP, "10.0.0.5", "255.0.0.0");
    chain_.Add("eth2", IFF_UP, "10.0.0.9", "255.0.0.0");
    chain_.Add("eth0", IFF_UP, "10.0.0.2", "255.0.0.0");
  }
  /// getaddrinfo refuses this many scoped texts before it accepts one.
  void RefuseScopes(int refused) {
    const auto plain = Network().getaddrinfo;
    Network().getaddrinfo = [plain, refused](const char* node, const char* service,
                                             const addrinfo* hints, addrinfo** list) mutable {
      const int result = plain(node, service, hints, list);
      if (std::strchr(node, '%') == nullptr || refused-- <= 0) return result;
      if (result == 0) freeaddrinfo(*list);
      return EAI_NONAME;
    };
  }

  ANetworkUtil util_;
  FakeChain chain_;
  Texts answer_ = {"192.0.2.1"};
  int error_ = 0;
  std::vector<Question> questions_;
  int descriptors_ = 0;
};

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

/// zebGetLocalIPAddress with sockets whose calls fail as a test says. The local address of a
/// connection is 10.0.0.N, N being the number of the socket.
class LocalAddressTest : public ResolverTest {
 protected:
  void SetUp() override {
    ResolverTest::SetUp();
    answer_ = {"192.0.2.1", "192.0.2.2", "192.0.2.3"};
    Network().socket = [this](int family, int type, int protocol) {
      const int made = zebcomn_test::RealSocket(AF_INET, SOCK_DGRAM, 0);
      sockets_.emplace_back(family, type, protocol);
      if (static_cast<int>(sockets_.size()) <= failing_sockets_) {
        close(made);
        return -1;
      }
      return made;
    };
    Network().connect = [this](int, const sockaddr* address, socklen_t length) {
      char host[NI_MAXHOST] = "";
      EXPECT_EQ(RealGetnameinfo(address, length, host, sizeof host, nullptr, 0, NI_NUMERICHOST), 0);
      connected_.push_back(host);
      if (address->sa_family == AF_INET6) {
        scopes_.push_back(reinterpret_cast<const sockaddr_in6*>(address)->sin6_scope_id);
      }
      errno = ECONNREFUSED;
      return static_cast<int>(connected_.size()) <= failing_connects_ ? -1 : 0;
    };
    Network().getsockname = [this](int, sockaddr* address, socklen_t* length) {
      EXPECT_EQ(*length, 128U);
      if (++name_calls_ <= failing_names_) return -1;
      sockaddr_in local{};
      local.sin_family = AF_INET;
      local.sin_addr.s_addr = htonl(0x0A000000U + static_cast<unsigned>(sockets_.size()));
      std::memcpy(address, &local, sizeof local);
      *length = sizeof local;
      return 0;
    };
  }

  int Ask(int flags = NI_NUMERICHOST) {
    const std::string host = "host";
    return util_.zebGetLocalIPAddress(host, "80", local_, false, flags);
  }

  int failing_sockets_ = 0;
  int failing_connects_ = 0;
  int failing_names_ = 0;
  int name_calls_ = 0;
  std::vector<std::tuple<int, int, int>> sockets_;
  Texts connected_;
  std::vector<unsigned int> scopes_;
  std::string local_ = "untouched";
};

TEST_F(LocalAddressTest, TheFirstPeerAddressThatConnectsWins) {
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(local_, "10.0.0.1");
  EXPECT_EQ(connected_, Texts{"192.0.2.1"});
}

TEST_F(LocalAddressTest, TheSocketIsTheEntrys) {
  answer_ = {"2001:db8::1", "192.0.2.1"};
  failing_connects_ = 1;
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(sockets_,
            (std::vector<std::tuple<int, int, int>>{{AF_INET6, SOCK_STREAM, IPPROTO_TCP},
                                                    {AF_INET, SOCK_STREAM, IPPROTO_TCP}}));
}

TEST_F(LocalAddressTest, AFailureAtAnyStepGoesOnWithTheNextAddress) {
  for (int* failing : {&failing_sockets_, &failing_connects_, &failing_names_}) {
    sockets_.clear();
    connected_.clear();
    name_calls_ = 0;
    *failing = 2;
    EXPECT_EQ(Ask(), 0);
    EXPECT_EQ(local_, "10.0.0.3");
    EXPECT_EQ(OpenDescriptorCount(), descriptors_);
    *failing = 0;
  }
}

TEST_F(LocalAddressTest, AFailureAtAnyStepOfEveryAddressIsAFailure) {
  for (int* failing : {&failing_sockets_, &failing_connects_, &failing_names_}) {
    sockets_.clear();
    connected_.clear();
    name_calls_ = 0;
    *failing = 3;
    EXPECT_EQ(Ask(), -1);
    EXPECT_EQ(sockets_.size(), 3U);
    EXPECT_EQ(OpenDescriptorCount(), descriptors_);
    *failing = 0;
  }
  EXPECT_EQ(local_, "untouched");
}

TEST_F(LocalAddressTest, ALocalAddressWithoutTextGoesOnWithTheNextAddress) {
  int call = 0;
  Network().getnameinfo = [&](auto... arguments) {
    return ++call == 1 ? EAI_FAIL : RealGetnameinfo(arguments...);
  };
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(local_, "10.0.0.2");
  Network().getnameinfo = [](auto...) { return EAI_FAIL; };
  EXPECT_EQ(Ask(), -1);
  EXPECT_EQ(local_, "10.0.0.2");
}

TEST_F(LocalAddressTest, TheCallersFlagsAskForTheLocalText) {
  std::vector<std::tuple<socklen_t, int>> calls;
  Network().getnameinfo = [&](const sockaddr*, socklen_t, char* host, socklen_t host_length, char*,
                              socklen_t, int flags) {
    calls.emplace_back(host_length, flags);
    std::strcpy(host, "name.example::");
    return 0;
  };
  EXPECT_EQ(Ask(NI_NOFQDN), 0);
  EXPECT_EQ(calls, (std::vector<std::tuple<socklen_t, int>>{{1025, NI_NOFQDN}}));
  EXPECT_EQ(local_, "name.example:0:0:0:0:0:0:0");
}

TEST_F(LocalAddressTest, AnIpv6LocalAddressComesInCanonicalForm) {
  Network().getsockname = [](int, sockaddr* address, socklen_t* length) {
    sockaddr_in6 local{};
    local.sin6_family = AF_INET6;
    local.sin6_addr.s6_addr[0] = 0xFE;
    local.sin6_addr.s6_addr[1] = 0x80;
    local.sin6_addr.s6_addr[15] = 7;
    local.sin6_scope_id = 1;
    std::memcpy(address, &local, sizeof local);
    *length = sizeof local;
    return 0;
  };
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(local_, "fe80:0:0:0:0:0:0:7");
}

TEST_F(LocalAddressTest, ALinkLocalEntryGetsTheScopeOfAnInterface) {
  AddInterfaces();
  answer_ = {"fe80::1", "fe80::2%7", "2001:db8::1", "fec0::1"};
  RefuseScopes(0);
  failing_connects_ = 3;
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(scopes_, (std::vector<unsigned int>{2, 2, 0, 0}));
}

TEST_F(LocalAddressTest, WithoutAnAcceptedScopeTheResolversStays) {
  AddInterfaces();
  answer_ = {"fe80::1", "fe80::2%7"};
  RefuseScopes(INT_MAX);
  failing_connects_ = 1;
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(scopes_, (std::vector<unsigned int>{0, 7}));
}

TEST_F(LocalAddressTest, ALongLinkLocalTextKeepsTheResolversScope) {
  AddInterfaces();
  const std::string fits = "fe80:1111:2222:3333:4444:555::";
  const std::string too_long_by_one = "fe80:1111:2222:3333:4444:55:66:7";
  const std::string longer = "fe80:1111:2222:3333:4444:5555:6666:7777";
  answer_ = {longer, longer + "%7", fits, too_long_by_one};
  failing_connects_ = 3;
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(scopes_, (std::vector<unsigned int>{0, 7, 2, 0}));
}

TEST_F(LocalAddressTest, TheShortTextIsNumericAndHasThirtyTwoBytes) {
  AddInterfaces();
  answer_ = {"fe80::1"};
  std::vector<std::tuple<socklen_t, socklen_t, int>> calls;
  Network().getnameinfo = [&](const sockaddr* address, socklen_t length, char* host,
                              socklen_t host_length, char* service, socklen_t service_length,
                              int flags) {
    if (host_length == 32) calls.emplace_back(length, host_length, flags);
    return RealGetnameinfo(address, length, host, host_length, service, service_length, flags);
  };
  EXPECT_EQ(Ask(0), 0);
  EXPECT_EQ(calls, (std::vector<std::tuple<socklen_t, socklen_t, int>>{
                       {sizeof(sockaddr_in6), 32, NI_NUMERICHOST}}));
}

TEST_F(LocalAddressTest, APeerListIsAskedInItsOrderWithTheSamePortAndFamily) {
  failing_connects_ = INT_MAX;
  const std::vector<std::pair<std::string, Texts>> cases = {
      {"a", {"a"}},
      {"a;b;c", {"a", "b", "c"}},
      {"a;", {"a"}},
      {"a;;b", {"a", "b"}},
      {";a", {"a"}},
      {"", {}},
      {";", {}},
      {"a;;", {"a"}},
      {" a ; b", {" a ", " b"}},
  };
  for (const auto& [peers, nodes] : cases) {
    questions_.clear();
    EXPECT_EQ(util_.zebGetLocalIPAddressFromList(peers, "443", local_, true, 0), -1) << peers;
    EXPECT_EQ(Nodes(), nodes) << peers;
    for (const Question& question : questions_) {
      EXPECT_EQ(question.service, "443");
      EXPECT_EQ(question.hints.ai_family, AF_INET);
    }
  }
  EXPECT_EQ(local_, "untouched");
}

TEST_F(LocalAddressTest, APeerListEndsAtTheFirstPeerThatIsReached) {
  failing_connects_ = 3;
  EXPECT_EQ(util_.zebGetLocalIPAddressFromList("a;b;c", "443", local_, false, 1), 0);
  EXPECT_EQ(Nodes(), (Texts{"a", "b"}));
  EXPECT_EQ(local_, "10.0.0.4");
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
