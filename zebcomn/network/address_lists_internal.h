#ifndef ZEBCOMN_NETWORK_ADDRESS_LISTS_INTERNAL_H_
#define ZEBCOMN_NETWORK_ADDRESS_LISTS_INTERNAL_H_

#include <ifaddrs.h>
#include <netdb.h>

#include <memory>

namespace zebcomn {

struct IfaddrsDeleter {
  void operator()(ifaddrs* list) const { freeifaddrs(list); }
};
/// Owns a chain that getifaddrs gave.
using IfaddrsPtr = std::unique_ptr<ifaddrs, IfaddrsDeleter>;

struct AddrinfoDeleter {
  void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
/// Owns a list that getaddrinfo gave.
using AddrinfoPtr = std::unique_ptr<addrinfo, AddrinfoDeleter>;

}  // namespace zebcomn

#endif  // ZEBCOMN_NETWORK_ADDRESS_LISTS_INTERNAL_H_
