#include "tools/zebinfo/catalogue.h"

#include "tools/zebinfo/text.h"
#include "zebcomn/sysprops/sysprops.h"

namespace zebinfo {
namespace {

namespace sysprops = quenty_com::pelu::sysprops;

Group MakeGroup(const std::string& title, const std::vector<std::wstring>& names) {
  Group group{title, {}};
  for (const std::wstring& name : names) group.names.push_back(ToUtf8(name));
  return group;
}

std::vector<Group> MakeGroups() {
  using namespace sysprops;
  return {
      MakeGroup("OS", {OSType_Key, OSPlatform_Key, OSVersion_Key, OSCsdVersion_Key, OSBuildNum_Key,
                       OSOEMId_Key, OSBitMode_Key, PlatformId_Key}),
      MakeGroup("CPU",
                {CPUType_Key, CPUSpeed_Key, NumOfCPU_Key, CPUSerialNumber_Key, CPUPortable_Key}),
      MakeGroup("Memory", {TotalPhysicalMemory_Key, FreeMemory_Key}),
      MakeGroup("Disks", {TotalDiskSpace_Key, FreeDiskSpace_Key, NumFileSystems_Key}),
      MakeGroup("Network", {ComputerName_Key, DomainName_Key, IPHostName_Key, IPAddress_Key,
                            SubnetAddress_Key, SubnetMask_Key, NETAddress_Key, IPXAddress_Key}),
      MakeGroup("Misc", {UserName_Key, TimeZone_Key, DefaultLangID_Key, LastUpdate_Key}),
  };
}

// The general lookup does not know the number of file systems; the disks' own does.
std::wstring LookUp(sysprops::ISysProps& system, const std::wstring& name) {
  return name == sysprops::NumFileSystems_Key ? system.GetOneDiskProperty(name)
                                              : system.GetOneSystemProperty(name);
}

}  // namespace

const std::vector<Group>& Groups() {
  static const std::vector<Group> groups = MakeGroups();
  return groups;
}

std::vector<std::string> PropertyNames() {
  std::vector<std::string> names;
  for (const Group& group : Groups()) {
    names.insert(names.end(), group.names.begin(), group.names.end());
  }
  return names;
}

Catalogue CollectCatalogue() {
  sysprops::ISysProps system;
  sysprops::PropertyMap properties;
  sysprops::FileSystemMap file_systems;
  system.GetAllSystemProperties(properties, file_systems);
  Catalogue catalogue;
  for (const Group& group : Groups()) {
    CollectedGroup collected{group.title, {}};
    for (const std::string& name : group.names) {
      const std::wstring wide_name(name.begin(), name.end());
      collected.properties.push_back({name, ToUtf8(properties[wide_name])});
    }
    catalogue.groups.push_back(std::move(collected));
  }
  for (const auto& [mount_point, space] : file_systems) {
    catalogue.file_systems.push_back(
        {ToUtf8(mount_point), ToUtf8(space.first), ToUtf8(space.second)});
  }
  return catalogue;
}

std::vector<Property> CollectProperties(const std::vector<std::string>& names) {
  sysprops::ISysProps system;
  std::vector<Property> properties;
  for (const std::string& name : names) {
    const std::wstring wide_name(name.begin(), name.end());
    properties.push_back({name, ToUtf8(LookUp(system, wide_name))});
  }
  return properties;
}

}  // namespace zebinfo
