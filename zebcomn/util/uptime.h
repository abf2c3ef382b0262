#ifndef ZEBCOMN_UTIL_UPTIME_H_
#define ZEBCOMN_UTIL_UPTIME_H_

/// \file
/// How long the system has been up.
///
/// \par Example
/// \include time_stamps.cpp

#include "zebcomn/export.h"

namespace quenty_com::pelu {

/// Whole seconds since the system was booted, from "/proc/uptime"; the fraction is dropped.
/// 0x7fffffff when the file cannot be opened, 0 when it is empty. The number is read as C source
/// would be: a text that begins with 0 or 0x counts as octal or hexadecimal. Any thread may call;
/// `nErrno` is left alone.
/// \return The seconds.
ZEBCOMN_EXPORT unsigned long get_system_uptime_linux();
/// The same as get_system_uptime_linux().
/// \return The seconds.
ZEBCOMN_EXPORT unsigned long tivmcomn_get_system_uptime();

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_UPTIME_H_
