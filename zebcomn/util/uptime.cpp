#include "zebcomn/util/uptime.h"

#include <cstdio>
#include <cstdlib>

#include "zebcomn/portable/unique_file_internal.h"
#include "zebcomn/util/uptime_internal.h"

namespace zebcomn {
namespace {

constexpr unsigned long kUnknownUptime = 0x7fffffff;
constexpr int kFieldCapacity = 1024;

}  // namespace

unsigned long ReadUptime(const char* path) {
  const UniqueFile file(std::fopen(path, "re"));
  if (file == nullptr) return kUnknownUptime;
  char field[kFieldCapacity] = {};
  // What cannot be read leaves the field empty, and that converts to 0.
  (void)(std::fscanf(file.get(), "%1023s", field) == 1);
  // Kept: base 0, so a leading 0 or 0x is taken for octal or hexadecimal.
  return std::strtoul(field, nullptr, 0);
}

}  // namespace zebcomn

namespace quenty_com::pelu {

unsigned long get_system_uptime_linux() {
  return zebcomn::ReadUptime("/proc/uptime");
}

unsigned long tivmcomn_get_system_uptime() {
  return get_system_uptime_linux();
}

}  // namespace quenty_com::pelu
