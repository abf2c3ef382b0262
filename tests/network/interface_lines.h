#ifndef ZEBCOMN_TESTS_NETWORK_INTERFACE_LINES_H_
#define ZEBCOMN_TESTS_NETWORK_INTERFACE_LINES_H_

#include <string>
#include <vector>

#include "zebcomn/network/netinterface.h"

namespace zebcomn_test {

/// "index name mac address mask subnet family" for every address of the list, in its order.
inline std::vector<std::string> Describe(NetInterfaceList& list) {
  std::vector<std::string> lines;
  for (const unsigned int index : list.getIndexes()) {
    NetInterface interface;
    list.getNetInterface(index, interface);
    for (IPAddress& address : interface.getIPAddress()) {
      lines.push_back(std::to_string(interface.getIndex()) + " " + interface.getIndexName() + " " +
                      interface.getMACAddress() + " " + address.getIPAddress() + " " +
                      address.getSubNetMask() + " " + address.getSubNetAddr() + " " +
                      std::to_string(address.getIPFamily()));
    }
  }
  return lines;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_NETWORK_INTERFACE_LINES_H_
