// Interfaces, in private networks of few and of many addresses, and IPv6 texts.
#include "bench/network_bench.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstring>
#include <string>

#include "zebcomn/network/ipv6_text.h"
#include "zebcomn/network/netinterface.h"

namespace zebcomn_bench {
namespace {

// ---- interfaces

void Interfaces_Zebcomn(benchmark::State& state) {
  MeasureInterfaces(state, [] {
    NetInterfaceList list(false);
    getNetInterfacesList(list);
    std::size_t addresses = 0;
    for (const unsigned index : list.getIndexes()) {
      addresses += list.getNetInterface(index).getIPAddress().size();
    }
    return addresses;
  });
}
BENCHMARK(Interfaces_Zebcomn)->Name("interfaces/zebcomn")->Apply(Addresses)->Arg(25);

void TextOf(const sockaddr* address, socklen_t length) {
  std::array<char, NI_MAXHOST> text{};
  getnameinfo(address, length, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
  benchmark::DoNotOptimize(text);
}

/// What the described enumeration asks the system about one address.
void AskAbout(const ifaddrs& entry) {
  const int family = entry.ifa_addr->sa_family;
  const socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
  benchmark::DoNotOptimize(if_nametoindex(entry.ifa_name));
  TextOf(entry.ifa_addr, length);
  TextOf(entry.ifa_netmask, length);
  const int channel = socket(family, SOCK_DGRAM, 0);
  ifreq request{};
  std::strncpy(request.ifr_name, entry.ifa_name, IFNAMSIZ - 1);
  ioctl(channel, SIOCGIFHWADDR, &request);
  close(channel);
}

void Interfaces_Floor(benchmark::State& state) {
  MeasureInterfaces(state, [] {
    ifaddrs* chain = nullptr;
    std::size_t addresses = 0;
    if (getifaddrs(&chain) != 0) return addresses;
    for (const ifaddrs* entry = chain; entry != nullptr; entry = entry->ifa_next) {
      if (entry->ifa_addr == nullptr || (entry->ifa_flags & IFF_UP) == 0) continue;
      if ((entry->ifa_flags & IFF_LOOPBACK) != 0) continue;
      const int family = entry->ifa_addr->sa_family;
      if (family != AF_INET && family != AF_INET6) continue;
      AskAbout(*entry);
      ++addresses;
    }
    freeifaddrs(chain);
    return addresses;
  });
}
BENCHMARK(Interfaces_Floor)->Name("interfaces/floor")->Apply(Addresses);

// ---- IPv6 texts

void Expand_Zebcomn(benchmark::State& state) {
  const std::string address = "2001:db8::8:800:200c:417a";
  for (auto _ : state) benchmark::DoNotOptimize(expandIPV6Address(address));
}
BENCHMARK(Expand_Zebcomn)->Name("ipv6_expand/zebcomn");

/// The C library's way to the same text: to bytes, and each group printed.
void Expand_Std(benchmark::State& state) {
  const std::string address = "2001:db8::8:800:200c:417a";
  for (auto _ : state) {
    in6_addr bytes;
    inet_pton(AF_INET6, address.c_str(), &bytes);
    std::string result;
    std::array<char, 4> digits;
    for (std::size_t i = 0; i < 16; i += 2) {
      const int group = bytes.s6_addr[i] << 8 | bytes.s6_addr[i + 1];
      const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), group, 16).ptr;
      if (i > 0) result += ':';
      result.append(digits.data(), end);
    }
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(Expand_Std)->Name("ipv6_expand/std");

/// A text of so many groups; eight are an address.
std::string Groups(int64_t count) {
  std::string text = "2001";
  for (int64_t i = 1; i < count; ++i) text += ":db8";
  return text;
}

void Subnet_Zebcomn(benchmark::State& state) {
  const std::string address = Groups(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(calculateSubNetAddrForV6(address, address));
}
BENCHMARK(Subnet_Zebcomn)
    ->Name("ipv6_subnet/zebcomn")
    ->ArgName("groups")
    ->Arg(8)
    ->Arg(128)
    ->Arg(2048);

/// The two numbers of each group are read as described, and their result is printed.
void Subnet_Floor(benchmark::State& state) {
  const std::string address = Groups(state.range(0));
  for (auto _ : state) {
    std::string subnet;
    const char* left = address.c_str();
    const char* right = address.c_str();
    for (int64_t i = 0; i < state.range(0); ++i) {
      char* end = nullptr;
      const auto group = static_cast<uint32_t>(std::strtoul(left, &end, 16));
      left = end + 1;
      const auto mask = static_cast<uint32_t>(std::strtoul(right, &end, 16));
      right = end + 1;
      std::array<char, 9> digits;
      end = std::to_chars(digits.data(), digits.data() + digits.size(), group & mask, 16).ptr;
      subnet.append(digits.data(), end);
      subnet += ':';
    }
    subnet.pop_back();
    benchmark::DoNotOptimize(subnet);
  }
}
BENCHMARK(Subnet_Floor)->Name("ipv6_subnet/floor")->ArgName("groups")->Arg(8);

void ExpandLong_Zebcomn(benchmark::State& state) {
  const std::string address = Groups(state.range(0)) + "::1";
  for (auto _ : state) benchmark::DoNotOptimize(expandIPV6Address(address));
}
BENCHMARK(ExpandLong_Zebcomn)
    ->Name("ipv6_expand_malformed/zebcomn")
    ->ArgName("groups")
    ->Arg(128)
    ->Arg(2048)
    ->Arg(32768);

}  // namespace
}  // namespace zebcomn_bench
