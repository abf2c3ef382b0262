// The network commands of zebinfo, on hosts with known links, names and peers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/network/listener.h"
#include "tests/network/remote_peer.h"
#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using nlohmann::json;

class ZebinfoNetwork : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
    const std::string ipv6 = RunInPrivateHost(
        [](PrivateHost&) { return std::string(MakeIpv6Predictable() ? "yes" : "no"); });
    if (ipv6 != "yes") GTEST_SKIP() << "this kernel has no IPv6";
  }
};

void AddPort0(PrivateHost& host) {
  MakeIpv6Predictable();
  host.Ip("link set lo up");
  host.AddVeth("port0");
  host.Ip("link set port0 address 02:1a:2b:3c:4d:5e");
  host.Ip("addr add 192.0.2.7/24 dev port0");
  host.AddIpv6("2001:db8::7/64", "port0");
  UseHostsFile(host,
               "192.0.2.8 peer.example\n"
               "192.0.2.9 several.example\n"
               "2001:db8::9 several.example\n"
               "192.0.2.9 several.example\n");
}

// The text without the index of the one interface, which the kernel chooses.
std::string WithoutIndex(std::string text) {
  for (std::size_t line = text.find('\n'); line != std::string::npos && line + 1 < text.size();
       line = text.find('\n', line + 1)) {
    text.replace(line + 1, 5, "    N");
  }
  return text;
}

TEST_F(ZebinfoNetwork, InterfacesAreATableOfAddresses) {
  EXPECT_EQ(
      WithoutIndex(ZebinfoOn(AddPort0, {"interfaces"})),
      "Index  Name   MAC           Family  Address               Mask                         "
      "Subnet\n"
      "    N  port0  021a2b3c4d5e  IPv4    192.0.2.7             255.255.255.0                "
      "192.0.2.0\n"
      "    N  port0  021a2b3c4d5e  IPv6    2001:db8:0:0:0:0:0:7  ffff:ffff:ffff:ffff:0:0:0:0  "
      "2001:db8:0:0:0:0:0:0\n");
}

TEST_F(ZebinfoNetwork, LoopbackInterfacesAreShownWhenAskedFor) {
  const json interfaces =
      Members(ZebinfoOn(AddPort0, {"interfaces", "--loopback", "--json"})).at("interfaces");
  ASSERT_EQ(interfaces.size(), 2u);
  EXPECT_EQ(interfaces.at(0),
            json::parse(R"({"index": 1, "name": "lo", "macAddress": "000000000000", "addresses": [
              {"family": "IPv4", "address": "127.0.0.1", "subnetMask": "255.0.0.0",
               "subnetAddress": "127.0.0.0"},
              {"family": "IPv6", "address": "0:0:0:0:0:0:0:1",
               "subnetMask": "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff",
               "subnetAddress": "0:0:0:0:0:0:0:1"}]})"));
  EXPECT_EQ(interfaces.at(1).at("name"), "port0");
  EXPECT_EQ(Members(ZebinfoOn(AddPort0, {"interfaces", "--json"})).at("interfaces"),
            json::array({interfaces.at(1)}));
}

TEST_F(ZebinfoNetwork, WithoutAnInterfaceThatIsUpThereIsAnError) {
  const auto nothing = [](PrivateHost&) {};
  const std::string complaint = "exit status 1\nzebinfo: no interface is up and has an address\n";
  EXPECT_EQ(ZebinfoOn(nothing, {"interfaces"}),
            complaint + "Bring one up, or see the loopback interface with --loopback.\n");
  EXPECT_EQ(ZebinfoOn(nothing, {"interfaces", "--loopback", "--json"}),
            complaint + "Bring one up, for example with \"ip link set lo up\".\n");
}

TEST_F(ZebinfoNetwork, ResolveShowsEachAddressOnce) {
  EXPECT_EQ(ZebinfoOn(AddPort0, {"resolve", "peer.example"}), "192.0.2.8\n");
  const json found = Members(ZebinfoOn(AddPort0, {"resolve", "several.example", "--json"}));
  EXPECT_EQ(found.at("host"), "several.example");
  EXPECT_THAT(found.at("addresses").get<std::vector<std::string>>(),
              ::testing::UnorderedElementsAre("192.0.2.9", "2001:db8::9"));
}

TEST_F(ZebinfoNetwork, ResolveTakesAddressesWithAndWithoutBrackets) {
  EXPECT_EQ(ZebinfoOn(AddPort0, {"resolve", "192.0.2.77"}), "192.0.2.77\n");
  EXPECT_EQ(ZebinfoOn(AddPort0, {"resolve", "[2001:db8::77]"}), "2001:db8::77\n");
}

TEST_F(ZebinfoNetwork, AHostThatDoesNotResolveIsAnError) {
  EXPECT_EQ(ZebinfoOn(AddPort0, {"resolve", "nobody.example"}),
            "exit status 1\n"
            "zebinfo: cannot resolve \"nobody.example\": Name or service not known\n"
            "Check the spelling, \"/etc/hosts\" and \"/etc/resolv.conf\".\n");
  EXPECT_EQ(ZebinfoOn(AddPort0, {"--json", "resolve", ""}),
            "exit status 1\n"
            "zebinfo: cannot resolve \"\": it has no address\n"
            "Check the spelling, \"/etc/hosts\" and \"/etc/resolv.conf\".\n");
}

// What zebinfo says of a peer at the far end of port0, "PORT" in the arguments being its port; the
// port does not appear in what is returned.
std::string LocalAddress(std::vector<std::string> arguments) {
  return RunInPrivateHost([&arguments](PrivateHost& host) {
    AddPort0(host);
    const RemotePeer peer(
        host, "port0", {"192.0.2.8/24", "2001:db8::8/64"},
        arguments[1].find(':') == std::string::npos ? "192.0.2.8" : "2001:db8::8");
    arguments[2] = peer.port();
    std::string text = Everything(Zebinfo(arguments));
    const std::size_t port = text.find(peer.port());
    return port == std::string::npos ? text : text.replace(port, peer.port().size(), "PORT");
  });
}

TEST_F(ZebinfoNetwork, LocalAddressIsTheOneThatFacesThePeer) {
  EXPECT_EQ(LocalAddress({"local-address", "192.0.2.8", "PORT"}), "192.0.2.7\n");
  EXPECT_EQ(LocalAddress({"local-address", "peer.example", "PORT", "--ipv4"}), "192.0.2.7\n");
  EXPECT_EQ(LocalAddress({"local-address", "[2001:db8::8]", "PORT"}), "2001:db8:0:0:0:0:0:7\n");
}

TEST_F(ZebinfoNetwork, LocalAddressTakesTheFirstPeerThatCanBeReached) {
  EXPECT_EQ(LocalAddress({"local-address", "203.0.113.1;192.0.2.8;nobody.example", "PORT"}),
            "192.0.2.7\n");
}

TEST_F(ZebinfoNetwork, LocalAddressAsJsonRepeatsTheQuestion) {
  EXPECT_EQ(LocalAddress({"local-address", "192.0.2.8", "PORT", "--json"}),
            "{\n  \"version\": 1,\n  \"peer\": \"192.0.2.8\",\n  \"port\": \"PORT\",\n"
            "  \"localAddress\": \"192.0.2.7\"\n}\n");
}

TEST_F(ZebinfoNetwork, AnUnreachablePeerIsAnError) {
  const std::string advice =
      "See that the peer listens there, and that this host has a way to it "
      "(\"zebinfo interfaces\").\n";
  EXPECT_EQ(LocalAddress({"local-address", "203.0.113.1", "PORT"}),
            "exit status 1\nzebinfo: cannot reach \"203.0.113.1\" at port \"PORT\"\n" + advice);
  const std::string closed = RunInPrivateHost([](PrivateHost& host) {
    AddPort0(host);
    const std::string port = Listener("192.0.2.7").port();
    return std::to_string(Zebinfo({"local-address", "192.0.2.7", port}).exit_status);
  });
  EXPECT_EQ(closed, "1");
}

TEST_F(ZebinfoNetwork, APeerOrServiceThatDoesNotResolveIsAnError) {
  EXPECT_EQ(ZebinfoOn(AddPort0, {"local-address", "nobody.example", "80"}),
            "exit status 1\n"
            "zebinfo: cannot resolve \"nobody.example\" and port \"80\": "
            "Name or service not known\n"
            "Check the spelling, or give an address and a port number.\n");
  EXPECT_EQ(ZebinfoOn(AddPort0, {"local-address", "192.0.2.8", "no-such-service"}),
            "exit status 1\n"
            "zebinfo: cannot resolve \"192.0.2.8\" and port \"no-such-service\": "
            "Servname not supported for ai_socktype\n"
            "Check the spelling, or give an address and a port number.\n");
}

}  // namespace
}  // namespace zebcomn_test
