// The names under which the network knows a host.
#include <string>

#include "tests/reliability/out_of_memory.h"
#include "tests/reliability/sweep.h"
#include "zebcomn/network/host_names.h"

namespace {

using zebcomn_test::FailedInConversion;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::PrivateHost;
using zebcomn_test::Trial;

void PutNames(PrivateHost& host) {
  host.PutFile("/etc/nsswitch.conf", "hosts: files\n");
  host.PutFile("/etc/hosts", "192.0.2.7 alpha.long-name.example.net alpha\n");
  host.SetNodeName("alpha");
  host.SetNisDomain("nis.example.org");
}

void PutNamesWithoutDomain(PrivateHost& host) {
  PutNames(host);
  host.SetNisDomain("");
}

/// A host with so many names that the first work space does not hold them.
void PutManyNames(PrivateHost& host) {
  PutNames(host);
  std::string line = "192.0.2.7 alpha.long-name.example.net alpha";
  for (int name = 0; name < 300; ++name) line += " another-name-" + std::to_string(name);
  host.PutFile("/etc/hosts", line + "\n");
}

/// A host that cannot resolve its own name.
void PutUnknownName(PrivateHost& host) {
  PutNames(host);
  host.SetNodeName("a-host-that-nobody-knows");
}

ZEBCOMN_HOST_USE(HostNameFailures, SystemDomain, PutNames, "getDomainName") {
  std::wstring name = L"as it was";
  trial.Call([&] { name = getDomainName(); });
  const wchar_t* const expected =
      trial.FailedIn("getdomainname") ? L"long-name.example.net" : L"nis.example.org";
  EXPECT_EQ(name, FailedInConversion(trial) ? L"" : expected);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(HostNameFailures, ResolversDomain, PutNamesWithoutDomain, "getDomainName") {
  std::wstring name = L"as it was";
  trial.Call([&] { name = getDomainName(); });
  const bool unknown = trial.FailedIn("gethostname") || trial.FailedIn("gethostbyname_r");
  const wchar_t* const expected = unknown ? L"N/A" : L"long-name.example.net";
  EXPECT_EQ(name, FailedInConversion(trial) ? L"" : expected);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

void ExpectFullName(Trial& trial) {
  std::wstring name = L"as it was";
  trial.Call([&] { name = getFqdnAddress(); });
  const wchar_t* expected = L"alpha.long-name.example.net";
  if (trial.FailedIn("gethostname")) expected = L"N/A";
  if (trial.FailedIn("gethostbyname_r")) expected = L"alpha.nis.example.org";
  EXPECT_EQ(name, FailedInConversion(trial) ? L"" : expected);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_HOST_USE(HostNameFailures, FullName, PutNames, "getFqdnAddress") {
  ExpectFullName(trial);
}

ZEBCOMN_HOST_USE(HostNameFailures, FullNameAmongMany, PutManyNames, "getFqdnAddress") {
  ExpectFullName(trial);
}

ZEBCOMN_HOST_USE(HostNameFailures, FullNameThatIsPutTogether, PutUnknownName, "getFqdnAddress") {
  std::wstring name = L"as it was";
  trial.Call([&] { name = getFqdnAddress(); });
  const wchar_t* expected = L"a-host-that-nobody-knows.nis.example.org";
  if (trial.FailedIn("gethostname")) expected = L"N/A";
  if (trial.FailedIn("getdomainname")) expected = L"a-host-that-nobody-knows";
  EXPECT_EQ(name, FailedInConversion(trial) ? L"" : expected);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

}  // namespace
