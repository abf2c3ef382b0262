#include "zebcomn/sysprops/sysprops_records.h"

#include "zebcomn/sysprops/property_names.h"

namespace quenty_com::pelu::sysprops {

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
