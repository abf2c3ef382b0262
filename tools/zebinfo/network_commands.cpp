#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <cctype>

#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/text.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/network_util.h"

namespace zebinfo {
namespace {

// What the library answers when it is not the resolver that refuses.
constexpr int kNoAddress = -1;

std::string FamilyName(unsigned int family) {
  return family == AF_INET6 ? "IPv6" : "IPv4";
}

// An empty cell would shift the columns behind it for whoever splits the line.
std::string OrDash(const std::string& cell) {
  return cell.empty() ? "-" : cell;
}

std::vector<NetInterface> CollectInterfaces(bool with_loopback) {
  NetInterfaceList list(with_loopback);
  std::vector<NetInterface> interfaces;
  if (!getNetInterfacesList(list)) return interfaces;
  for (const unsigned int index : list.getIndexes()) {
    interfaces.push_back(list.getNetInterface(index));
  }
  return interfaces;
}

void PrintInterfaces(std::vector<NetInterface>& interfaces) {
  std::vector<Row> rows = {{"Index", "Name", "MAC", "Family", "Address", "Mask", "Subnet"}};
  for (NetInterface& interface : interfaces) {
    for (IPAddress& address : interface.getIPAddress()) {
      rows.push_back({std::to_string(interface.getIndex()), OrDash(interface.getIndexName()),
                      OrDash(interface.getMACAddress()), FamilyName(address.getIPFamily()),
                      OrDash(address.getIPAddress()), OrDash(address.getSubNetMask()),
                      OrDash(address.getSubNetAddr())});
    }
  }
  std::vector<Align> aligns(rows.front().size(), Align::kLeft);
  aligns.front() = Align::kRight;
  PrintTable(rows, aligns, Head::kFirstRow);
}

Json AsJson(std::vector<NetInterface>& interfaces) {
  Json list = Json::array();
  for (NetInterface& interface : interfaces) {
    Json addresses = Json::array();
    for (IPAddress& address : interface.getIPAddress()) {
      addresses.push_back({{"family", FamilyName(address.getIPFamily())},
                           {"address", address.getIPAddress()},
                           {"subnetMask", address.getSubNetMask()},
                           {"subnetAddress", address.getSubNetAddr()}});
    }
    list.push_back({{"index", interface.getIndex()},
                    {"name", interface.getIndexName()},
                    {"macAddress", interface.getMACAddress()},
                    {"addresses", addresses}});
  }
  return list;
}

// Gives the address texts back when it goes.
class AddressTexts {
 public:
  explicit AddressTexts(ANetworkUtil& network) : network_(network) {}
  ~AddressTexts() { network_.zebFreeAddrinfo(texts_); }
  AddressTexts(const AddressTexts&) = delete;
  AddressTexts& operator=(const AddressTexts&) = delete;

  std::vector<char*>& texts() { return texts_; }

  // Each text once, in the resolver's order.
  std::vector<std::string> Distinct() const {
    std::vector<std::string> distinct;
    for (const char* const text : texts_) {
      if (std::find(distinct.begin(), distinct.end(), text) == distinct.end()) {
        distinct.emplace_back(text);
      }
    }
    return distinct;
  }

 private:
  ANetworkUtil& network_;
  std::vector<char*> texts_;
};

// Whether a port is empty, has a sign or white space in front, or is beyond the highest: the
// resolver takes the first for 0, the second for a service or, white space aside, for any number,
// and of the third the low 16 bits.
bool IsNoPort(const std::string& port) {
  if (port.empty() || port[0] == '-' || port[0] == '+') return true;
  if (std::isspace(static_cast<unsigned char>(port[0])) != 0) return true;
  if (port.find_first_not_of("0123456789") != std::string::npos) return false;
  const std::size_t begin = port.find_first_not_of('0');
  if (begin == std::string::npos) return false;
  const std::string digits = port.substr(begin);
  return digits.size() > 5 || (digits.size() == 5 && digits > "65535");
}

std::string ResolverReason(int result) {
  return result == kNoAddress ? "it has no address" : gai_strerror(result);
}

}  // namespace

void ShowInterfaces(bool with_loopback, Format format) {
  std::vector<NetInterface> interfaces = CollectInterfaces(with_loopback);
  if (interfaces.empty()) {
    throw CommandError(kFailure, "no interface is up and has an address",
                       with_loopback
                           ? "Bring one up, for example with \"ip link set lo up\"."
                           : "Bring one up, or see the loopback interface with --loopback.");
  }
  if (format != Format::kText) {
    PrintJson({{"interfaces", AsJson(interfaces)}}, format);
  } else {
    PrintInterfaces(interfaces);
  }
}

void ShowLocalAddress(const std::string& peer, const std::string& port, bool ipv4_only,
                      Format format) {
  if (IsNoPort(port)) {
    throw CommandError(kUsage, Quoted(port) + " is no port",
                       "Give a number up to 65535, or the name of a service.");
  }
  ANetworkUtil network;
  std::string address;
  const int result =
      network.zebGetLocalIPAddressFromList(peer, port, address, ipv4_only, NI_NUMERICHOST);
  if (result == kNoAddress) {
    throw CommandError(kFailure, "cannot reach " + Quoted(peer) + " at port " + Quoted(port),
                       "See that the peer listens there, and that this host has a way to it "
                       "(\"zebinfo interfaces\").");
  }
  if (result != 0) {
    throw CommandError(kFailure,
                       "cannot resolve " + Quoted(peer) + " and port " + Quoted(port) + ": " +
                           ResolverReason(result),
                       "Check the spelling, or give an address and a port number.");
  }
  if (format != Format::kText) {
    PrintJson({{"peer", peer}, {"port", port}, {"localAddress", address}}, format);
  } else {
    PrintLine(address);
  }
}

void ResolveHost(const std::string& host, Format format) {
  ANetworkUtil network;
  AddressTexts addresses(network);
  const int result = network.zebGetAddrinfo(host, "", addresses.texts(), NI_NUMERICHOST);
  if (result != 0) {
    throw CommandError(kFailure, "cannot resolve " + Quoted(host) + ": " + ResolverReason(result),
                       "Check the spelling, \"/etc/hosts\" and \"/etc/resolv.conf\".");
  }
  if (format != Format::kText) {
    PrintJson({{"host", host}, {"addresses", addresses.Distinct()}}, format);
    return;
  }
  for (const std::string& address : addresses.Distinct()) PrintLine(address);
}

}  // namespace zebinfo
