#ifndef ZEBCOMN_SYSPROPS_SYSPROPS_COMN_INTERNAL_H_
#define ZEBCOMN_SYSPROPS_SYSPROPS_COMN_INTERNAL_H_

#include <string>

#include "zebcomn/network/netinterface.h"
#include "zebcomn/sysprops/sysprops_records.h"

namespace zebcomn {

/// Writes the four address fields of `info` from the interfaces of `list`: from `last_known` where
/// an interface has that address, otherwise from the first address of its family (IPv4 when it is
/// empty), otherwise from the first address of the first interface. Fields stay as they are when
/// none of these is there.
void ChooseLocalAddress(const std::string& last_known, NetInterfaceList& list,
                        quenty_com::pelu::sysprops::NetworkInformation& info);

}  // namespace zebcomn

#endif  // ZEBCOMN_SYSPROPS_SYSPROPS_COMN_INTERNAL_H_
