#include "tests/network/fake_network.h"

#include <arpa/inet.h>
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/ioctl.h>

#include <cstdarg>
#include <cstddef>
#include <cstring>

namespace zebcomn_test {
namespace {

template <typename Function>
Function* Real(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void Parse(const std::string& text, unsigned int scope, sockaddr_storage& storage) {
  sockaddr_in v4{};
  sockaddr_in6 v6{};
  if (inet_pton(AF_INET, text.c_str(), &v4.sin_addr) == 1) {
    v4.sin_family = AF_INET;
    std::memcpy(&storage, &v4, sizeof v4);
  } else if (inet_pton(AF_INET6, text.c_str(), &v6.sin6_addr) == 1) {
    v6.sin6_family = AF_INET6;
    v6.sin6_scope_id = scope;
    std::memcpy(&storage, &v6, sizeof v6);
  } else {
    storage.ss_family = static_cast<sa_family_t>(std::stoi(text));
  }
}

}  // namespace

void FakeChain::Add(const std::string& name, unsigned int flags, const std::string& address,
                    const std::string& mask, unsigned int scope) {
  Entry& added = entries_.emplace_back();
  added.name = name;
  added.entry.ifa_name = added.name.data();
  added.entry.ifa_flags = flags;
  if (!address.empty()) {
    Parse(address, scope, added.address);
    added.entry.ifa_addr = reinterpret_cast<sockaddr*>(&added.address);
  }
  if (!mask.empty()) {
    Parse(mask, 0, added.mask);
    added.entry.ifa_netmask = reinterpret_cast<sockaddr*>(&added.mask);
  }
  if (entries_.size() > 1) entries_[entries_.size() - 2].entry.ifa_next = &added.entry;
}

void FakeNetwork::Serve(FakeChain& fake, std::map<std::string, unsigned int> indexes) {
  getifaddrs = [this, &fake](ifaddrs** out) {
    chain = *out = fake.head();
    return 0;
  };
  if_nametoindex = [indexes](const char* name) {
    const auto found = indexes.find(name);
    return found == indexes.end() ? 0 : found->second;
  };
  hardware_address = [indexes](int, ifreq* request) {
    const auto found = indexes.find(request->ifr_name);
    if (found == indexes.end()) return -1;
    request->ifr_hwaddr.sa_data[0] = 2;
    request->ifr_hwaddr.sa_data[5] = static_cast<char>(found->second);
    return 0;
  };
}

addrinfo* FakeNetwork::NewList(const std::vector<std::string>& addresses, const char* port) {
  addrinfo* first = nullptr;
  addrinfo** link = &first;
  for (const std::string& text : addresses) {
    const size_t percent = text.find('%');
    const unsigned int scope = percent == std::string::npos
                                   ? 0
                                   : static_cast<unsigned>(std::stoul(text.substr(percent + 1)));
    auto* storage = new sockaddr_storage();
    Parse(text.substr(0, percent), scope, *storage);
    const in_port_t number = htons(static_cast<uint16_t>(port == nullptr ? 0 : std::stoi(port)));
    std::memcpy(reinterpret_cast<char*>(storage) + offsetof(sockaddr_in, sin_port), &number,
                sizeof number);
    auto* entry = new addrinfo();
    entry->ai_family = storage->ss_family;
    entry->ai_socktype = SOCK_STREAM;
    entry->ai_protocol = IPPROTO_TCP;
    entry->ai_addrlen = storage->ss_family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
    entry->ai_addr = reinterpret_cast<sockaddr*>(storage);
    *link = entry;
    link = &entry->ai_next;
  }
  live_lists.insert(first);
  return first;
}

FakeNetwork& Network() {
  static FakeNetwork network;
  return network;
}

int RealGetnameinfo(const sockaddr* address, socklen_t length, char* host, socklen_t host_length,
                    char* service, socklen_t service_length, int flags) {
  static auto* const real = Real(&::getnameinfo, "getnameinfo");
  return real(address, length, host, host_length, service, service_length, flags);
}

int RealSocket(int family, int type, int protocol) {
  static auto* const real = Real(&::socket, "socket");
  return real(family, type, protocol);
}

}  // namespace zebcomn_test

using zebcomn_test::Network;
using zebcomn_test::Real;

extern "C" int getifaddrs(ifaddrs** chain) noexcept {
  if (Network().getifaddrs) return Network().getifaddrs(chain);
  static auto* const real = Real(&::getifaddrs, "getifaddrs");
  return real(chain);
}

extern "C" void freeifaddrs(ifaddrs* chain) noexcept {
  if (Network().getifaddrs) {
    if (chain == Network().chain) ++Network().freed_chains;
    return;
  }
  static auto* const real = Real(&::freeifaddrs, "freeifaddrs");
  real(chain);
}

extern "C" unsigned int if_nametoindex(const char* name) noexcept {
  if (Network().if_nametoindex) return Network().if_nametoindex(name);
  static auto* const real = Real(&::if_nametoindex, "if_nametoindex");
  return real(name);
}

extern "C" int socket(int family, int type, int protocol) noexcept {
  if (Network().socket) return Network().socket(family, type, protocol);
  return zebcomn_test::RealSocket(family, type, protocol);
}

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  if (request == SIOCGIFHWADDR && Network().hardware_address) {
    return Network().hardware_address(fd, static_cast<ifreq*>(argument));
  }
  static auto* const real = Real(&::ioctl, "ioctl");
  return real(fd, request, argument);
}

extern "C" int connect(int fd, const sockaddr* address, socklen_t length) {
  if (Network().connect) return Network().connect(fd, address, length);
  static auto* const real = Real(&::connect, "connect");
  return real(fd, address, length);
}

extern "C" int getsockname(int fd, sockaddr* address, socklen_t* length) noexcept {
  if (Network().getsockname) return Network().getsockname(fd, address, length);
  static auto* const real = Real(&::getsockname, "getsockname");
  return real(fd, address, length);
}

extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints,
                           addrinfo** list) {
  if (Network().getaddrinfo) return Network().getaddrinfo(node, service, hints, list);
  static auto* const real = Real(&::getaddrinfo, "getaddrinfo");
  return real(node, service, hints, list);
}

extern "C" void freeaddrinfo(addrinfo* list) noexcept {
  if (Network().live_lists.erase(list) == 0) {
    static auto* const real = Real(&::freeaddrinfo, "freeaddrinfo");
    real(list);
    return;
  }
  while (list != nullptr) {
    addrinfo* const next = list->ai_next;
    void* const address = list->ai_addr;
    delete static_cast<sockaddr_storage*>(address);
    delete list;
    list = next;
  }
}

extern "C" int getnameinfo(const sockaddr* address, socklen_t length, char* host,
                           socklen_t host_length, char* service, socklen_t service_length,
                           int flags) {
  const auto& hook = Network().getnameinfo;
  return hook ? hook(address, length, host, host_length, service, service_length, flags)
              : zebcomn_test::RealGetnameinfo(address, length, host, host_length, service,
                                              service_length, flags);
}

extern "C" const char* inet_ntop(int family, const void* address, char* text,
                                 socklen_t size) noexcept {
  if (Network().inet_ntop) return Network().inet_ntop(family, address, text, size);
  static auto* const real = Real(&::inet_ntop, "inet_ntop");
  return real(family, address, text, size);
}
