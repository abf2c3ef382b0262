// The system's names are given by this executable's own gethostname, getdomainname and
// gethostbyname_r, which the library calls.
#include "zebcomn/network/host_names.h"

#include <gtest/gtest.h>
#include <netdb.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string>

#include "tests/support/failing_allocation.h"
#include "zebcomn/sysprops/property_names.h"

namespace {

/// What the system and the resolver answer. Nothing stands for a failure.
struct FakeSystem {
  std::optional<std::string> host;
  std::optional<std::string> domain;
  std::optional<std::string> official_name;
  size_t wanted_work_space = 0;  ///< The resolver asks for more until it has this much.
  int host_calls = 0;
  int domain_calls = 0;
  int resolver_calls = 0;
  std::string resolved_host;
};
FakeSystem g_system;

int Answer(const std::optional<std::string>& text, char* name, size_t capacity) {
  if (!text) {
    errno = EFAULT;
    return -1;
  }
  strncpy(name, text->c_str(), capacity);
  return 0;
}

}  // namespace

extern "C" int gethostname(char* name, size_t length) noexcept {
  ++g_system.host_calls;
  return Answer(g_system.host, name, length);
}

extern "C" int getdomainname(char* name, size_t length) noexcept {
  ++g_system.domain_calls;
  return Answer(g_system.domain, name, length);
}

extern "C" int gethostbyname_r(const char* name, hostent* record, char* work, size_t length,
                               hostent** found, int* failure) {
  ++g_system.resolver_calls;
  g_system.resolved_host = name;
  *found = nullptr;
  *failure = HOST_NOT_FOUND;
  if (!g_system.official_name) return 0;
  const std::string& official = *g_system.official_name;
  if (length < g_system.wanted_work_space || length <= official.size()) {
    *failure = NETDB_INTERNAL;
    return ERANGE;
  }
  memcpy(work, official.c_str(), official.size() + 1);
  record->h_name = work;
  *found = record;
  return 0;
}

namespace {

const std::wstring kUnknown = L"N/A";

class HostNamesTest : public ::testing::Test {
 protected:
  void SetUp() override { g_system = FakeSystem(); }
};

TEST_F(HostNamesTest, TheSystemsDomainIsUsedAsItIs) {
  for (const char* domain : {"example.net", "(none)", ".odd.", "b\xC3\xBC"}) {
    g_system.domain = domain;
    EXPECT_EQ(getDomainName(),
              domain[0] == 'b' ? L"b\u00FC" : std::wstring(domain, domain + strlen(domain)));
  }
  EXPECT_EQ(g_system.host_calls, 0);
  EXPECT_EQ(g_system.resolver_calls, 0);
}

TEST_F(HostNamesTest, WithoutASystemDomainItIsWhatFollowsTheHostName) {
  struct Case {
    const char* official_name;
    const wchar_t* domain;
  };
  const Case cases[] = {
      {"host.example.net", L"example.net"},
      {"host", L""},
      {"host.", L""},
      {"hostXexample", L"example"},
      {"other.example.net", L""},
      {"my.host.example.net", L"example.net"},
      {"host.host.net", L"host.net"},
      {"HOST.example.net", L""},
  };
  for (const std::optional<std::string>& domain : {std::optional<std::string>(""), {}}) {
    g_system.domain = domain;
    g_system.host = "host";
    for (const Case& each : cases) {
      g_system.official_name = each.official_name;
      EXPECT_EQ(getDomainName(), each.domain) << each.official_name;
      EXPECT_EQ(g_system.resolved_host, "host");
    }
  }
}

TEST_F(HostNamesTest, TheDomainOfAHostThatCannotBeResolvedIsUnknown) {
  g_system.host = "host";
  EXPECT_EQ(getDomainName(), kUnknown);
  EXPECT_EQ(g_system.resolver_calls, 1);
}

TEST_F(HostNamesTest, TheDomainOfAHostWithoutANameIsUnknown) {
  g_system.official_name = "host.example.net";
  EXPECT_EQ(getDomainName(), kUnknown);
  EXPECT_EQ(g_system.host_calls, 1);
  EXPECT_EQ(g_system.resolver_calls, 0);
}

TEST_F(HostNamesTest, TheOfficialNameIsCutTo2047CharactersForTheDomain) {
  g_system.host = "host";
  g_system.official_name = "host." + std::string(3000, 'x');
  EXPECT_EQ(getDomainName(), std::wstring(2042, L'x'));
  g_system.official_name = std::string(2040, 'x') + "host.example";
  EXPECT_EQ(getDomainName(), L"ex");
  g_system.official_name = std::string(2044, 'x') + "host.example";
  EXPECT_EQ(getDomainName(), L"");
}

TEST_F(HostNamesTest, ANameThatFillsItsWholeBufferIsReadNoFurther) {
  g_system.domain = std::string(5000, 'd');
  EXPECT_EQ(getDomainName(), std::wstring(2047, L'd'));
  g_system.domain.reset();
  g_system.host = std::string(5000, 'h');
  EXPECT_EQ(getFqdnAddress(), std::wstring(2047, L'h'));
}

TEST_F(HostNamesTest, TheResolverGetsTheWorkSpaceThatItAsksFor) {
  g_system.host = "host";
  g_system.official_name = "host.example.net";
  g_system.wanted_work_space = 100000;
  EXPECT_EQ(getDomainName(), L"example.net");
  EXPECT_EQ(getFqdnAddress(), L"host.example.net");
  EXPECT_GT(g_system.resolver_calls, 2);
}

TEST_F(HostNamesTest, AResolverThatIsNeverSatisfiedCountsAsAFailure) {
  g_system.host = "host";
  g_system.official_name = "host.example.net";
  g_system.wanted_work_space = SIZE_MAX;
  EXPECT_EQ(getDomainName(), kUnknown);
  EXPECT_EQ(getFqdnAddress(), L"host");
}

TEST_F(HostNamesTest, TheFullNameIsTheOfficialName) {
  g_system.host = "host";
  g_system.domain = "nis.example";
  g_system.official_name = "other.example.net";
  EXPECT_EQ(getFqdnAddress(), L"other.example.net");
  EXPECT_EQ(g_system.domain_calls, 0);
}

TEST_F(HostNamesTest, AnUnresolvedHostNameGetsTheSystemsDomain) {
  g_system.host = "host";
  for (const char* domain : {"example.net", "(none)"}) {
    g_system.domain = domain;
    EXPECT_EQ(getFqdnAddress(), L"host." + std::wstring(domain, domain + strlen(domain)));
  }
}

TEST_F(HostNamesTest, AnEmptySystemDomainLeavesADotAtTheEnd) {
  g_system.host = "host";
  g_system.domain = "";
  EXPECT_EQ(getFqdnAddress(), L"host.");
}

TEST_F(HostNamesTest, WithoutASystemDomainTheFullNameIsTheHostName) {
  g_system.host = "host";
  EXPECT_EQ(getFqdnAddress(), L"host");
  EXPECT_EQ(g_system.domain_calls, 1);
}

TEST_F(HostNamesTest, TheFullNameOfAHostWithoutANameIsUnknown) {
  g_system.domain = "example.net";
  g_system.official_name = "host.example.net";
  EXPECT_EQ(getFqdnAddress(), kUnknown);
  EXPECT_EQ(g_system.resolver_calls, 0);
  EXPECT_EQ(kUnknown, quenty_com::pelu::sysprops::DefaultProp_Val);
}

TEST_F(HostNamesTest, EveryAllocationMayFail) {
  g_system.host = std::string(100, 'h');
  g_system.official_name = *g_system.host + "." + std::string(100, 'd');
  const std::wstring domain = getDomainName();
  const std::wstring full_name = getFqdnAddress();
  for (int nth = 1;; ++nth) {
    zebcomn_test::FailThrowingAllocation(nth);
    const std::wstring failing_domain = getDomainName();
    zebcomn_test::FailThrowingAllocation(nth);
    const std::wstring failing_full_name = getFqdnAddress();
    zebcomn_test::FailThrowingAllocation(0);
    EXPECT_TRUE(failing_domain.empty() || failing_domain == domain) << nth;
    EXPECT_TRUE(failing_full_name.empty() || failing_full_name == full_name) << nth;
    if (zebcomn_test::TakeFailedAllocations() == 0) break;
    EXPECT_LT(nth, 100);
  }
}

}  // namespace
