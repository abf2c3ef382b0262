// The uptime of a host with a "/proc/uptime" of its own.
#include "zebcomn/util/uptime.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/private_host.h"

namespace {

using quenty_com::pelu::get_system_uptime_linux;
using quenty_com::pelu::tivmcomn_get_system_uptime;
using zebcomn_test::PrivateHost;

class Uptime : public ::testing::Test {
 protected:
  void SetUp() override {
    if (auto why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  }
  // What the two calls say on a host that `prepare` has changed.
  static std::string Both(const std::function<void(PrivateHost&)>& prepare) {
    return zebcomn_test::RunInPrivateHost([&prepare](PrivateHost& host) {
      prepare(host);
      return std::to_string(get_system_uptime_linux()) + " " +
             std::to_string(tivmcomn_get_system_uptime());
    });
  }
};

TEST_F(Uptime, IsReadFromProc) {
  EXPECT_EQ(Both([](PrivateHost& host) { host.PutFile("/proc/uptime", "86399.99 1000.00\n"); }),
            "86399 86399");
}

TEST_F(Uptime, OfAFractionOfASecondIsZero) {
  EXPECT_EQ(Both([](PrivateHost& host) { host.PutFile("/proc/uptime", "0.53 0.10\n"); }), "0 0");
}

TEST_F(Uptime, OfAnEmptyFileIsZero) {
  EXPECT_EQ(Both([](PrivateHost& host) { host.PutFile("/proc/uptime", ""); }), "0 0");
}

TEST_F(Uptime, WithoutTheFileIsTheSentinel) {
  EXPECT_EQ(Both([](PrivateHost& host) { host.PutEmptyDirectory("/proc"); }),
            "2147483647 2147483647");
}

}  // namespace
