#include <sched.h>

#include <array>
#include <memory>
#include <new>

#include "zebcomn/network/address_lists_internal.h"
#include "zebcomn/network/name_text_internal.h"
#include "zebcomn/network/network_util.h"

namespace {

constexpr int kMostTexts = 14;

/// Takes a text buffer, trying again while there is no memory. The tries are bounded so that a
/// process that stays out of memory gets an answer.
std::unique_ptr<char[]> NewTextBuffer() {
  constexpr int kMostTries = 1000;
  for (int tries = 0; tries < kMostTries; ++tries) {
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[NI_MAXHOST]());
    if (buffer != nullptr) return buffer;
    sched_yield();
  }
  return nullptr;
}

/// Appends the entry's text to `addresses`; false when it has none.
bool AppendText(const addrinfo& entry, int flags, std::vector<char*>& addresses) {
  std::unique_ptr<char[]> buffer = NewTextBuffer();
  if (buffer == nullptr) return false;
  if (getnameinfo(entry.ai_addr, entry.ai_addrlen, buffer.get(), NI_MAXHOST, nullptr, 0, flags) !=
      0) {
    return false;
  }
  addresses.push_back(buffer.get());
  static_cast<void>(buffer.release());
  return true;
}

}  // namespace

int ANetworkUtil::zebCreateAddrinfo(const std::string& host, const std::string& port,
                                    addrinfo** result, const bool& ipv4Only) try {
  if (host.empty() || result == nullptr) return -1;
  addrinfo hints{};
  hints.ai_family = ipv4Only ? AF_INET : AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  const std::string node = formatV6addrWithScope(host, false);
  const char* service = port.empty() ? nullptr : port.c_str();
  return getaddrinfo(node.c_str(), service, &hints, result);
} catch (const std::bad_alloc&) {
  return EAI_MEMORY;
}

// Callers' object files hold the signatures with strings by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
int ANetworkUtil::zebGetAddrinfo(const std::string& host, std::string port,
                                 std::vector<char*>& addresses, int niFlags) {
  if (!initialised_) return -1;
  addrinfo* list = nullptr;
  const int created = zebCreateAddrinfo(host, port, &list, false);
  if (created != 0) return created;
  const zebcomn::AddrinfoPtr owner(list);
  int texts = 0;
  try {
    for (const addrinfo* entry = list; entry != nullptr && texts < kMostTexts;
         entry = entry->ai_next) {
      if (AppendText(*entry, niFlags, addresses)) ++texts;
    }
  } catch (const std::bad_alloc&) {
    return texts > 0 ? 0 : -1;
  }
  return texts > 0 ? 0 : -1;
}

// NOLINTEND(performance-unnecessary-value-param)

void ANetworkUtil::zebFreeAddrinfo(std::vector<char*>& addresses) {
  if (!initialised_) return;
  for (const char* text : addresses) delete[] text;
  addresses.clear();
}

std::string ANetworkUtil::zebNetToString(sockaddr* address, int niFlags) try {
  if (address == nullptr || !initialised_) return {};
  std::array<char, NI_MAXHOST> text{};
  int failed = EAI_FAIL;
  // Kept: with both flags set the service wins.
  if ((niFlags & NI_NUMERICSERV) != 0) {
    failed = getnameinfo(address, zebcomn::kLargestSocketAddress, nullptr, 0, text.data(),
                         text.size(), niFlags);
  } else if ((niFlags & NI_NUMERICHOST) != 0) {
    failed = getnameinfo(address, zebcomn::kLargestSocketAddress, text.data(), text.size(), nullptr,
                         0, niFlags);
  }
  return failed == 0 ? std::string(text.data()) : std::string();
} catch (const std::bad_alloc&) {
  return {};
}
