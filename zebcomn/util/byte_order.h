#ifndef ZEBCOMN_UTIL_BYTE_ORDER_H_
#define ZEBCOMN_UTIL_BYTE_ORDER_H_

/// \file
/// The byte order of this host.
///
/// \par Example
/// \include text.cpp

#include "zebcomn/export.h"

namespace quenty_com::pelu {

/// True on a big-endian host. Asks the memory itself; never fails; any thread may call it.
/// \return true or false.
ZEBCOMN_EXPORT bool isBigEndian();

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_BYTE_ORDER_H_
