#ifndef ZEBCOMN_NETWORK_NETWORK_UTIL_H_
#define ZEBCOMN_NETWORK_NETWORK_UTIL_H_

/// \file
/// The resolver as the agent uses it: host names to address texts, the local address that faces a
/// peer, and whether a peer's name denotes an address.
///
/// Rules for all members:
/// - Failures are returned; nothing is thrown or logged, and `nErrno` is not touched. A lack of
///   memory gives the failure result, the empty text where that is a text.
/// - `niFlags` goes to getnameinfo as it is: 1 (NI_NUMERICHOST) asks for addresses instead of
///   names, 2 (NI_NUMERICSERV) for port numbers.
/// - An empty `port` means no service; otherwise it is a number or a service's name.
/// - Brackets around a host and a "%" scope behind it are taken off before it is resolved.
/// - Outputs are written on success only, unless it is said otherwise.
/// - No state is shared: separate objects may be used from separate threads at once, and one object
///   too. Each call blocks as long as the resolver and the connection it makes do.
///
/// \par Example
/// \include network.cpp

#include <netdb.h>
#include <sys/socket.h>

#include <string>
#include <vector>

#include "zebcomn/export.h"

/// The resolver calls. See zebcomn/network/network_util.h for the rules that all of them follow.
class ANetworkUtil {
 public:
  /// Every constructed object is usable.
  ZEBCOMN_EXPORT ANetworkUtil();
  /// Releases nothing: there is nothing to give back.
  // Callers' object files hold the destructor's name.
  // NOLINTNEXTLINE(performance-trivially-destructible)
  ZEBCOMN_EXPORT ~ANetworkUtil();

  /// The text between the first "[" and the next "]" (the whole text when there is no such pair)
  /// without its "%" scope; "::" is not expanded. `keepBrackets` puts the brackets back where there
  /// were some: "[2001:db8::1%2]:80" gives "[2001:db8::1]", or "2001:db8::1" without them.
  /// \param address the text.
  /// \param keepBrackets see above.
  /// \return the address text.
  ZEBCOMN_EXPORT std::string formatV6addr(std::string address, bool keepBrackets);

  /// As `formatV6addr`, with the index of an interface that accepts it as the scope of a link-local
  /// address: "fe80::1" gives "fe80::1%2". See `zebGetScopeId`.
  /// \param address the text.
  /// \param keepBrackets see `formatV6addr`.
  /// \return the address text.
  ZEBCOMN_EXPORT std::string formatV6addrWithScope(std::string address, bool keepBrackets);

  /// Resolves `host` for stream sockets, to IPv4 addresses only when `ipv4Only` is true. The
  /// resolver is asked for what `formatV6addrWithScope` makes of `host`: whatever begins with
  /// "fe80", be it a name, gets a scope where an interface has one for it.
  /// \param host a name or an address.
  /// \param port see above.
  /// \param[out] result the list, which the caller gives back with freeaddrinfo.
  /// \param ipv4Only true leaves IPv6 addresses out.
  /// \return getaddrinfo's result (0 is success); -1 when `host` is empty or `result` is null.
  ZEBCOMN_EXPORT int zebCreateAddrinfo(const std::string& host, const std::string& port,
                                       addrinfo** result, const bool& ipv4Only);

  /// Appends the texts of the host's addresses, at most 14, in the resolver's order; the same text
  /// can come more than once.
  /// \param host a name or an address.
  /// \param port see above.
  /// \param[in,out] addresses gets arrays of 1025 bytes; give them back with `zebFreeAddrinfo`.
  /// \param niFlags 1 gives addresses; without it, names where the resolver has some for them.
  /// \return 0 when at least one text was appended, -1 when none was, otherwise the resolver's
  ///     error.
  ZEBCOMN_EXPORT int zebGetAddrinfo(const std::string& host, std::string port,
                                    std::vector<char*>& addresses, int niFlags);

  /// Releases the arrays that `zebGetAddrinfo` appended and empties the vector; nulls in it are
  /// passed over.
  /// \param addresses what `zebGetAddrinfo` filled.
  ZEBCOMN_EXPORT void zebFreeAddrinfo(std::vector<char*>& addresses);

  /// One part of an address as text: the service when `niFlags` has 2, else the host when it has 1.
  /// \param address may be null; otherwise it has the size that its family requires.
  /// \param niFlags 1, 2 or both.
  /// \return "" when the address is null, when neither flag is set, and on failure.
  ZEBCOMN_EXPORT std::string zebNetToString(sockaddr* address, int niFlags);

  /// The index of the first interface, in ascending order and without loopback, with which the
  /// resolver accepts a link-local address as "address%index". Only text that begins with "fe80" is
  /// looked at, after `formatV6addr`.
  /// \param address the address text.
  /// \param[out] scopeId the index.
  /// \return 1 when there is one, else 0; `scopeId` is untouched then.
  ZEBCOMN_EXPORT int zebGetScopeId(const std::string& address, unsigned int& scopeId);

  /// The address from which this host reaches the peer: a TCP connection is made to each of the
  /// peer's addresses until one succeeds, and closed at once. An IPv6 address comes in the
  /// canonical form of `expandIPV6Address`.
  /// \param peer name or address of the peer.
  /// \param port the peer's port; somebody has to listen there.
  /// \param[out] localAddress the address text.
  /// \param ipv4Only true leaves the peer's IPv6 addresses out.
  /// \param niFlags 1 gives the address; without it, a name where the resolver has one for it. The
  ///     port is never given.
  /// \return 0 on success; -1 when no address could be reached; otherwise `zebCreateAddrinfo`'s
  ///     result.
  ZEBCOMN_EXPORT int zebGetLocalIPAddress(const std::string& peer, std::string port,
                                          std::string& localAddress, const bool& ipv4Only,
                                          int niFlags);

  /// `zebGetLocalIPAddress` for each peer of a list that ";" separates, until one is reached. A ";"
  /// at the end adds no peer; an empty peer between two fails. `niFlags` is not looked at: the
  /// answer is always numeric.
  /// \param peers names or addresses with ";" between them.
  /// \param port the peers' port.
  /// \param[out] localAddress the address text.
  /// \param ipv4Only true leaves the peers' IPv6 addresses out.
  /// \param niFlags ignored.
  /// \return 0 on success, else the result for the last peer that was tried.
  ZEBCOMN_EXPORT int zebGetLocalIPAddressFromList(const std::string& peers, std::string port,
                                                  std::string& localAddress, const bool& ipv4Only,
                                                  int niFlags);

  /// Whether the peer denotes the address. It does when the texts are equal, when `address`
  /// contains `peer` anywhere, when they are equal after `formatV6addr`, and when the peer resolves
  /// to the address. "::" is not expanded for any of these.
  /// \param peer name or address of the peer.
  /// \param port a port for resolving the peer.
  /// \param address the address text.
  /// \return 1 when it does, else 0.
  ZEBCOMN_EXPORT int zebCompareAddressFromPeerAddress(std::string peer, std::string port,
                                                      std::string address);

 private:
  bool initialised_;
};

#endif  // ZEBCOMN_NETWORK_NETWORK_UTIL_H_
