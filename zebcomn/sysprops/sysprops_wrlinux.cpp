#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"

namespace quenty_com::pelu::sysprops {

int ISysProps::GetOSInformation(OSInformation& info) {
  return zebcomn::CollectOs("/etc/zebosplatform.conf", "/etc/wrs-release", info);
}

int ISysProps::GetCPUInformation(CPUInformation& info) {
  return zebcomn::CollectCpu("/proc/cpuinfo", info);
}

int ISysProps::GetMemoryInformation(MemoryInformation& info) {
  return zebcomn::CollectMemory("/proc/meminfo", info);
}

int ISysProps::GetDiskInformation(DiskInformation& info) {
  return zebcomn::CollectDisks("/etc/fstab", info);
}

}  // namespace quenty_com::pelu::sysprops
