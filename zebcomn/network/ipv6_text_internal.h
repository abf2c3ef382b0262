#ifndef ZEBCOMN_NETWORK_IPV6_TEXT_INTERNAL_H_
#define ZEBCOMN_NETWORK_IPV6_TEXT_INTERNAL_H_

#include <string>

namespace zebcomn {

/// Replaces `text` by what stands between its first "[" and the next "]".
/// \return false, with `text` as it was, when there is no such pair.
bool TakeBracketsOff(std::string& text);

/// Removes the first "%" and everything after it, whatever the address begins with.
void RemoveScope(std::string& text);

/// What `expandIPV6Address` and `calculateSubNetAddrForV6` give; a lack of memory throws, so that a
/// caller does not take the empty text for an address.
std::string ExpandAddress(std::string address);
std::string SubnetAddress(const std::string& address, const std::string& mask);

}  // namespace zebcomn

#endif  // ZEBCOMN_NETWORK_IPV6_TEXT_INTERNAL_H_
