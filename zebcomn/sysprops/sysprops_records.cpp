#include "zebcomn/sysprops/sysprops_records.h"

#include <cstddef>

#include "zebcomn/sysprops/property_names.h"

namespace quenty_com::pelu::sysprops {
namespace {

/// Where the text of that number, from 0, stands in a record of texts.
constexpr std::size_t Text(std::size_t number) {
  return number * sizeof(std::wstring);
}

// A map makes its owner no standard-layout type; both compilers place its members all the same.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(CPUInformation, m_wstrCPUType) == Text(0));
static_assert(offsetof(CPUInformation, m_wstrCPUSpeed) == Text(1));
static_assert(offsetof(CPUInformation, m_wstrNumOfCPU) == Text(2));
static_assert(offsetof(CPUInformation, m_wstrCPUSerialNumber) == Text(3));
static_assert(offsetof(CPUInformation, m_wstrIsPortable) == Text(4));
static_assert(sizeof(CPUInformation) == Text(5));

static_assert(offsetof(NetworkInformation, m_wstrDomainName) == Text(0));
static_assert(offsetof(NetworkInformation, m_wstrComputerName) == Text(1));
static_assert(offsetof(NetworkInformation, m_wstrIPAddress) == Text(2));
static_assert(offsetof(NetworkInformation, m_wstrSubnetAddress) == Text(3));
static_assert(offsetof(NetworkInformation, m_wstrSubnetMask) == Text(4));
static_assert(offsetof(NetworkInformation, m_wstrNETAddress) == Text(5));
static_assert(offsetof(NetworkInformation, m_wstrIPXAddress) == Text(6));
static_assert(offsetof(NetworkInformation, m_wstrIPHostName) == Text(7));
static_assert(sizeof(NetworkInformation) == Text(8));

static_assert(offsetof(MemoryInformation, m_wstrTotalPhysicalMemory) == Text(0));
static_assert(offsetof(MemoryInformation, m_wstrFreeMemory) == Text(1));
static_assert(sizeof(MemoryInformation) == Text(2));

static_assert(offsetof(OSInformation, m_wstrOSType) == Text(0));
static_assert(offsetof(OSInformation, m_wstrOSPlatform) == Text(1));
static_assert(offsetof(OSInformation, m_wstrOSVersion) == Text(2));
static_assert(offsetof(OSInformation, m_wstrOSCsdVersion) == Text(3));
static_assert(offsetof(OSInformation, m_wstrOSBuildNum) == Text(4));
static_assert(offsetof(OSInformation, m_wstrOSOEMId) == Text(5));
static_assert(offsetof(OSInformation, m_wstrPlatformID) == Text(6));
static_assert(offsetof(OSInformation, m_wstrOSBitMode) == Text(7));
static_assert(sizeof(OSInformation) == Text(8));

static_assert(offsetof(DiskInformation, m_wstrTotalDiskSpace) == Text(0));
static_assert(offsetof(DiskInformation, m_wstrFreeDiskSpace) == Text(1));
static_assert(offsetof(DiskInformation, m_wstrNumberOfFileSystems) == Text(2));
static_assert(offsetof(DiskInformation, m_mapFileSystems) == Text(3));
static_assert(sizeof(DiskInformation) == Text(3) + sizeof(FileSystemMap));

static_assert(offsetof(MiscInformation, m_wstrUserName) == Text(0));
static_assert(offsetof(MiscInformation, m_wstrTimeZone) == Text(1));
static_assert(offsetof(MiscInformation, m_wstrDefaultLangID) == Text(2));
static_assert(offsetof(MiscInformation, m_wstrLastUpdate) == Text(3));
static_assert(sizeof(MiscInformation) == Text(4));

#pragma GCC diagnostic pop
static_assert(sizeof(void*) != 4 || (sizeof(std::wstring) == 24 && sizeof(FileSystemMap) == 24));

}  // namespace

CPUInformation::CPUInformation()
    : m_wstrCPUType(DefaultProp_Val),
      m_wstrCPUSpeed(DefaultProp_Val),
      m_wstrNumOfCPU(DefaultProp_Val),
      m_wstrCPUSerialNumber(DefaultProp_Val) {}

CPUInformation::~CPUInformation() = default;

NetworkInformation::NetworkInformation()
    : m_wstrDomainName(DefaultProp_Val),
      m_wstrComputerName(DefaultProp_Val),
      m_wstrIPAddress(DefaultProp_Val),
      m_wstrSubnetAddress(DefaultProp_Val),
      m_wstrSubnetMask(DefaultProp_Val),
      m_wstrNETAddress(DefaultProp_Val),
      m_wstrIPXAddress(DefaultProp_Val),
      m_wstrIPHostName(DefaultProp_Val) {}

NetworkInformation::~NetworkInformation() = default;

MemoryInformation::MemoryInformation()
    : m_wstrTotalPhysicalMemory(DefaultProp_Val), m_wstrFreeMemory(DefaultProp_Val) {}

MemoryInformation::~MemoryInformation() = default;

OSInformation::OSInformation()
    : m_wstrOSType(DefaultProp_Val),
      m_wstrOSPlatform(DefaultProp_Val),
      m_wstrOSVersion(DefaultProp_Val),
      m_wstrOSCsdVersion(DefaultProp_Val),
      m_wstrOSBuildNum(DefaultProp_Val),
      m_wstrOSOEMId(DefaultProp_Val),
      m_wstrOSBitMode(DefaultProp_Val) {}

OSInformation::~OSInformation() = default;

DiskInformation::DiskInformation()
    : m_wstrTotalDiskSpace(DefaultProp_Val),
      m_wstrFreeDiskSpace(DefaultProp_Val),
      m_wstrNumberOfFileSystems(DefaultProp_Val) {}

DiskInformation::~DiskInformation() = default;

MiscInformation::MiscInformation()
    : m_wstrUserName(DefaultProp_Val),
      m_wstrTimeZone(DefaultProp_Val),
      m_wstrDefaultLangID(DefaultProp_Val),
      m_wstrLastUpdate(DefaultProp_Val) {}

MiscInformation::~MiscInformation() = default;

}  // namespace quenty_com::pelu::sysprops
