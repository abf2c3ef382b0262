#include "zebcomn/sysprops/sysprops.h"

#include <cstddef>

namespace quenty_com::pelu::sysprops {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
/// Callers' object files hold the order of the members.
struct SysPropsLayout {
  static_assert(offsetof(ISysProps, m_CPUInfo) == 0);
  static_assert(offsetof(ISysProps, m_NetworkInfo) == sizeof(CPUInformation));
  static_assert(offsetof(ISysProps, m_MemoryInfo) ==
                offsetof(ISysProps, m_NetworkInfo) + sizeof(NetworkInformation));
  static_assert(offsetof(ISysProps, m_OSInfo) ==
                offsetof(ISysProps, m_MemoryInfo) + sizeof(MemoryInformation));
  static_assert(offsetof(ISysProps, m_DiskInfo) ==
                offsetof(ISysProps, m_OSInfo) + sizeof(OSInformation));
  static_assert(offsetof(ISysProps, m_MiscInfo) ==
                offsetof(ISysProps, m_DiskInfo) + sizeof(DiskInformation));
  static_assert(sizeof(ISysProps) == offsetof(ISysProps, m_MiscInfo) + sizeof(MiscInformation));
  static_assert(sizeof(void*) != 4 || sizeof(ISysProps) == 744);
};
#pragma GCC diagnostic pop

namespace {

/// A property and the field of its group's record that holds its value.
template <typename Record>
struct Field {
  const std::wstring* name;
  std::wstring Record::*value;
};

constexpr Field<CPUInformation> kCpuFields[] = {
    {&CPUType_Key, &CPUInformation::m_wstrCPUType},
    {&CPUSpeed_Key, &CPUInformation::m_wstrCPUSpeed},
    {&NumOfCPU_Key, &CPUInformation::m_wstrNumOfCPU},
    {&CPUSerialNumber_Key, &CPUInformation::m_wstrCPUSerialNumber},
};

constexpr Field<CPUInformation> kPortableField[] = {
    {&CPUPortable_Key, &CPUInformation::m_wstrIsPortable},
};

constexpr Field<NetworkInformation> kNetworkFields[] = {
    {&ComputerName_Key, &NetworkInformation::m_wstrComputerName},
    {&IPAddress_Key, &NetworkInformation::m_wstrIPAddress},
    {&DomainName_Key, &NetworkInformation::m_wstrDomainName},
    {&NETAddress_Key, &NetworkInformation::m_wstrNETAddress},
    {&SubnetAddress_Key, &NetworkInformation::m_wstrSubnetAddress},
    {&IPXAddress_Key, &NetworkInformation::m_wstrIPXAddress},
    {&SubnetMask_Key, &NetworkInformation::m_wstrSubnetMask},
    {&IPHostName_Key, &NetworkInformation::m_wstrIPHostName},
};

constexpr Field<MemoryInformation> kMemoryFields[] = {
    {&TotalPhysicalMemory_Key, &MemoryInformation::m_wstrTotalPhysicalMemory},
    {&FreeMemory_Key, &MemoryInformation::m_wstrFreeMemory},
};

constexpr Field<OSInformation> kOsFields[] = {
    {&OSType_Key, &OSInformation::m_wstrOSType},
    {&OSBitMode_Key, &OSInformation::m_wstrOSBitMode},
    {&OSPlatform_Key, &OSInformation::m_wstrOSPlatform},
    {&OSVersion_Key, &OSInformation::m_wstrOSVersion},
    {&OSBuildNum_Key, &OSInformation::m_wstrOSBuildNum},
    {&OSCsdVersion_Key, &OSInformation::m_wstrOSCsdVersion},
    {&OSOEMId_Key, &OSInformation::m_wstrOSOEMId},
    {&PlatformId_Key, &OSInformation::m_wstrPlatformID},
};

constexpr Field<MiscInformation> kMiscFields[] = {
    {&UserName_Key, &MiscInformation::m_wstrUserName},
    {&TimeZone_Key, &MiscInformation::m_wstrTimeZone},
    {&DefaultLangID_Key, &MiscInformation::m_wstrDefaultLangID},
    {&LastUpdate_Key, &MiscInformation::m_wstrLastUpdate},
};

constexpr Field<DiskInformation> kDiskFields[] = {
    {&FreeDiskSpace_Key, &DiskInformation::m_wstrFreeDiskSpace},
    {&TotalDiskSpace_Key, &DiskInformation::m_wstrTotalDiskSpace},
};

// Kept: the count is a disk field that the disk group's test does not accept; callers that ask for
// it by name alone get the empty text.
constexpr Field<DiskInformation> kFileSystemCountField[] = {
    {&NumFileSystems_Key, &DiskInformation::m_wstrNumberOfFileSystems},
};

template <typename Record, size_t Count>
const Field<Record>* FindField(const Field<Record> (&fields)[Count], const std::wstring& name) {
  for (const Field<Record>& field : fields) {
    if (*field.name == name) return &field;
  }
  return nullptr;
}

template <typename Record>
std::wstring ValueOf(const Record& record, const Field<Record>* field) {
  return field == nullptr ? DefaultProp_Val : record.*(field->value);
}

template <typename Record, size_t Count>
void InsertFields(PropertyMap& props, const Record& record, const Field<Record> (&fields)[Count]) {
  for (const Field<Record>& field : fields) props.emplace(*field.name, record.*(field.value));
}

const Field<CPUInformation>* FindCpuField(const std::wstring& name) {
  const Field<CPUInformation>* field = FindField(kCpuFields, name);
  return field != nullptr ? field : FindField(kPortableField, name);
}

}  // namespace

std::wstring ISysProps::m_wstrLastKnownLocalIP;

ISysProps::ISysProps() = default;

ISysProps::~ISysProps() = default;

void ISysProps::CollectAll() {
  GetNetworkInformation(m_NetworkInfo);
  GetCPUInformation(m_CPUInfo);
  GetMemoryInformation(m_MemoryInfo);
  GetDiskInformation(m_DiskInfo);
  GetMiscInformation(m_MiscInfo);
  GetOSInformation(m_OSInfo);
}

void ISysProps::InsertAll(PropertyMap& props) {
  InsertFields(props, m_CPUInfo, kCpuFields);
  InsertFields(props, m_NetworkInfo, kNetworkFields);
  InsertFields(props, m_MemoryInfo, kMemoryFields);
  InsertFields(props, m_OSInfo, kOsFields);
  InsertFields(props, m_MiscInfo, kMiscFields);
  InsertFields(props, m_DiskInfo, kFileSystemCountField);
  InsertFields(props, m_DiskInfo, kDiskFields);
}

int ISysProps::GetAllSystemProperties(PropertyMap& props) {
  CollectAll();
  props.clear();
  // Kept: no "IsPortable" in this form; callers count on 29 names before those of file systems.
  InsertAll(props);
  for (const auto& [mount_point, space] : m_DiskInfo.m_mapFileSystems) {
    std::wstring prefix = FileSystemName;
    prefix.append(L"\"").append(mount_point).append(L"\" ");
    props.emplace(prefix + FileSystemTotalSpace, space.first);
    props.emplace(prefix + FileSystemFreeSpace, space.second);
  }
  return 1;
}

int ISysProps::GetAllSystemProperties(PropertyMap& props, FileSystemMap& fileSystems) {
  CollectAll();
  props.clear();
  InsertAll(props);
  InsertFields(props, m_CPUInfo, kPortableField);
  fileSystems = m_DiskInfo.m_mapFileSystems;
  return 1;
}

std::wstring ISysProps::GetOneSystemProperty(const std::wstring& name) {
  if (IsNetworkProperty(name)) return GetOneNetworkProperty(name);
  if (IsCPUProperty(name)) return GetOneCPUProperty(name);
  if (IsMemoryProperty(name)) return GetOneMemoryProperty(name);
  if (IsMiscProperty(name)) return GetOneMiscProperty(name);
  if (IsDiskProperty(name)) return GetOneDiskProperty(name);
  if (IsOSProperty(name)) return GetOneOSProperty(name);
  return std::wstring();
}

bool ISysProps::IsNetworkProperty(const std::wstring& name) {
  return FindField(kNetworkFields, name) != nullptr;
}

bool ISysProps::IsCPUProperty(const std::wstring& name) {
  return FindCpuField(name) != nullptr;
}

bool ISysProps::IsOSProperty(const std::wstring& name) {
  return FindField(kOsFields, name) != nullptr;
}

bool ISysProps::IsMemoryProperty(const std::wstring& name) {
  return FindField(kMemoryFields, name) != nullptr;
}

bool ISysProps::IsDiskProperty(const std::wstring& name) {
  return FindField(kDiskFields, name) != nullptr;
}

bool ISysProps::IsMiscProperty(const std::wstring& name) {
  return FindField(kMiscFields, name) != nullptr;
}

std::wstring ISysProps::GetOneNetworkProperty(const std::wstring& name) {
  GetNetworkInformation(m_NetworkInfo);
  return ValueOf(m_NetworkInfo, FindField(kNetworkFields, name));
}

std::wstring ISysProps::GetOneCPUProperty(const std::wstring& name) {
  GetCPUInformation(m_CPUInfo);
  return ValueOf(m_CPUInfo, FindCpuField(name));
}

std::wstring ISysProps::GetOneMemoryProperty(const std::wstring& name) {
  GetMemoryInformation(m_MemoryInfo);
  return ValueOf(m_MemoryInfo, FindField(kMemoryFields, name));
}

std::wstring ISysProps::GetOneDiskProperty(const std::wstring& name) {
  GetDiskInformation(m_DiskInfo);
  const Field<DiskInformation>* field = FindField(kDiskFields, name);
  return ValueOf(m_DiskInfo, field != nullptr ? field : FindField(kFileSystemCountField, name));
}

std::wstring ISysProps::GetOneMiscProperty(const std::wstring& name) {
  GetMiscInformation(m_MiscInfo);
  return ValueOf(m_MiscInfo, FindField(kMiscFields, name));
}

std::wstring ISysProps::GetOneOSProperty(const std::wstring& name) {
  GetOSInformation(m_OSInfo);
  return ValueOf(m_OSInfo, FindField(kOsFields, name));
}

void ISysProps::updateLocalIP(const std::wstring& ip) {
  m_wstrLastKnownLocalIP = ip;
}

std::wstring ISysProps::GetLastKnownLocalIP() {
  return m_wstrLastKnownLocalIP;
}

}  // namespace quenty_com::pelu::sysprops
