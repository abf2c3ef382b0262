#ifndef ZEBCOMN_NETWORK_NETINTERFACE_LINUX_H_
#define ZEBCOMN_NETWORK_NETINTERFACE_LINUX_H_

/// \file
/// The texts that the interface records hold, read from socket addresses and interface names.
///
/// Every call returns false and leaves `out` untouched when it fails, for a lack of memory too;
/// nothing is logged and `nErrno` is not touched. Families are Linux's AF_INET (2) and AF_INET6
/// (10). Any thread may call.
///
/// \par Example
/// \include network.cpp

#include <sys/socket.h>

#include <string>

#include "zebcomn/export.h"

/// The numeric host text of an IPv4 or IPv6 address. A link-local IPv6 address comes with "%" and
/// the interface's name.
/// \param address may be null, which fails; otherwise it has the size that its family requires.
/// \param[out] out the text.
/// \return true, or false for a failure.
ZEBCOMN_EXPORT bool getIPAddress(sockaddr* address, std::string& out);

/// The hardware address text (`formatMACAddress`) of the interface `name`, asked for through a
/// datagram socket of `family`. A name of more than 15 characters is cut there for the request.
/// \param family family of the socket.
/// \param name the interface's name.
/// \param[out] out the text.
/// \return true, or false for a failure.
ZEBCOMN_EXPORT bool getMacAddress(const unsigned int& family, const std::string& name,
                                  std::string& out);

/// The numeric text of a netmask; an IPv6 mask in its short form, "ffff:ffff:ffff:ffff::".
/// \param family family of the mask.
/// \param mask may be null, which fails; otherwise it has the size that its family requires.
/// \param[out] out the text.
/// \return true, or false for a failure.
ZEBCOMN_EXPORT bool getNetMask(const unsigned int& family, sockaddr* mask, std::string& out);

/// The network part of an IPv4 address. For any other family the text is "N/A" and the address is
/// not looked at: use `calculateSubNetAddrForV6` on the texts.
/// \param family family of both.
/// \param address may be null, which fails for IPv4.
/// \param mask may be null, which fails.
/// \param[out] out the text.
/// \return true, or false for a failure.
ZEBCOMN_EXPORT bool getNetAddr(const unsigned int& family, sockaddr* address, sockaddr* mask,
                               std::string& out);

/// The text of a hardware address: 12 lower-case hexadecimal digits without separators, as callers
/// compare it.
/// \param bytes six bytes; null gives the empty text.
/// \return the text.
ZEBCOMN_EXPORT std::string formatMACAddress(unsigned char* bytes);

#endif  // ZEBCOMN_NETWORK_NETINTERFACE_LINUX_H_
