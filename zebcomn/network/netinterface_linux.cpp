#include "zebcomn/network/netinterface_linux.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>

#include <array>
#include <cstring>
#include <new>
#include <string_view>

#include "zebcomn/network/address_lists_internal.h"
#include "zebcomn/network/ipv6_text_internal.h"
#include "zebcomn/network/name_text_internal.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/portable/cancellation_internal.h"
#include "zebcomn/portable/unique_fd_internal.h"

namespace {

constexpr size_t kHardwareAddressBytes = 6;

in_addr_t Ipv4Bits(const sockaddr* address) {
  sockaddr_in whole{};
  std::memcpy(&whole, address, sizeof whole);
  return whole.sin_addr.s_addr;
}

bool IsWanted(const ifaddrs& entry, bool include_loopback) {
  if (entry.ifa_addr == nullptr || (entry.ifa_flags & IFF_UP) == 0) return false;
  if ((entry.ifa_flags & IFF_LOOPBACK) != 0 && !include_loopback) return false;
  const auto family = entry.ifa_addr->sa_family;
  return family == AF_INET || family == AF_INET6;
}

/// The chain of the host's addresses; null when the system does not give it.
zebcomn::IfaddrsPtr ReadInterfaces() {
  // The C library says that this call cannot be unwound, but it reads from a socket: a thread that
  // was cancelled there would end the process.
  const zebcomn::CancellationHeldOff no_cancellation;
  ifaddrs* chain = nullptr;
  return zebcomn::IfaddrsPtr(getifaddrs(&chain) == 0 ? chain : nullptr);
}

/// What one entry of the chain says, as texts.
struct EntryTexts {
  std::string address;
  std::string mac;
  std::string mask;
  std::string subnet;
};

bool ReadTexts(const ifaddrs& entry, unsigned int family, EntryTexts& texts) {
  if (!getIPAddress(entry.ifa_addr, texts.address)) return false;
  if (!getMacAddress(family, entry.ifa_name, texts.mac)) return false;
  if (!getNetMask(family, entry.ifa_netmask, texts.mask)) return false;
  if (!getNetAddr(family, entry.ifa_addr, entry.ifa_netmask, texts.subnet)) return false;
  if (family == AF_INET6) {
    texts.address = zebcomn::ExpandAddress(texts.address);
    texts.mask = zebcomn::ExpandAddress(texts.mask);
    texts.subnet = zebcomn::SubnetAddress(texts.address, texts.mask);
  }
  return true;
}

void Record(NetInterfaceList& list, const ifaddrs& entry, unsigned int family,
            const EntryTexts& texts) {
  IPAddress address;
  address.setOption(IP_ADDRESS, texts.address);
  address.setOption(IP_FAMILY, family);
  address.setOption(IP_SUBNETMASK, texts.mask);
  address.setOption(IP_SUBNETADDR, texts.subnet);

  const unsigned int index = if_nametoindex(entry.ifa_name);
  NetInterface& interface = list.getNetInterface(index);
  interface.setOption(NETINTERFACE_INDEXNAME, std::string(entry.ifa_name));
  interface.setOption(NETINTERFACE_INDEX, index);
  interface.setOption(NETINTERFACE_MACADDRESS, texts.mac);
  interface.setOption(NETINTERFACE_IPADDRESS, address);
}

}  // namespace

int NetInterfaceList::initialize() {
  const zebcomn::IfaddrsPtr chain = ReadInterfaces();
  int recorded = 0;
  try {
    for (const ifaddrs* entry = chain.get(); entry != nullptr; entry = entry->ifa_next) {
      if (!IsWanted(*entry, include_loopback_)) continue;
      const unsigned int family = entry->ifa_addr->sa_family;
      EntryTexts texts;
      if (!ReadTexts(*entry, family, texts)) continue;
      Record(*this, *entry, family, texts);
      recorded = 1;
    }
  } catch (const std::bad_alloc&) {
    return recorded;
  }
  return recorded;
}

bool getIPAddress(sockaddr* address, std::string& out) try {
  return address != nullptr &&
         zebcomn::HostText(address, zebcomn::kLargestSocketAddress, NI_NUMERICHOST, out);
} catch (const std::bad_alloc&) {
  return false;
}

bool getMacAddress(const unsigned int& family, const std::string& name, std::string& out) {
  const zebcomn::UniqueFd channel(socket(static_cast<int>(family), SOCK_DGRAM | SOCK_CLOEXEC, 0));
  if (!channel.IsOpen()) return false;
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  if (ioctl(channel.get(), SIOCGIFHWADDR, &request) == -1) return false;
  std::array<unsigned char, kHardwareAddressBytes> bytes{};
  std::memcpy(bytes.data(), request.ifr_hwaddr.sa_data, bytes.size());
  out = formatMACAddress(bytes.data());
  return true;
}

bool getNetMask(const unsigned int& family, sockaddr* mask, std::string& out) try {
  if (mask == nullptr) return false;
  const socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
  return zebcomn::HostText(mask, length, NI_NUMERICHOST, out);
} catch (const std::bad_alloc&) {
  return false;
}

bool getNetAddr(const unsigned int& family, sockaddr* address, sockaddr* mask, std::string& out) {
  if (mask == nullptr) return false;
  if (family != AF_INET) {
    out = "N/A";
    return true;
  }
  if (address == nullptr) return false;
  in_addr network{};
  network.s_addr = Ipv4Bits(address) & Ipv4Bits(mask);
  std::array<char, INET_ADDRSTRLEN> text{};
  if (inet_ntop(AF_INET, &network, text.data(), text.size()) == nullptr) return false;
  out = text.data();
  return true;
}

std::string formatMACAddress(unsigned char* bytes) {
  // Kept: lower case and no separators; callers compare the texts as they come.
  constexpr std::string_view kDigits = "0123456789abcdef";
  if (bytes == nullptr) return {};
  std::string text;
  for (size_t i = 0; i < kHardwareAddressBytes; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0xF];
  }
  return text;
}
