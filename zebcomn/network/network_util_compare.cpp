#include <new>

#include "zebcomn/network/address_lists_internal.h"
#include "zebcomn/network/name_text_internal.h"
#include "zebcomn/network/network_util.h"
#include "zebcomn/portable/text_search_internal.h"

// Callers' object files hold the signatures with strings by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
int ANetworkUtil::zebCompareAddressFromPeerAddress(std::string peer, std::string port,
                                                   std::string address) try {
  if (peer == address) return 1;
  // Kept: any part of the address matches, so 10.1.2.3 denotes 10.1.2.30 and an empty peer
  // everything.
  if (zebcomn::FindText(address, peer) != std::string::npos) return 1;
  const std::string bare = formatV6addr(address, false);
  if (formatV6addr(peer, false) == bare) return 1;
  if (!initialised_) return 0;

  addrinfo* list = nullptr;
  if (zebCreateAddrinfo(peer, port, &list, false) != 0) return 0;
  const zebcomn::AddrinfoPtr owner(list);
  for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
    std::string text;
    if (!zebcomn::HostText(entry->ai_addr, entry->ai_addrlen, NI_NUMERICHOST, text)) continue;
    if (formatV6addr(text, false) == bare) return 1;
  }
  return 0;
} catch (const std::bad_alloc&) {
  return 0;
}
// NOLINTEND(performance-unnecessary-value-param)
