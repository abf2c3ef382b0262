// The chain of addresses, and the calls that turn an entry into text, are answered by this
// executable, so that every failure can be had; the texts themselves are the C library's.
#include "zebcomn/network/netinterface_linux.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "tests/network/fake_network.h"
#include "tests/network/interface_lines.h"
#include "tests/support/descriptors.h"
#include "tests/support/failing_allocation.h"
#include "zebcomn/network/netinterface.h"

namespace {

using zebcomn_test::FakeChain;
using zebcomn_test::FakeNetwork;
using zebcomn_test::Network;
using zebcomn_test::OpenDescriptorCount;

constexpr unsigned int kUp = IFF_UP;
constexpr unsigned int kLoopback = IFF_UP | IFF_LOOPBACK;

using zebcomn_test::Describe;
using Lines = std::vector<std::string>;

class EnumerationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Network() = FakeNetwork();
    Network().Serve(chain_, {{"lo", 1}, {"eth0", 2}, {"eth0:1", 2}, {"eth1", 3}});
    descriptors_ = OpenDescriptorCount();
  }
  void TearDown() override {
    EXPECT_EQ(OpenDescriptorCount(), descriptors_);
    Network() = FakeNetwork();
  }

  Lines Fill(bool include_loopback = false) {
    NetInterfaceList list(include_loopback);
    result_ = list.initialize();
    EXPECT_EQ(Network().freed_chains, chain_.head() == nullptr ? 0 : 1);
    return Describe(list);
  }

  FakeChain chain_;
  int result_ = -1;
  int descriptors_ = 0;
};

TEST_F(EnumerationTest, AFailingGetifaddrsGivesZeroAndLeavesTheListAlone) {
  Network().getifaddrs = [](ifaddrs**) { return -1; };
  NetInterfaceList list(true);
  list.getNetInterface(9);
  EXPECT_EQ(list.initialize(), 0);
  EXPECT_FALSE(getNetInterfacesList(list));
  EXPECT_EQ(list.getIndexes(), std::vector<unsigned int>{9});
  EXPECT_EQ(Network().freed_chains, 0);
}

TEST_F(EnumerationTest, AHostWithoutAddressesGivesZero) {
  EXPECT_EQ(Fill(), Lines{});
  EXPECT_EQ(result_, 0);
}

TEST_F(EnumerationTest, TheLoopbackInterfaceCountsOnlyWhereItIsAskedFor) {
  chain_.Add("lo", kLoopback, "127.0.0.1", "255.0.0.0");
  EXPECT_EQ(Fill(false), Lines{});
  EXPECT_EQ(result_, 0);
  Network().freed_chains = 0;
  EXPECT_EQ(Fill(true), Lines{"1 lo 020000000001 127.0.0.1 255.0.0.0 127.0.0.0 2"});
  EXPECT_EQ(result_, 1);
}

TEST_F(EnumerationTest, OnlyUpInterfacesWithAnIpAddressCount) {
  chain_.Add("eth0", 0, "10.0.0.1", "255.0.0.0");
  chain_.Add("eth0", ~kUp, "10.0.0.2", "255.0.0.0");
  chain_.Add("eth0", kUp, "", "255.0.0.0");
  chain_.Add("eth0", kUp, std::to_string(AF_PACKET), "255.0.0.0");
  chain_.Add("eth0", kUp, std::to_string(AF_UNIX), "255.0.0.0");
  int asked = 0;
  Network().getnameinfo = [&](auto...) {
    ++asked;
    return 0;
  };
  EXPECT_EQ(Fill(true), Lines{});
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(asked, 0) << "no text is asked for";
}

TEST_F(EnumerationTest, AddressesOfOneInterfaceStandInTheChainsOrder) {
  chain_.Add("eth1", kUp, "10.9.0.1", "255.255.0.0");
  chain_.Add("eth0", kUp, "192.168.1.10", "255.255.255.0");
  chain_.Add("eth0", kUp, "2001:db8::8:800:200c:417a", "ffff:ffff:ff00::");
  chain_.Add("eth0", kUp, "192.168.1.9", "255.255.255.252");
  EXPECT_EQ(Fill(), (Lines{
                        "2 eth0 020000000002 192.168.1.10 255.255.255.0 192.168.1.0 2",
                        "2 eth0 020000000002 2001:db8:0:0:8:800:200c:417a "
                        "ffff:ffff:ff00:0:0:0:0:0 2001:db8:0:0:0:0:0:0 10",
                        "2 eth0 020000000002 192.168.1.9 255.255.255.252 192.168.1.8 2",
                        "3 eth1 020000000003 10.9.0.1 255.255.0.0 10.9.0.0 2",
                    }));
  EXPECT_EQ(result_, 1);
}

TEST_F(EnumerationTest, ALinkLocalAddressLosesItsScope) {
  chain_.Add("eth0", kUp, "fe80::211:22ff:fe33:4455", "ffff:ffff:ffff:ffff::", 1);
  EXPECT_EQ(Fill(), Lines{"2 eth0 020000000002 fe80:0:0:0:211:22ff:fe33:4455 "
                          "ffff:ffff:ffff:ffff:0:0:0:0 fe80:0:0:0:0:0:0:0 10"});
}

TEST_F(EnumerationTest, AMappedAddressKeepsItsDottedTail) {
  chain_.Add("eth0", kUp, "::ffff:10.1.2.3", "ffff:ffff:ffff:ffff:ffff:ffff:ffff::");
  EXPECT_EQ(Fill(), Lines{"2 eth0 020000000002 0:0:0:0:0:0:ffff:10.1.2.3 "
                          "ffff:ffff:ffff:ffff:ffff:ffff:ffff:0 0:0:0:0:0:0:ffff:0 10"});
}

TEST_F(EnumerationTest, ALabelledAddressRenamesItsInterface) {
  chain_.Add("eth0", kUp, "10.0.0.1", "255.0.0.0");
  chain_.Add("eth0:1", kUp, "10.0.0.2", "255.0.0.0");
  EXPECT_EQ(Fill(), (Lines{"2 eth0:1 020000000002 10.0.0.1 255.0.0.0 10.0.0.0 2",
                           "2 eth0:1 020000000002 10.0.0.2 255.0.0.0 10.0.0.0 2"}));
}

TEST_F(EnumerationTest, ASecondFillingAppendsEveryAddressAgain) {
  chain_.Add("eth0", kUp, "10.0.0.1", "255.0.0.0");
  NetInterfaceList list(false);
  EXPECT_TRUE(getNetInterfacesList(list));
  EXPECT_TRUE(getNetInterfacesList(list));
  const std::string line = "2 eth0 020000000002 10.0.0.1 255.0.0.0 10.0.0.0 2";
  EXPECT_EQ(Describe(list), (Lines{line, line}));
  EXPECT_EQ(Network().freed_chains, 2);
}

TEST_F(EnumerationTest, AnInterfaceWithoutAnIndexStandsUnderZero) {
  Network().if_nametoindex = [](const char*) { return 0U; };
  chain_.Add("eth0", kUp, "10.0.0.1", "255.0.0.0");
  EXPECT_EQ(Fill(), Lines{"0 eth0 020000000002 10.0.0.1 255.0.0.0 10.0.0.0 2"});
}

/// A chain of which every entry can be recorded, for failures at each step.
class EnumerationFailureTest : public EnumerationTest {
 protected:
  void SetUp() override {
    EnumerationTest::SetUp();
    chain_.Add("eth0", kUp, "10.0.0.1", "255.0.0.0");
    chain_.Add("eth1", kUp, "fd00::1", "ffff::");
    chain_.Add("eth1", kUp, "10.0.1.1", "255.0.0.0");
  }

  const std::string first_ = "2 eth0 020000000002 10.0.0.1 255.0.0.0 10.0.0.0 2";
  const std::string second_ =
      "3 eth1 020000000003 fd00:0:0:0:0:0:0:1 ffff:0:0:0:0:0:0:0 fd00:0:0:0:0:0:0:0 10";
  const std::string third_ = "3 eth1 020000000003 10.0.1.1 255.0.0.0 10.0.0.0 2";
};

TEST_F(EnumerationFailureTest, AnAddressWithoutTextDropsItsEntryOnly) {
  for (const int failing : {1, 2, 3, 4, 5, 6}) {
    int call = 0;
    Network().getnameinfo = [&](auto... arguments) {
      return ++call == failing ? EAI_FAIL : zebcomn_test::RealGetnameinfo(arguments...);
    };
    Lines expected = {first_, second_, third_};
    expected.erase(expected.begin() + (failing - 1) / 2);
    Network().freed_chains = 0;
    EXPECT_EQ(Fill(), expected) << failing;
    EXPECT_EQ(result_, 1);
  }
}

TEST_F(EnumerationFailureTest, NoTextAtAllGivesZero) {
  Network().getnameinfo = [](auto...) { return EAI_MEMORY; };
  EXPECT_EQ(Fill(), Lines{});
  EXPECT_EQ(result_, 0);
}

TEST_F(EnumerationFailureTest, AnInterfaceWhoseHardwareAddressCannotBeReadHasNoAddresses) {
  const auto served = Network().hardware_address;
  Network().hardware_address = [&](int fd, ifreq* request) {
    return std::string(request->ifr_name) == "eth1" ? -1 : served(fd, request);
  };
  EXPECT_EQ(Fill(), Lines{first_});
}

TEST_F(EnumerationFailureTest, NoSocketForAFamilyDropsThatFamilyOnly) {
  Network().socket = [](int family, int type, int protocol) {
    errno = EAFNOSUPPORT;
    return family == AF_INET6 ? -1 : zebcomn_test::RealSocket(family, type, protocol);
  };
  EXPECT_EQ(Fill(), (Lines{first_, third_}));
}

TEST_F(EnumerationFailureTest, HardwareAddressesAreAskedThroughADatagramSocketOfTheFamily) {
  std::vector<std::tuple<int, int, int>> sockets;
  Network().socket = [&](int family, int type, int protocol) {
    sockets.emplace_back(family, type & ~SOCK_CLOEXEC, protocol);
    return zebcomn_test::RealSocket(AF_INET, SOCK_DGRAM, 0);
  };
  Fill();
  EXPECT_EQ(sockets,
            (std::vector<std::tuple<int, int, int>>{
                {AF_INET, SOCK_DGRAM, 0}, {AF_INET6, SOCK_DGRAM, 0}, {AF_INET, SOCK_DGRAM, 0}}));
}

TEST_F(EnumerationFailureTest, AMissingMaskDropsTheEntry) {
  chain_.Add("eth0", kUp, "10.0.0.9", "");
  chain_.Add("eth0", kUp, "fd00::9", "");
  EXPECT_EQ(Fill(), (Lines{first_, second_, third_}));
}

TEST_F(EnumerationFailureTest, ANetworkThatCannotBeWrittenDropsItsEntryOnly) {
  int call = 0;
  Network().inet_ntop = [&](int, const void*, char* text, socklen_t) {
    return ++call == 1 ? nullptr : std::strcpy(text, "10.0.0.0");
  };
  EXPECT_EQ(Fill(), (Lines{second_, third_}));
  EXPECT_EQ(call, 2) << "IPv6 asks for none";
}

TEST_F(EnumerationFailureTest, EveryAllocationMayFail) {
  int failures = 0;
  for (int nth = 1;; ++nth) {
    NetInterfaceList list(false);
    zebcomn_test::FailThrowingAllocation(nth);
    const int result = list.initialize();
    zebcomn_test::FailThrowingAllocation(0);
    if (zebcomn_test::TakeFailedAllocations() == 0) break;
    ++failures;
    const Lines lines = Describe(list);
    EXPECT_EQ(result, lines.empty() ? 0 : 1) << nth;
    for (const std::string& line : lines) {
      EXPECT_TRUE(line == first_ || line == second_ || line == third_) << nth << ": " << line;
    }
    EXPECT_EQ(OpenDescriptorCount(), descriptors_);
  }
  EXPECT_GT(failures, 3);
  EXPECT_EQ(Network().freed_chains, failures + 1);
}

TEST_F(EnumerationTest, GetnameinfoIsAskedForNumbersWithTheDescribedSizes) {
  std::vector<std::tuple<socklen_t, socklen_t, bool, int>> calls;
  Network().getnameinfo = [&](const sockaddr* address, socklen_t length, char* host,
                              socklen_t host_length, char* service, socklen_t service_length,
                              int flags) {
    EXPECT_EQ(std::count(host, host + host_length, '\0'), host_length);
    calls.emplace_back(length, host_length, service == nullptr && service_length == 0, flags);
    return zebcomn_test::RealGetnameinfo(address, length, host, host_length, service,
                                         service_length, flags);
  };
  chain_.Add("eth0", kUp, "10.0.0.1", "255.0.0.0");
  chain_.Add("eth0", kUp, "fd00::1", "ffff::");
  Fill();
  EXPECT_EQ(calls, (std::vector<std::tuple<socklen_t, socklen_t, bool, int>>{
                       {128, 1025, true, NI_NUMERICHOST},
                       {16, 1025, true, NI_NUMERICHOST},
                       {128, 1025, true, NI_NUMERICHOST},
                       {28, 1025, true, NI_NUMERICHOST}}));
}

/// The texts of single socket addresses, as the C library gives them.
class AddressTextTest : public ::testing::Test {
 protected:
  void SetUp() override { Network() = FakeNetwork(); }

  static sockaddr* First(FakeChain& chain) { return chain.head()->ifa_addr; }
  static sockaddr* Mask(FakeChain& chain) { return chain.head()->ifa_netmask; }

  FakeChain chain_;
  std::string out_ = "untouched";
};

TEST_F(AddressTextTest, NullsFailAndLeaveTheTextUntouched) {
  chain_.Add("eth0", kUp, "10.1.2.3", "255.255.0.0");
  EXPECT_FALSE(getIPAddress(nullptr, out_));
  EXPECT_FALSE(getNetMask(AF_INET, nullptr, out_));
  EXPECT_FALSE(getNetAddr(AF_INET, First(chain_), nullptr, out_));
  EXPECT_FALSE(getNetAddr(AF_INET6, First(chain_), nullptr, out_));
  EXPECT_FALSE(getNetAddr(AF_INET, nullptr, Mask(chain_), out_));
  EXPECT_EQ(out_, "untouched");
}

TEST_F(AddressTextTest, AFamilyWithoutTextFails) {
  chain_.Add("eth0", kUp, std::to_string(AF_UNSPEC), std::to_string(AF_UNSPEC));
  EXPECT_FALSE(getIPAddress(First(chain_), out_));
  EXPECT_FALSE(getNetMask(AF_INET, Mask(chain_), out_));
  EXPECT_EQ(out_, "untouched");
}

TEST_F(AddressTextTest, AddressesAreNumericAndLinkLocalOnesCarryTheirScope) {
  chain_.Add("eth0", kUp, "10.1.2.3", "");
  EXPECT_TRUE(getIPAddress(First(chain_), out_));
  EXPECT_EQ(out_, "10.1.2.3");
  FakeChain local;
  local.Add("eth0", kUp, "fe80::211:22ff:fe33:4455", "", 1);
  EXPECT_TRUE(getIPAddress(First(local), out_));
  EXPECT_EQ(out_, "fe80::211:22ff:fe33:4455%lo");
}

TEST_F(AddressTextTest, AnIpv6MaskIsInItsShortForm) {
  chain_.Add("eth0", kUp, "fd00::1", "ffff:ffff:ffff:ffff::");
  EXPECT_TRUE(getNetMask(AF_INET6, Mask(chain_), out_));
  EXPECT_EQ(out_, "ffff:ffff:ffff:ffff::");
  EXPECT_FALSE(getNetMask(AF_INET, Mask(chain_), out_)) << "16 bytes are too few for it";
}

TEST_F(AddressTextTest, AnIpv4MaskReadsUnderAnyFamily) {
  chain_.Add("eth0", kUp, "10.1.2.3", "255.255.255.0");
  EXPECT_TRUE(getNetMask(AF_INET, Mask(chain_), out_));
  EXPECT_EQ(out_, "255.255.255.0");
  out_.clear();
  EXPECT_TRUE(getNetMask(99, Mask(chain_), out_));
  EXPECT_EQ(out_, "255.255.255.0");
}

TEST_F(AddressTextTest, TheNetworkPartIsWhatTheMaskLeaves) {
  const std::vector<std::vector<std::string>> cases = {
      {"192.168.1.10", "255.255.255.0", "192.168.1.0"},
      {"10.255.3.77", "255.254.0.0", "10.254.0.0"},
      {"10.1.2.3", "255.255.255.255", "10.1.2.3"},
      {"10.1.2.3", "0.0.0.0", "0.0.0.0"},
  };
  for (const auto& each : cases) {
    FakeChain chain;
    chain.Add("eth0", kUp, each[0], each[1]);
    EXPECT_TRUE(getNetAddr(AF_INET, First(chain), Mask(chain), out_));
    EXPECT_EQ(out_, each[2]);
  }
}

TEST_F(AddressTextTest, TheNetworkPartOfAnyOtherFamilyIsNotAvailable) {
  chain_.Add("eth0", kUp, "fd00::1", "ffff::");
  EXPECT_TRUE(getNetAddr(AF_INET6, First(chain_), Mask(chain_), out_));
  EXPECT_EQ(out_, "N/A");
  out_.clear();
  EXPECT_TRUE(getNetAddr(0, nullptr, Mask(chain_), out_));
  EXPECT_EQ(out_, "N/A");
}

TEST(FormatMACAddress, HasTwelveLowerCaseDigitsWithoutSeparators) {
  unsigned char bytes[] = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E};
  EXPECT_EQ(formatMACAddress(bytes), "001a2b3c4d5e");
  unsigned char high[] = {0xFF, 0x80, 0x7F, 0x09, 0x90, 0xA0};
  EXPECT_EQ(formatMACAddress(high), "ff807f0990a0");
}

TEST(FormatMACAddress, NullGivesTheEmptyText) {
  EXPECT_EQ(formatMACAddress(nullptr), "");
}

class MacAddressTest : public ::testing::Test {
 protected:
  void SetUp() override { Network() = FakeNetwork(); }
  void TearDown() override { Network() = FakeNetwork(); }
  std::string out_ = "untouched";
};

TEST_F(MacAddressTest, TheLoopbackInterfaceHasZeros) {
  const int before = OpenDescriptorCount();
  EXPECT_TRUE(getMacAddress(AF_INET, "lo", out_));
  EXPECT_EQ(out_, "000000000000");
  EXPECT_EQ(OpenDescriptorCount(), before);
}

TEST_F(MacAddressTest, AnUnknownInterfaceFailsAndItsSocketIsClosed) {
  const int before = OpenDescriptorCount();
  EXPECT_FALSE(getMacAddress(AF_INET, "no-such-link", out_));
  EXPECT_FALSE(getMacAddress(AF_INET, "", out_));
  EXPECT_EQ(out_, "untouched");
  EXPECT_EQ(OpenDescriptorCount(), before);
}

TEST_F(MacAddressTest, AFamilyWithoutSocketsFails) {
  EXPECT_FALSE(getMacAddress(0xFFFFFFFFU, "lo", out_));
  EXPECT_EQ(out_, "untouched");
}

TEST_F(MacAddressTest, ALongNameIsCutToFifteenCharactersInAClearedRequest) {
  std::string asked(sizeof(ifreq::ifr_name), 'x');
  Network().hardware_address = [&](int, ifreq* request) {
    asked.assign(request->ifr_name, sizeof request->ifr_name);
    return 0;
  };
  EXPECT_TRUE(getMacAddress(AF_INET, "a-very-long-interface-name", out_));
  EXPECT_EQ(asked, std::string("a-very-long-int\0", 16));
  EXPECT_TRUE(getMacAddress(AF_INET, "eth0", out_));
  EXPECT_EQ(asked, std::string("eth0") + std::string(12, '\0'));
}

TEST_F(MacAddressTest, WhateverSixBytesComeBackAreFormatted) {
  Network().hardware_address = [](int, ifreq* request) {
    std::memcpy(request->ifr_hwaddr.sa_data, "\x0A\x00\x00\x01\xFF\xFE\x99\x99", 8);
    return 0;
  };
  EXPECT_TRUE(getMacAddress(AF_INET6, "tun0", out_));
  EXPECT_EQ(out_, "0a000001fffe");
}

}  // namespace
