#ifndef ZEBCOMN_NETWORK_NAME_TEXT_INTERNAL_H_
#define ZEBCOMN_NETWORK_NAME_TEXT_INTERNAL_H_

#include <netdb.h>
#include <sys/socket.h>

#include <string>

namespace zebcomn {

/// The size of the largest socket address. It may be given for any address: getnameinfo reads as
/// much as the address's family has.
constexpr socklen_t kLargestSocketAddress = 128;
static_assert(sizeof(sockaddr_storage) == kLargestSocketAddress);

/// The host text of an address, as getnameinfo with `flags` gives it.
/// \return false, with `out` untouched, when getnameinfo fails.
bool HostText(const sockaddr* address, socklen_t length, int flags, std::string& out);

}  // namespace zebcomn

#endif  // ZEBCOMN_NETWORK_NAME_TEXT_INTERNAL_H_
