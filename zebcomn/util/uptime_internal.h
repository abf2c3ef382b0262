#ifndef ZEBCOMN_UTIL_UPTIME_INTERNAL_H_
#define ZEBCOMN_UTIL_UPTIME_INTERNAL_H_

namespace zebcomn {

/// The uptime that the file at `path` tells, as `get_system_uptime_linux` reads it.
unsigned long ReadUptime(const char* path);

}  // namespace zebcomn

#endif  // ZEBCOMN_UTIL_UPTIME_INTERNAL_H_
