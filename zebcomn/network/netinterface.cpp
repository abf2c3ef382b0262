#include "zebcomn/network/netinterface.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

// A map makes its owner no standard-layout type; both compilers place its members all the same.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
/// Holds the order of the records' fields, which callers' copies of the records rely on.
struct NetRecordLayout {
  static_assert(offsetof(IPAddress, address_) == 0);
  static_assert(offsetof(IPAddress, subnet_mask_) == sizeof(std::string));
  static_assert(offsetof(IPAddress, subnet_address_) == 2 * sizeof(std::string));
  static_assert(offsetof(IPAddress, family_) == 3 * sizeof(std::string));
  static_assert(sizeof(void*) != 4 || sizeof(IPAddress) == 76);

  static_assert(offsetof(NetInterface, index_) == 0);
  static_assert(offsetof(NetInterface, mac_address_) == sizeof(void*));
  static_assert(offsetof(NetInterface, index_name_) == sizeof(void*) + sizeof(std::string));
  static_assert(offsetof(NetInterface, addresses_) == sizeof(void*) + 2 * sizeof(std::string));
  static_assert(sizeof(void*) != 4 || sizeof(NetInterface) == 64);

  static_assert(offsetof(NetInterfaceList, interfaces_) == 0);
  static_assert(offsetof(NetInterfaceList, include_loopback_) ==
                sizeof(std::map<unsigned int, NetInterface>));
  static_assert(sizeof(void*) != 4 || sizeof(NetInterfaceList) == 28);
};
#pragma GCC diagnostic pop

IPAddress::IPAddress() : family_(0) {}

void IPAddress::setOption(IP_PARAM param, std::string value) {
  switch (param) {
    case IP_ADDRESS:
      address_ = std::move(value);
      break;
    case IP_SUBNETMASK:
      subnet_mask_ = std::move(value);
      break;
    case IP_SUBNETADDR:
      subnet_address_ = std::move(value);
      break;
    case IP_FAMILY:
    default:
      break;
  }
}

void IPAddress::setOption(IP_PARAM param, unsigned int value) {
  if (param == IP_FAMILY) family_ = value;
}

std::string IPAddress::getIPAddress() {
  return address_;
}
std::string IPAddress::getSubNetMask() {
  return subnet_mask_;
}
std::string IPAddress::getSubNetAddr() {
  return subnet_address_;
}
unsigned int IPAddress::getIPFamily() {
  return family_;
}

NetInterface::NetInterface() : index_(0) {}

void NetInterface::setOption(NETINTERFACE_PARAM param, std::string value) {
  if (param == NETINTERFACE_MACADDRESS) {
    mac_address_ = std::move(value);
  } else if (param == NETINTERFACE_INDEXNAME) {
    index_name_ = std::move(value);
  }
}

void NetInterface::setOption(NETINTERFACE_PARAM param, unsigned int value) {
  if (param == NETINTERFACE_INDEX) index_ = value;
}

void NetInterface::setOption(NETINTERFACE_PARAM param, const IPAddress& value) {
  if (param == NETINTERFACE_IPADDRESS) addresses_.push_back(value);
}

std::vector<IPAddress> NetInterface::getIPAddress() {
  return addresses_;
}
std::string NetInterface::getMACAddress() {
  return mac_address_;
}
std::string NetInterface::getIndexName() {
  return index_name_;
}
unsigned int NetInterface::getIndex() {
  return index_;
}

NetInterfaceList::NetInterfaceList(bool include_loopback) : include_loopback_(include_loopback) {}

NetInterface& NetInterfaceList::getNetInterface(const unsigned int& index) {
  return interfaces_[index];
}

int NetInterfaceList::getNetInterface(unsigned int index, NetInterface& out) try {
  const auto found = interfaces_.find(index);
  if (found == interfaces_.end()) return 0;
  NetInterface copy = found->second;
  out = std::move(copy);
  return 1;
} catch (const std::bad_alloc&) {
  return 0;
}

std::vector<unsigned int> NetInterfaceList::getIndexes() {
  std::vector<unsigned int> indexes;
  indexes.reserve(interfaces_.size());
  for (const auto& entry : interfaces_) indexes.push_back(entry.first);
  return indexes;
}

bool getNetInterfacesList(NetInterfaceList& list) {
  return list.initialize() != 0;
}

int getNetInterfaceFromIPAddress(NetInterface& out, const std::string& address,
                                 NetInterfaceList& list) try {
  for (const unsigned int index : list.getIndexes()) {
    NetInterface candidate;
    if (list.getNetInterface(index, candidate) == 0) continue;
    std::vector<IPAddress> addresses = candidate.getIPAddress();
    const bool found = std::any_of(addresses.begin(), addresses.end(),
                                   [&](IPAddress& held) { return held.getIPAddress() == address; });
    if (found) {
      out = std::move(candidate);
      return 1;
    }
  }
  return 0;
} catch (const std::bad_alloc&) {
  return 0;
}

int getMACAddressFromIPAddress(std::string& mac, const std::string& address,
                               NetInterfaceList& list) try {
  NetInterface holder;
  if (getNetInterfaceFromIPAddress(holder, address, list) == 0) return 0;
  mac = holder.getMACAddress();
  return 1;
} catch (const std::bad_alloc&) {
  return 0;
}
