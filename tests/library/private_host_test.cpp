// The tests' own ground: what they put into a private host is seen inside it and nowhere else.
#include "tests/support/private_host.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/support/command.h"
#include "tests/support/scratch_dir.h"

namespace zebcomn_test {
namespace {

class PrivateHostTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  }
};

TEST_F(PrivateHostTest, FilesPutThereAreSeenInsideOnly) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.PutFile("/etc/zebcomn-new-file", "new");
    host.PutFile("/proc/meminfo", "bound");
    return ReadFile("/etc/zebcomn-new-file") + ReadFile("/proc/meminfo");
  });
  EXPECT_EQ(seen, "newbound");
  EXPECT_NE(access("/etc/zebcomn-new-file", F_OK), 0);
  EXPECT_NE(ReadFile("/proc/meminfo"), "bound");
}

TEST_F(PrivateHostTest, NodeNameIsPrivate) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.SetNodeName("alpha.beta");
    utsname names{};
    uname(&names);
    return std::string(names.nodename);
  });
  EXPECT_EQ(seen, "alpha.beta");
  utsname names{};
  uname(&names);
  EXPECT_STRNE(names.nodename, "alpha.beta");
}

TEST_F(PrivateHostTest, LinksHaveTheAddressesGivenToThem) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.AddVeth("port0");
    host.Ip("addr add 192.0.2.7/24 dev port0");
    return RunCommand({"ip", "-o", "-4", "addr", "show"}).out;
  });
  EXPECT_NE(seen.find("192.0.2.7/24"), std::string::npos) << seen;
}

TEST_F(PrivateHostTest, ABodyThatThrowsOrDiesIsReported) {
  EXPECT_THROW(
      RunInPrivateHost([](PrivateHost&) -> std::string { throw std::runtime_error("no"); }),
      std::runtime_error);
  EXPECT_THROW(RunInPrivateHost([](PrivateHost&) -> std::string { _exit(0); }), std::runtime_error);
}

}  // namespace
}  // namespace zebcomn_test
