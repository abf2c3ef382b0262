#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "zebcomn/network/address_lists_internal.h"
#include "zebcomn/network/ipv6_text_internal.h"
#include "zebcomn/network/name_text_internal.h"
#include "zebcomn/network/network_util.h"
#include "zebcomn/portable/unique_fd_internal.h"

namespace {

/// Gives a link-local entry the scope without which it cannot be connected to.
void SetScope(ANetworkUtil& util, addrinfo& entry) {
  if (entry.ai_family != AF_INET6) return;
  // Kept: 32 bytes hold every usual link-local text, but not a full one with a scope, and such an
  // entry keeps the scope that the resolver gave it.
  constexpr size_t kShortText = 32;
  std::array<char, kShortText> text{};
  if (getnameinfo(entry.ai_addr, entry.ai_addrlen, text.data(), text.size(), nullptr, 0,
                  NI_NUMERICHOST) != 0) {
    return;
  }
  unsigned int scope = 0;
  if (util.zebGetScopeId(text.data(), scope) == 0) return;
  static_assert(sizeof scope == sizeof(sockaddr_in6::sin6_scope_id));
  std::memcpy(reinterpret_cast<char*>(entry.ai_addr) + offsetof(sockaddr_in6, sin6_scope_id),
              &scope, sizeof scope);
}

/// The text of the local address of a connection to the entry; false when there is none.
bool LocalTextTowards(const addrinfo& entry, int flags, std::string& text) {
  const zebcomn::UniqueFd channel(
      socket(entry.ai_family, entry.ai_socktype | SOCK_CLOEXEC, entry.ai_protocol));
  if (!channel.IsOpen()) return false;
  if (connect(channel.get(), entry.ai_addr, entry.ai_addrlen) != 0) return false;
  sockaddr_storage local{};
  socklen_t length = sizeof local;
  auto* address = reinterpret_cast<sockaddr*>(&local);
  if (getsockname(channel.get(), address, &length) != 0) return false;
  return zebcomn::HostText(address, length, flags, text);
}

}  // namespace

// Callers' object files hold the signatures with strings by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
int ANetworkUtil::zebGetLocalIPAddress(const std::string& peer, std::string port,
                                       std::string& localAddress, const bool& ipv4Only,
                                       int niFlags) try {
  if (!initialised_) return -1;
  addrinfo* list = nullptr;
  const int created = zebCreateAddrinfo(peer, port, &list, ipv4Only);
  if (created != 0) return created;
  const zebcomn::AddrinfoPtr owner(list);
  for (addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
    SetScope(*this, *entry);
    std::string text;
    if (!LocalTextTowards(*entry, niFlags, text)) continue;
    localAddress = zebcomn::ExpandAddress(std::move(text));
    return 0;
  }
  return -1;
} catch (const std::bad_alloc&) {
  return -1;
}

int ANetworkUtil::zebGetLocalIPAddressFromList(const std::string& peers, std::string port,
                                               std::string& localAddress, const bool& ipv4Only,
                                               int) try {
  int result = -1;
  size_t begin = 0;
  do {
    const size_t end = std::min(peers.find(';', begin), peers.size());
    // Kept: the caller's niFlags do not count; the answer is always numeric.
    result = zebGetLocalIPAddress(peers.substr(begin, end - begin), port, localAddress, ipv4Only,
                                  NI_NUMERICHOST);
    begin = end + 1;
  } while (result != 0 && begin < peers.size());
  return result;
} catch (const std::bad_alloc&) {
  return -1;
}
// NOLINTEND(performance-unnecessary-value-param)
