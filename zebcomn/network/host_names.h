#ifndef ZEBCOMN_NETWORK_HOST_NAMES_H_
#define ZEBCOMN_NETWORK_HOST_NAMES_H_

/// \file
/// The names under which the network knows this host. Both calls ask the system and the resolver
/// anew each time, block as long as the resolver does, touch no error state, and may be made from
/// any thread. A lack of memory gives the empty text.
///
/// \par Example
/// \include network.cpp

#include <string>

#include "zebcomn/export.h"

/// The host's domain: the system's domain name as it is ("(none)" too) when there is one, otherwise
/// what follows the host name and one character in the official name that the resolver gives it.
/// \return "" when the official name does not hold the host name, `DefaultProp_Val` ("N/A") when
///     the host's name is unknown or cannot be resolved.
ZEBCOMN_EXPORT std::wstring getDomainName();

/// The official name that the resolver gives the host name; when it gives none, the host name, "."
/// and the system's domain name, also when that is empty.
/// \return `DefaultProp_Val` ("N/A") when the host's name is unknown.
ZEBCOMN_EXPORT std::wstring getFqdnAddress();

#endif  // ZEBCOMN_NETWORK_HOST_NAMES_H_
