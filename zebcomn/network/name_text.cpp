#include <array>

#include "zebcomn/network/name_text_internal.h"

namespace zebcomn {

bool HostText(const sockaddr* address, socklen_t length, int flags, std::string& out) {
  std::array<char, NI_MAXHOST> host{};
  if (getnameinfo(address, length, host.data(), host.size(), nullptr, 0, flags) != 0) return false;
  out = host.data();
  return true;
}

}  // namespace zebcomn
