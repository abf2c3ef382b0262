// The peer's addresses, the sockets and their local names are answered by this executable, so that
// each step of finding a local address can fail for each address of the peer.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/network/resolver_fixture.h"
#include "tests/support/failing_allocation.h"

namespace {

using zebcomn_test::Network;
using zebcomn_test::OpenDescriptorCount;
using zebcomn_test::Question;
using zebcomn_test::RealGetnameinfo;
using zebcomn_test::ResolverTest;
using zebcomn_test::Texts;

/// zebGetLocalIPAddress with sockets whose calls fail as a test says. The local address of a
/// connection is 10.0.0.N, N being the number of the socket.
class LocalAddressTest : public ResolverTest {
 protected:
  void SetUp() override {
    ResolverTest::SetUp();
    answer_ = {"192.0.2.1", "192.0.2.2", "192.0.2.3"};
    Network().socket = [this](int family, int type, int protocol) {
      const int made = zebcomn_test::RealSocket(AF_INET, SOCK_DGRAM, 0);
      sockets_.emplace_back(family, type & ~SOCK_CLOEXEC, protocol);
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
        const void* const place = address;
        scopes_.push_back(static_cast<const sockaddr_in6*>(place)->sin6_scope_id);
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

TEST_F(LocalAddressTest, TheHostIsAskedForAndNeverTheService) {
  std::vector<std::tuple<bool, bool, int>> calls;
  Network().getnameinfo = [&](const sockaddr*, socklen_t, char* host, socklen_t, char* service,
                              socklen_t service_length, int flags) {
    calls.emplace_back(host != nullptr, service == nullptr && service_length == 0, flags);
    if (host != nullptr) std::strcpy(host, "text");
    return 0;
  };
  const std::vector<int> all_flags = {0, NI_NUMERICHOST, NI_NUMERICSERV, 3, NI_NAMEREQD};
  for (const int flags : all_flags) {
    calls.clear();
    EXPECT_EQ(Ask(flags), 0);
    EXPECT_EQ(calls, (std::vector<std::tuple<bool, bool, int>>{{true, true, flags}}));
  }
  for (const int flags : all_flags) {
    calls.clear();
    EXPECT_EQ(util_.zebGetLocalIPAddressFromList("a", "443", local_, false, flags), 0);
    EXPECT_EQ(calls, (std::vector<std::tuple<bool, bool, int>>{{true, true, NI_NUMERICHOST}}));
  }
}

/// Answers getsockname with fe80::7 on the interface with index 1.
int NameLinkLocal(int, sockaddr* address, socklen_t* length) {
  sockaddr_in6 local{};
  local.sin6_family = AF_INET6;
  local.sin6_addr.s6_addr[0] = 0xFE;
  local.sin6_addr.s6_addr[1] = 0x80;
  local.sin6_addr.s6_addr[15] = 7;
  local.sin6_scope_id = 1;
  std::memcpy(address, &local, sizeof local);
  *length = sizeof local;
  return 0;
}

TEST_F(LocalAddressTest, AnIpv6LocalAddressComesInCanonicalForm) {
  Network().getsockname = NameLinkLocal;
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(local_, "fe80:0:0:0:0:0:0:7");
}

TEST_F(LocalAddressTest, AnIpv6LocalAddressThatCannotBeExpandedIsAFailure) {
  Network().getsockname = NameLinkLocal;
  // None of these allocates, so that only the library's own allocations fail.
  Network().socket = [](int, int, int) { return zebcomn_test::RealSocket(AF_INET, SOCK_DGRAM, 0); };
  Network().connect = [](int, const sockaddr*, socklen_t) { return 0; };
  Network().getaddrinfo = [](const char*, const char*, const addrinfo*, addrinfo** list) {
    *list = *Network().live_lists.begin();
    return 0;
  };
  int failures = 0;
  for (int nth = 1;; ++nth) {
    Network().NewList(answer_, "80");
    local_ = "untouched";
    zebcomn_test::FailThrowingAllocation(nth);
    const int result = Ask();
    zebcomn_test::FailThrowingAllocation(0);
    EXPECT_EQ(local_, result == 0 ? "fe80:0:0:0:0:0:0:7" : "untouched") << nth;
    if (zebcomn_test::TakeFailedAllocations() == 0) break;
    ++failures;
  }
  EXPECT_GT(failures, 0);
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
    // The resolver of this machine, which may not answer, is not asked for a name.
    return RealGetnameinfo(address, length, host, host_length, service, service_length,
                           flags | NI_NUMERICHOST);
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

}  // namespace
