#include "zebcomn/sysprops/sysprops_comn.h"

#include <sys/socket.h>
#include <sys/utsname.h>

#include <new>

#include "zebcomn/network/host_names.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_comn_internal.h"
#include "zebcomn/util/text_conversion.h"

namespace quenty_com::pelu::sysprops {

// By value, because callers' object files hold these signatures.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::wstring sysprops_ansi_to_wide(std::string text) {
  return tivmcomn_ansi_to_wide(text);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::string sysprops_wide_to_ansi(std::wstring text) {
  return tivmcomn_wide_to_ansi(text);
}

int getComputerName(std::string& name) try {
  utsname names{};
  if (uname(&names) != 0) return 0;
  name = names.nodename;
  const size_t dot = name.find('.');
  if (dot != std::string::npos) name.erase(dot);
  return 1;
} catch (const std::bad_alloc&) {
  return 0;
}

int ISysProps::GetNetworkInformation(NetworkInformation& info) {
  std::string name;
  info.m_wstrComputerName =
      getComputerName(name) != 0 ? sysprops_ansi_to_wide(name) : DefaultProp_Val;
  info.m_wstrDomainName = getDomainName();
  info.m_wstrIPHostName = getFqdnAddress();
  info.m_wstrIPXAddress = DefaultProp_Val;
  NetInterfaceList list(false);
  if (!getNetInterfacesList(list)) return 0;
  std::string last_known;
  if (!m_wstrLastKnownLocalIP.empty()) last_known = sysprops_wide_to_ansi(m_wstrLastKnownLocalIP);
  zebcomn::ChooseLocalAddress(last_known, list, info);
  return 1;
}

}  // namespace quenty_com::pelu::sysprops

namespace zebcomn {
namespace {

using quenty_com::pelu::sysprops::NetworkInformation;
using quenty_com::pelu::sysprops::sysprops_ansi_to_wide;

void WriteSubnet(IPAddress& address, NetworkInformation& info) {
  info.m_wstrSubnetAddress = sysprops_ansi_to_wide(address.getSubNetAddr());
  info.m_wstrSubnetMask = sysprops_ansi_to_wide(address.getSubNetMask());
}

void WriteAddress(NetInterface& holder, IPAddress& address, NetworkInformation& info) {
  info.m_wstrIPAddress = sysprops_ansi_to_wide(address.getIPAddress());
  info.m_wstrNETAddress = sysprops_ansi_to_wide(holder.getMACAddress());
  WriteSubnet(address, info);
}

bool ChooseLastKnown(const std::string& last_known, NetInterfaceList& list,
                     NetworkInformation& info) {
  NetInterface holder;
  if (last_known.empty() || getNetInterfaceFromIPAddress(holder, last_known, list) == 0) {
    return false;
  }
  info.m_wstrIPAddress = sysprops_ansi_to_wide(last_known);
  info.m_wstrNETAddress = sysprops_ansi_to_wide(holder.getMACAddress());
  for (IPAddress& address : holder.getIPAddress()) {
    if (address.getIPAddress() == last_known) WriteSubnet(address, info);
  }
  return true;
}

bool ChooseByFamily(unsigned int family, NetInterfaceList& list, NetworkInformation& info) {
  for (const unsigned int index : list.getIndexes()) {
    NetInterface& holder = list.getNetInterface(index);
    for (IPAddress& address : holder.getIPAddress()) {
      if (address.getIPFamily() != family) continue;
      WriteAddress(holder, address, info);
      return true;
    }
  }
  return false;
}

void ChooseFirst(NetInterfaceList& list, NetworkInformation& info) {
  const std::vector<unsigned int> indexes = list.getIndexes();
  if (indexes.empty()) return;
  NetInterface& holder = list.getNetInterface(indexes.front());
  std::vector<IPAddress> addresses = holder.getIPAddress();
  if (!addresses.empty()) WriteAddress(holder, addresses.front(), info);
}

}  // namespace

void ChooseLocalAddress(const std::string& last_known, NetInterfaceList& list,
                        NetworkInformation& info) {
  if (ChooseLastKnown(last_known, list, info)) return;
  const unsigned int family = last_known.find(':') != std::string::npos ? AF_INET6 : AF_INET;
  if (!ChooseByFamily(family, list, info)) ChooseFirst(list, info);
}

}  // namespace zebcomn
