// The host's addresses, IPv6 text in its canonical form, and the names of a peer.
#include <zebcomn/network/host_names.h>
#include <zebcomn/network/ipv6_text.h>
#include <zebcomn/network/netinterface.h>
#include <zebcomn/network/netinterface_linux.h>
#include <zebcomn/network/network_util.h>

#include <iostream>

int main() {
  NetInterfaceList list(true);
  getNetInterfacesList(list);
  for (const unsigned int index : list.getIndexes()) {
    NetInterface& interface = list.getNetInterface(index);
    for (IPAddress& address : interface.getIPAddress()) {
      std::cout << interface.getIndexName() << ' ' << address.getIPAddress() << '\n';
    }
  }

  const std::string full = expandIPV6Address("fe80::1%eth0");
  std::cout << full << " in " << calculateSubNetAddrForV6(full, "ffff:ffff:ffff:ffff:0:0:0:0")
            << '\n';

  ANetworkUtil util;
  std::vector<char*> addresses;
  const int resolved = util.zebGetAddrinfo("127.0.0.1", "", addresses, NI_NUMERICHOST);
  const bool ok = resolved == 0 && addresses.front() == std::string("127.0.0.1");
  util.zebFreeAddrinfo(addresses);
  return ok && full == "fe80:0:0:0:0:0:0:1" ? 0 : 1;
}
