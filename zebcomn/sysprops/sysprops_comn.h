#ifndef ZEBCOMN_SYSPROPS_SYSPROPS_COMN_H_
#define ZEBCOMN_SYSPROPS_SYSPROPS_COMN_H_

/// \file
/// The text conversions and the host name that the property collectors share with the network
/// subsystem. Narrow text is UTF-8. Nothing here touches the last error, and every function may be
/// called from any thread.
///
/// \par Example
/// \include system_properties.cpp

#include <string>

#include "zebcomn/export.h"

namespace quenty_com::pelu::sysprops {

/// Widens UTF-8 text.
/// \param text UTF-8.
/// \return `text` as wide characters, up to its first NUL or to the first byte that is not valid
///     UTF-8; empty when there is no memory for the work buffer.
ZEBCOMN_EXPORT std::wstring sysprops_ansi_to_wide(std::string text);

/// Narrows wide text to UTF-8.
/// \param text wide text.
/// \return `text` as UTF-8, up to its first NUL or to the first character that UTF-8 cannot hold;
///     empty when there is no memory for the work buffer.
ZEBCOMN_EXPORT std::string sysprops_wide_to_ansi(std::wstring text);

/// The short host name: the node name up to its first ".".
/// \param[out] name Set on success, left alone on failure.
/// \return 1 on success, 0 when the system does not tell its node name or there is no memory for
/// it.
ZEBCOMN_EXPORT int getComputerName(std::string& name);

}  // namespace quenty_com::pelu::sysprops

#endif  // ZEBCOMN_SYSPROPS_SYSPROPS_COMN_H_
