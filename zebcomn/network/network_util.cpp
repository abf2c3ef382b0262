#include "zebcomn/network/network_util.h"

#include <new>

#include "zebcomn/network/address_lists_internal.h"
#include "zebcomn/network/ipv6_text_internal.h"
#include "zebcomn/network/netinterface.h"

namespace {

/// Whether the resolver takes `text` for an address of a host.
bool IsAccepted(const std::string& text) {
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  if (getaddrinfo(text.c_str(), nullptr, &hints, &list) != 0) return false;
  const zebcomn::AddrinfoPtr owner(list);
  return true;
}

}  // namespace

ANetworkUtil::ANetworkUtil() : initialised_(true) {}
ANetworkUtil::~ANetworkUtil() = default;

std::string ANetworkUtil::formatV6addr(std::string address, bool keepBrackets) try {
  const bool bracketed = zebcomn::TakeBracketsOff(address);
  zebcomn::RemoveScope(address);
  if (keepBrackets && bracketed) return "[" + address + "]";
  return address;
} catch (const std::bad_alloc&) {
  return {};
}

std::string ANetworkUtil::formatV6addrWithScope(std::string address, bool keepBrackets) try {
  const bool bracketed = zebcomn::TakeBracketsOff(address);
  zebcomn::RemoveScope(address);
  unsigned int scope = 0;
  if (zebGetScopeId(address, scope) != 0) address += "%" + std::to_string(scope);
  if (keepBrackets && bracketed) return "[" + address + "]";
  return address;
} catch (const std::bad_alloc&) {
  return {};
}

int ANetworkUtil::zebGetScopeId(const std::string& address, unsigned int& scopeId) try {
  if (!initialised_) return 0;
  const std::string bare = formatV6addr(address, false);
  if (bare.rfind("fe80", 0) != 0) return 0;
  NetInterfaceList list(false);
  if (!getNetInterfacesList(list)) return 0;
  for (const unsigned int index : list.getIndexes()) {
    if (!IsAccepted(bare + "%" + std::to_string(index))) continue;
    scopeId = index;
    return 1;
  }
  return 0;
} catch (const std::bad_alloc&) {
  return 0;
}
